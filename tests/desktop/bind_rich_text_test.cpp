// Formatted text on its ground.

#include <gtest/gtest.h>

#include "desktop/binder_fixture.h"
#include "desktop/shades.h"

namespace zenvora::desktop {
namespace {

TEST_F(BinderTest, FormattedTextIsShownAndCanBeReadOnAnyGround) {
    Show();
    auto& panel = Find<QTextBrowser>("rtbHelp");
    form.rtbHelp.SetParagraphs(
        {{.runs = {{.text = "Original "}, {.text = "List", .bold = true, .color = 0xFFFF00}},
          .align = controls::RichAlign::Center},
         {}});
    EXPECT_EQ(panel.toPlainText(), QStringLiteral("Original List\n"));
    QTextCursor cursor(panel.document());
    cursor.setPosition(12);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
    EXPECT_EQ(cursor.blockFormat().alignment(), Qt::AlignHCenter);
    const auto contrast = [&] {
        return Contrast(panel.palette().color(QPalette::Base), cursor.charFormat().foreground().color());
    };
    EXPECT_GE(contrast(), 4.5) << "yellow on white cannot be read";
    form.rtbHelp.SetBackColor(0x800000);
    cursor.setPosition(12);
    EXPECT_GE(contrast(), 4.5);
    form.rtbHelp.SetText("plain");
    EXPECT_EQ(panel.toPlainText(), QStringLiteral("plain"));
}

}  // namespace
}  // namespace zenvora::desktop
