#include "support/Recorders.h"
#include "support/ShippedFile.h"
#include "table/LimitTables.h"
#include "table/Numbers.h"
#include "table/TableBlock.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

AdvanceTable Shipped(TableType type, Limit limit) {
    const auto table = ParseTableBlock(test::ShippedFile(std::string(LimitFileName(type, limit))), type);
    EXPECT_TRUE(table) << LimitFileName(type, limit);
    return table.value_or(AdvanceTable(type));
}

// What an engine builder looks for in a table before trusting it.
void ExpectPlausible(const AdvanceTable& table) {
    ForEachCell(table.Type(), [&](Cell cell) {
        SCOPED_TRACE("column " + std::to_string(cell.column) + ", row " + std::to_string(cell.row));
        const double degrees = table.GetCell(cell);
        EXPECT_GE(degrees, 0);
        EXPECT_LE(degrees, 44);
        if (cell.column > 1) {
            const double rise = degrees - table.GetCell({cell.column - 1, cell.row});
            EXPECT_GE(rise, 0) << "rises with speed";
            EXPECT_LE(rise, RpmOfColumn(cell.column) > 4000 ? 0.2 : 9) << "to a plateau, without a step";
        }
        if (cell.row > 1) {
            const double rise = degrees - table.GetCell({cell.column, cell.row - 1});
            EXPECT_GE(rise, 0) << "falls with pressure";
            EXPECT_LE(rise, 2) << "without a step";
        }
        if (cell.row == 1 && RpmOfColumn(cell.column) <= 500) {
            EXPECT_GE(degrees, 5);
            EXPECT_LE(degrees, 10);
        }
        if (cell.row == 1 && RpmOfColumn(cell.column) >= 3000) {
            EXPECT_GE(degrees, 28);
            EXPECT_LE(degrees, 35);
        }
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

TEST(LimitTablesTest, ShowsAnExLimitAsItHoldsIt) {
    const auto maximum = Shipped(TableType::EX, Limit::Maximum);
    for (const auto degrees : maximum.GetValues()) {
        EXPECT_LE(degrees, kHighestAdvance);
        // A limit quoted in a message must itself be accepted when typed.
        EXPECT_EQ(EntireNumber(FormatTenths(degrees)), degrees);
    }
}

TEST(LimitTablesTest, FindsNothingInAMissingUnreadableOrMisshapenFile) {
    test::MemoryFiles files;
    const auto load = [&] { return LoadLimitTable(files, TableType::EX, Limit::Maximum); };
    EXPECT_FALSE(load());
    const AdvanceTable table(TableType::EX);
    files.contents["/program/RV52_EX_Max.dat"] = FormatTableBlock(table);
    EXPECT_EQ(load(), table);
    files.failReads = true;
    EXPECT_FALSE(load());
    files.failReads = false;
    files.contents["/program/RV52_EX_Max.dat"] = FormatTableBlock(AdvanceTable(TableType::RACE));
    EXPECT_FALSE(load());
}

}  // namespace
}  // namespace rv52
