#include "app/state/Session.h"
#include "module/commands/Report.h"
#include "platform/CodePage.h"
#include "table/Numbers.h"

namespace rv52 {

namespace {

constexpr int kTextColumn = 10;
constexpr int kFirmwareColumn = 30;
constexpr int kValueColumn = 40;
constexpr std::size_t kFieldWidth = 8;
constexpr double kChartTop = 1000;  // twips

// Right-aligned in a field of the report's table; what does not fit is cut off at its end.
std::string Fit(std::string text) {
    while (CharacterCount(text) > kFieldWidth)
        text.pop_back();
    return std::string(kFieldWidth - CharacterCount(text), ' ') + text;
}

ReportLine Text(const std::string& text) {
    return {{kTextColumn, text}};
}

ReportLine Value(const char* label, const std::string& value) {
    return {{kTextColumn, label}, {kValueColumn, value}};
}

ReportLine Value(const char* label, bool value) {
    return Value(label, std::string(value ? "True" : "False"));
}

ReportLine Header(const Session& session, const ReportNotes& notes) {
    const auto& branding = session.state.BrandingLines;
    return Text((branding.empty() ? "" : branding.front()) +
                " RV52 Ignition Module Data Printed: " + notes.printed);
}

ReportLine Comment(const ReportNotes& notes) {
    return Text("Serial/Comment: " + notes.comment);
}

ReportLine GridLine(const GridSheet& sheet, int row) {
    std::string line;
    for (int column = 0; column < sheet.ColumnCountWithHeader(); ++column)
        line += Fit(sheet.Text({GridRow(row), GridColumn(column)}));
    return Text(line);
}

std::vector<ReportLine> ParameterLines(const ModuleParameters& parameters) {
    return {
        // No revolutions are ever below 0: the place of the sign stays blank.
        Value("Cranking Revs:", " " + std::to_string(parameters.CrankRevs)),
        Value("Initial Timing (Deg):", FormatTenths(parameters.InitialTiming)),
        Value("Rear Cylinder Offset (Deg):", FormatTenths(parameters.RearOffset)),
        Value("Fixed RPM Limit:", std::to_string(parameters.RPMLimit)),
        {},
        Value("Select EEPROM Advance Table:", parameters.SelEEPROMTblFlag),
        Value("Fixed Initial Timing Enabled:", parameters.FixedInitialTmgFlag),
        Value("Fixed RPM Limit Enabled:", parameters.FixedLimFlag),
        {},
        Text("Parameters Applicable To RV52A Only"),
        Value("VSS Frequency (Hz at 100 KPH:", std::to_string(parameters.VSSFreq)),
        Value("Tach Output Enabled:", parameters.TachEnableFlag),
    };
}

}  // namespace

std::vector<ReportLine> ChartPageLines(const Session& session, const ReportNotes& notes) {
    std::vector<ReportLine> lines{Header(session, notes)};
    if (!notes.comment.empty()) lines.push_back(Comment(notes));
    return lines;
}

std::vector<ReportLine> TablePageLines(const Session& session, const ReportNotes& notes) {
    std::vector<ReportLine> lines{Header(session, notes), {}};
    if (!notes.comment.empty()) lines.push_back(Comment(notes));
    lines.insert(lines.end(), {{}, Text("Advance Table"), {}});
    for (int row = 0; row < session.sheet.RowCountWithHeader(); ++row)
        lines.push_back(GridLine(session.sheet, row));
    const ReportLine firmware{{kTextColumn, "Firmware ID:"}, {kFirmwareColumn, session.state.FirmwareId}};
    lines.insert(lines.end(), {{}, {}, firmware, {}});
    for (auto& line : ParameterLines(session.state.ModuleParameters))
        lines.push_back(std::move(line));
    return lines;
}

PixelRectangle ChartRectangle(const PrintPage& page) {
    const auto pixels = [](double twips, double twipsPerPixel) {
        return static_cast<int>(RoundHalfEven(twips / twipsPerPixel));
    };
    return {0, pixels(kChartTop, page.twipsPerPixelY), pixels(page.width, page.twipsPerPixelX),
            pixels(page.height - kChartTop, page.twipsPerPixelY)};
}

}  // namespace rv52
