#include "support/Recorders.h"
#include "support/ShippedFile.h"
#include "table/LimitTables.h"
#include "table/Numbers.h"
#include "table/TableBlock.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

AdvanceTable Shipped(TableType type, Limit limit) {
    return ParseTableBlock(test::ShippedFile(std::string(LimitFileName(type, limit))), type).value();
}

// What an engine builder looks for in a table before trusting it.
void ExpectPlausible(const AdvanceTable& table) {
    const auto expectWithin = [](double degrees, double lowest, double highest) {
        EXPECT_TRUE(degrees >= lowest && degrees <= highest) << degrees;
    };
    ForEachCell(table.Type(), [&](Cell cell) {
        SCOPED_TRACE("column " + std::to_string(cell.column) + ", row " + std::to_string(cell.row));
        const double degrees = table.GetCell(cell);
        const int rpm = RpmOfColumn(cell.column);
        expectWithin(degrees, 0, 44);
        const Cell slower{std::max(cell.column - 1, 1), cell.row};
        const Cell fuller{cell.column, std::max(cell.row - 1, 1)};
        expectWithin(degrees - table.GetCell(slower), 0, rpm > 4000 ? 0.2 : 9);  // to a plateau
        expectWithin(degrees - table.GetCell(fuller), 0, 2);
        if (cell.row == 1 && rpm <= 500) expectWithin(degrees, 5, 10);
        if (cell.row == 1 && rpm >= 3000) expectWithin(degrees, 28, 35);
        // A limit quoted in a message must itself be accepted when typed.
        EXPECT_EQ(EntireNumber(FormatTenths(degrees)), degrees);
    });
}

TEST(LimitTablesTest, ShipsPlausibleTables) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        SCOPED_TRACE(ToText(type));
        const auto minimum = Shipped(type, Limit::Minimum);
        const auto maximum = Shipped(type, Limit::Maximum);
        ExpectPlausible(minimum);
        ExpectPlausible(maximum);
        ForEachCell(type, [&](Cell cell) { EXPECT_LT(minimum.GetCell(cell), maximum.GetCell(cell)); });
        EXPECT_GE(maximum.GetCell({16, RowCount(type)}), 40);
    }
}

TEST(LimitTablesTest, FindsNothingInAnUnreadableFile) {
    test::MemoryFiles files;
    files.contents["/program/RV52_EX_Max.dat"] = FormatTableBlock(AdvanceTable(TableType::EX));
    EXPECT_TRUE(LoadLimitTable(files, TableType::EX, Limit::Maximum));
    files.failReads = true;
    EXPECT_FALSE(LoadLimitTable(files, TableType::EX, Limit::Maximum));
}

}  // namespace
}  // namespace rv52
