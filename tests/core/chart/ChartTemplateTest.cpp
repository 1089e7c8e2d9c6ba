#include "chart/ChartTemplate.h"
#include "support/ShippedFile.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

std::string Shipped(TableType type) {
    return test::ShippedFile(std::string(ChartTemplateFileName(type)));
}

// The RACE template with one line replaced; an empty line takes it out.
std::string With(const std::string& key, const std::string& line) {
    auto text = Shipped(TableType::RACE);
    const auto start = text.find("\n" + key + " =") + 1;
    EXPECT_NE(start, 0U) << key;
    return text.replace(start, text.find('\n', start) - start, line);
}

// How light a colour is in a grey print.
double Lightness(const ChartColour& colour) {
    return 0.30 * colour.red + 0.59 * colour.green + 0.11 * colour.blue;
}

TEST(ChartTemplateTest, ShippedTemplatesFitTheirTypes) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        const auto chart = ParseChartTemplate(Shipped(type), type);
        ASSERT_TRUE(chart) << ToText(type);
        EXPECT_EQ(chart->rows, RowCount(type));
        EXPECT_EQ(chart->advance.to, 45);
        ASSERT_EQ(chart->bands.size(), 9U);
        for (std::size_t band = 1; band < chart->bands.size(); ++band)
            EXPECT_GT(Lightness(chart->bands[band]), Lightness(chart->bands[band - 1]) + 10)
                << "grey print would not tell band " << band << " from the one below";
    }
    EXPECT_EQ(ParseChartTemplate(Shipped(TableType::RACE), TableType::RACE)->bands,
              ParseChartTemplate(Shipped(TableType::EX), TableType::EX)->bands)
        << "one colour means one advance in both types";
    EXPECT_FALSE(ParseChartTemplate(Shipped(TableType::RACE), TableType::EX));
    EXPECT_FALSE(ParseChartTemplate(Shipped(TableType::EX), TableType::RACE));
}

TEST(ChartTemplateTest, TakesEitherLineEndAndAnyOrder) {
    auto text = With("azimuth", "") + "\n! at the end\n  azimuth=-12.5";
    for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
        text.insert(at, "\r");
    const auto chart = ParseChartTemplate(text, TableType::RACE);
    ASSERT_TRUE(chart);
    EXPECT_EQ(chart->azimuth, -12.5);
}

TEST(ChartTemplateTest, RefusesWhatIsMalformed) {
    const auto shipped = Shipped(TableType::RACE);
    const auto bands = [](const std::string& last) {
        const char* lower = "#000000 #111111 #222222 #333333 #444444 #555555 #666666 #777777 ";
        return With("advance.bands", "advance.bands = " + (lower + last));
    };
    EXPECT_TRUE(ParseChartTemplate(bands("#888888"), TableType::RACE));
    for (const auto& text : {std::string(), "\xEF\xBB\xBF" + shipped, shipped.substr(0, shipped.size() / 2),
                             With("rpm.caption", "rpm.caption = " + std::string(240, 'x'))})
        EXPECT_FALSE(ParseChartTemplate(text, TableType::RACE)) << text;
    for (const auto& line : {std::string("azimuth = 20"), std::string("colour = #000000"),
                             std::string("stray words"), std::string(1, '\0'), "! " + std::string(8192, '-')})
        EXPECT_FALSE(ParseChartTemplate(shipped + line + "\n", TableType::RACE)) << line;
    for (const auto* band : {"", "#88888", "#88888g", "#-18888", "8888888"})
        EXPECT_FALSE(ParseChartTemplate(bands(band), TableType::RACE)) << band;
    const std::pair<const char*, std::string> values[] = {
        {"rpm.caption", ""}, {"columns", "15"},   {"rows", "8.5"},     {"map.from", "18"},
        {"rpm.to", "8000"},  {"rpm.step", "0"},   {"rpm.step", "700"}, {"rpm.step", "0.001"},
        {"azimuth", "nan"},  {"azimuth", "28,5"}, {"azimuth", "181"},  {"azimuth", std::string(200, '9')},
        {"elevation", "9"},  {"elevation", "71"}, {"advance.to", "0"}};
    for (const auto& [key, value] : values)
        EXPECT_FALSE(ParseChartTemplate(With(key, key + (" = " + value)), TableType::RACE)) << key << value;
}

}  // namespace
}  // namespace rv52
