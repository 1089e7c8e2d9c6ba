#include "Groups.h"
#include "Inner.h"
#include "QuietSession.h"
#include "Samples.h"
#include "module/EepromImage.h"
#include "platform/qt/QtFiles.h"
#include "table/TableBlock.h"
#include "table/TableFile.h"
#include "table/commands/CopyPasteModify.h"
#include "table/commands/GridCursor.h"
#include "table/commands/NewTable.h"
#include "table/commands/TableDisplay.h"

#include <filesystem>

namespace rv52::bench {

namespace {

double ImageRoundTrip(const AdvanceTable& table) {
    EepromBuffer buffer{};
    ModuleParameters parameters;
    return InnerTime("image.roundtrip", [&] {
        EncodeEepromImage(table, parameters, TableType::EX, buffer);
        Keep(DecodeEepromImage(buffer, TableType::EX, parameters));
    });
}

// What opening does with a file's text: its parameters, each applied, then its values.
double FileOpen(const std::string& text) {
    return InnerTime("file.open", [&] {
        auto read = UnstatedParameters({});
        for (const auto& line : FindParameters(text))
            ApplyParameter(line, read);
        Keep(ParseTableBlock(text, read.type));
    });
}

// The program's own safe replacement of a file, in memory: no disk to wait for.
double FileSave(const AdvanceTable& table) {
    QtFiles files;
    const auto path = ScratchFile("save.tbl");
    const double time = InnerTime("file.save", [&] { files.ReplaceWhole(path, FormatTableFile(table, {})); });
    std::filesystem::remove(path);
    return time;
}

double Generate() {
    const auto minimum = ExMinimum();
    const auto maximum = ExMaximum();
    auto table = CreateTable(TableType::EX);
    return InnerTime("generate", [&] {
        ForEachCell(TableType::EX, [&](Cell cell) {
            table.SetCell(cell, NewAdvance(minimum.GetCell(cell), maximum.GetCell(cell), 7, 3));
        });
        Keep(table);
    });
}

// The whole command on the whole grid, texts included.
double Modify(const AdvanceTable& table) {
    QuietSession quiet;
    auto& session = quiet.session;
    session.state.TableType = TableType::EX;
    session.state.ExMaxTable = ExMaximum();
    session.table.Replace(table);
    SetUpTableGrid(session, TableType::EX);
    FillAndShowTable(session, "opened", {GridRow(1), GridColumn(1)});
    SelectGridCells(session,
                    {{GridRow(1), GridColumn(1)},
                     {GridRow(session.sheet.RowCountWithHeader() - 1),
                      GridColumn(session.sheet.ColumnCountWithHeader() - 1)}},
                    {GridRow(1), GridColumn(1)});
    quiet.nobody.answer = "100%";
    return InnerTime("modify", [&] { mnuPopUpModify3D_Click(session); });
}

}  // namespace

void MeasureCore(Report& report) {
    const auto table = ExTable();
    report.Add(Microseconds("image.roundtrip", ImageRoundTrip(table), 10));
    report.Add(Microseconds("file.open", FileOpen(FormatTableFile(table, {})), 200));
    report.Add(Microseconds("file.save", FileSave(table), 200));
    report.Add(Microseconds("generate", Generate(), 10));
    report.Add(Microseconds("modify", Modify(table), 10));
}

}  // namespace rv52::bench
