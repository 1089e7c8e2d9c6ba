#include "app/HelpContents.h"

#include <gtest/gtest.h>

namespace rv52 {
namespace {

TEST(HelpContentsTest, ReadsNestedLists) {
    const std::vector<HelpTopic> expected{
        {"First", "a.html", {}},
        {"Second & \"third\"",
         "b.html",
         {{"Inner", "c.html", {{"Deep", "d.html", {}}}}, {"Next", "e.html", {}}}},
        {"Last", "f.html", {}}};
    EXPECT_EQ(ParseHelpContents(R"(<!DOCTYPE HTML><html><body><UL>
        <LI><OBJECT type="text/sitemap"><param name="Name" value="First"><param name="Local" value="a.html"></OBJECT>
        <LI><object><param name="Name" value="Second &amp; &quot;third&quot;">
            <param name="Local" value="b.html"></object>
        <ul><li><object><param name="Name" value="Inner"><param name="Local" value="c.html"></object>
            <ul><li><object><param name="Local" value="d.html"><param name="Name" value="Deep"></object></ul>
            <li><object><param name="Name" value="Next"><param name="Local" value="e.html"></object></ul>
        <LI><OBJECT><param name="Name" value="Last"><param name="Local" value="f.html"></OBJECT>
        </UL></body></html>)"),
              expected);
}

TEST(HelpContentsTest, ReadsAnyTextWithoutFailing) {
    std::string deep;
    while (deep.size() < 400'000)
        deep += "<ul>";
    for (const auto& text : {std::string(), std::string("no tags < at all"),
                             std::string("<param name=\"Name\"></ul></ul>"), deep})
        EXPECT_TRUE(ParseHelpContents(text).empty());
    EXPECT_EQ(ParseHelpContents("<ul><object><param name=\"Name\" value=\"cut").size(), 1U);
}

}  // namespace
}  // namespace rv52
