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
    ForEachCell(table.Type(), [&](Cell cell) {
        const double degrees = table.GetCell(cell);
        const double acrossSpeed = degrees - table.GetCell({std::max(cell.column - 1, 1), cell.row});
        const double acrossPressure = degrees - table.GetCell({cell.column, std::max(cell.row - 1, 1)});
        const int rpm = RpmOfColumn(cell.column);
        const bool idle = cell.row == 1 && rpm <= 500;
        const bool plateau = cell.row == 1 && rpm >= 3000;
        EXPECT_TRUE(acrossSpeed >= 0 && acrossSpeed <= (rpm > 4000 ? 0.2 : 9)) << acrossSpeed;
        EXPECT_TRUE(acrossPressure >= 0 && acrossPressure <= 2) << acrossPressure;
        EXPECT_TRUE(degrees >= (plateau ? 28 : idle ? 5 : 0)) << degrees;
        EXPECT_TRUE(degrees <= (plateau ? 35 : idle ? 10 : 44)) << degrees;
        // A limit quoted in a message must itself be accepted when typed.
        EXPECT_EQ(EntireNumber(FormatTenths(degrees)), degrees);
    });
}

TEST(LimitTablesTest, ShipsPlausibleTables) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        const auto minimum = Shipped(type, Limit::Minimum);
        const auto maximum = Shipped(type, Limit::Maximum);
        ExpectPlausible(minimum);
        ExpectPlausible(maximum);
        ForEachCell(type, [&](Cell cell) { EXPECT_LT(minimum.GetCell(cell), maximum.GetCell(cell)); });
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
