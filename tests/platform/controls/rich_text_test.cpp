#include "platform/controls/rich_text.h"

#include <gtest/gtest.h>
#include <vector>

namespace zenvora::controls {
namespace {

TEST(RichText, APlainTextIsOneRunAParagraph) {
    RichText panel{"rtxtInfo"};
    panel.SetText("one\n\ntwo");
    ASSERT_EQ(panel.Paragraphs().size(), 3U);
    EXPECT_TRUE(panel.Paragraphs()[1].runs.empty());
    EXPECT_EQ(panel.Text(), "one\n\ntwo");
    panel.SetText("");
    EXPECT_TRUE(panel.Paragraphs().empty());
    EXPECT_EQ(panel.Text(), "");
}

TEST(RichText, TellsViewsOfRealChangesOnly) {
    RichText panel{"rtxtInfo"};
    int told = 0;
    const Observation view = panel.Observe([&](Property property) { told += property == Property::Text; });
    panel.SetText("one");
    panel.SetText("one");
    EXPECT_EQ(told, 1);
    RichRun loud{"one", true};
    panel.SetParagraphs({{{loud}}});
    EXPECT_EQ(told, 2) << "the look alone is a change too";
    EXPECT_EQ(panel.Text(), "one");
}

}  // namespace
}  // namespace zenvora::controls
