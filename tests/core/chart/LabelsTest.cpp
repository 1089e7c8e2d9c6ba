#include "ChartSupport.h"
#include "chart/Overlay.h"

#include <algorithm>

namespace rv52::test {
namespace {

bool Has(const std::vector<PlacedText>& texts, const std::string& text) {
    return std::ranges::any_of(texts, [&](const auto& placed) { return placed.text == text; });
}

std::vector<View> LabelViews() {
    std::vector<View> views;
    for (double azimuth = -180; azimuth < 180; azimuth += 15)
        for (double elevation = 10; elevation <= 70; elevation += 10)
            for (const auto& size : {Extent{400, 250}, Extent{602, 351}, Extent{1280, 700}})
                views.push_back({azimuth, elevation, 1, size});
    return views;
}

void ExpectApart(const std::vector<PlacedText>& texts) {
    for (std::size_t one = 0; one < texts.size(); ++one)
        for (std::size_t other = 0; other < one; ++other)
            EXPECT_FALSE(texts[one].area.Meets(texts[other].area, 0, 0))
                << texts[one].text << " and " << texts[other].text;
}

TEST(LabelsTest, TextsAreInsideTheChartClearOfTheBoxAndOfEachOther) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        for (const auto& view : LabelViews()) {
            SCOPED_TRACE(testing::PrintToString(view));
            auto table = ShippedMaximum(type);
            table.SetCell({Column(1), Row(1)}, 99);
            table.SetCell({Column(2), Row(1)}, -9);
            const auto scene = SceneAt(table, view);
            ExpectApart(scene.texts);
            ExpectApart(scene.legend.texts);
            for (const auto& text : scene.legend.texts)
                EXPECT_TRUE(scene.legend.column.Contains(text.area)) << text.text;
            for (const auto& swatch : scene.legend.swatches)
                EXPECT_TRUE(scene.areas.whole.Contains(swatch.area));
            EXPECT_TRUE(Has(scene.legend.texts, "45\u00B0") && Has(scene.legend.texts, ">45\u00B0"));
            for (const auto& text : scene.texts) {
                EXPECT_TRUE(scene.areas.plotting.Contains(text.area)) << text.text;
                for (const auto& face : scene.walls.faces)
                    EXPECT_FALSE(Overlap(text.area, face)) << text.text;
            }
            if (view.size.width < 600) continue;
            for (const auto* caption : {"Engine speed (RPM)", "MAP", "Advance (degrees)"})
                EXPECT_TRUE(Has(scene.texts, caption)) << caption;
            EXPECT_GE(scene.texts.size(), 9U);
        }
    }
}

TEST(LabelsTest, TheAdvanceAxisIsNamedRightAboveItWhereTheWallRisesSteeply) {
    const auto scene = SceneAt(ShippedMaximum(TableType::RACE), {-107, 52, 1, {1000, 560}});
    const auto caption = std::ranges::find(scene.texts, "Advance (degrees)", &PlacedText::text);
    ASSERT_NE(caption, scene.texts.end());
    EXPECT_LT(scene.walls.advance.ticks.back().at.y - caption->area.Bottom(), 2 * caption->area.height);
}

TEST(LabelsTest, AnAxisOutOfViewIsNotNamedAndMarksAreThinnedWhereThereIsNoRoom) {
    const auto scene =
        SceneOf(AdvanceTable(TableType::RACE), ShippedTemplate(TableType::RACE),
                {.azimuth = 28, .elevation = 32, .zoom = 4, .pan = {-2, 2}}, {0, 0, 640, 360}, PlainLetters);
    EXPECT_FALSE(Has(scene.texts, "Advance (degrees)") || Has(scene.texts, "MAP"));
    const auto wide = SceneAt(ShippedMaximum(TableType::EX), {28, 32, 1, {1900, 1000}});
    for (const auto* text : {"0", "500", "7500", "10", "12", "30", "5", "45"})
        EXPECT_TRUE(Has(wide.texts, text)) << text;
    const auto narrow = SceneAt(ShippedMaximum(TableType::EX), {28, 32, 1, {602, 351}});
    EXPECT_TRUE(Has(narrow.texts, "1000") && !Has(narrow.texts, "1500"));
}

TEST(LabelsTest, TheValueLabelNeverLeavesTheChart) {
    auto views = ManyViews();
    views.push_back({28, 32, 1, {12, 9}});
    for (const auto& view : views) {
        const auto scene = SceneAt(ShippedMaximum(TableType::EX), view);
        ForEachCell(TableType::EX, [&](Cell cell) {
            ChartMarks marks;
            marks.labelled = cell;
            marks.label = "44.9";
            if (cell.column % 2 == 0) marks.limit = 45;
            const auto callout = OverlayOf(scene, marks, PlainLetters).callout;
            ASSERT_TRUE(callout);
            EXPECT_TRUE(scene.areas.whole.Contains(callout->box)) << view;
        });
    }
}

}  // namespace
}  // namespace rv52::test
