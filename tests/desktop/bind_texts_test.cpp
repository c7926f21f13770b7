// Texts and their boxes, both ways.

#include <gtest/gtest.h>

#include "desktop/binder_fixture.h"

namespace zenvora::desktop {
namespace {

TEST_F(BinderTest, TypingReachesTheTextBoxAndRunsItsRuleOncePerKey) {
    Show();
    Texts texts;
    form.txtFirst.OnChange([&] { texts.push_back(form.txtFirst.Text()); });
    QTest::keyClicks(&Find<QLineEdit>("txtFirst"), QStringLiteral("ab"));
    EXPECT_EQ(texts, (Texts{"a", "ab"}));
}

TEST_F(BinderTest, ATextOfTheProgramShowsAndRunsItsRuleOnce) {
    Show();
    int changes = 0;
    form.txtFirst.OnChange([&] { ++changes; });
    form.txtFirst.SetText("caf\xC3\xA9");
    EXPECT_EQ(Find<QLineEdit>("txtFirst").text(), QString::fromUtf8("caf\xC3\xA9"));
    EXPECT_EQ(changes, 1);
}

TEST_F(BinderTest, ARuleThatChangesWhatIsTypedShowsAndKeepsTheCaret) {
    Show();
    form.txtFirst.OnChange([&] {
        std::string upper = form.txtFirst.Text();
        for (char& sign : upper)
            sign = static_cast<char>(std::toupper(sign));
        form.txtFirst.SetText(upper);
    });
    auto& edit = Find<QLineEdit>("txtFirst");
    QTest::keyClicks(&edit, QStringLiteral("ac"));
    QTest::keyClick(&edit, Qt::Key_Left);
    QTest::keyClick(&edit, Qt::Key_B);
    EXPECT_EQ(form.txtFirst.Text(), "ABC");
    EXPECT_EQ(edit.text(), QStringLiteral("ABC"));
    EXPECT_EQ(edit.cursorPosition(), 2);
}

TEST_F(BinderTest, PastingUndoAndClearingAreOneChangeEach) {
    Show();
    int changes = 0;
    form.txtFirst.OnChange([&] { ++changes; });
    auto& edit = Find<QLineEdit>("txtFirst");
    edit.insert(QStringLiteral("12/31/2025"));
    EXPECT_EQ(changes, 1);
    edit.undo();
    EXPECT_EQ(form.txtFirst.Text(), "");
    EXPECT_EQ(changes, 2);
    edit.redo();
    edit.clear();
    EXPECT_EQ(changes, 4);
}

TEST_F(BinderTest, TheLimitHoldsForTypingAndNotForTheProgram) {
    form.txtFirst.SetMaxLength(3);
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    QTest::keyClicks(&edit, QStringLiteral("12345"));
    EXPECT_EQ(form.txtFirst.Text(), "123");
    form.txtFirst.SetText("123456");
    EXPECT_EQ(edit.text(), QStringLiteral("123456"));
    edit.setFocus();
    edit.end(false);
    QTest::keyClicks(&edit, QStringLiteral("7"));
    EXPECT_EQ(form.txtFirst.Text(), "123456");
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(form.txtFirst.Text(), "12345");
}

TEST_F(BinderTest, ALockedBoxTakesNoKeys) {
    form.txtFirst.SetText("fixed");
    form.txtFirst.SetLocked(true);
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    QTest::keyClicks(&edit, QStringLiteral("x"));
    EXPECT_EQ(form.txtFirst.Text(), "fixed");
    form.txtFirst.SetLocked(false);
    edit.end(false);
    QTest::keyClicks(&edit, QStringLiteral("x"));
    EXPECT_EQ(form.txtFirst.Text(), "fixedx");
}

TEST_F(BinderTest, SelectAllSelectsOnTheScreen) {
    form.txtFirst.SetText("abc");
    Show();
    form.txtFirst.SelectAll();
    EXPECT_EQ(Find<QLineEdit>("txtFirst").selectedText(), QStringLiteral("abc"));
}

TEST_F(BinderTest, ALabelNamesTheBoxBesideItAndItsMnemonicGoesThere) {
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    EXPECT_EQ(edit.accessibleName(), QStringLiteral("Name"));
    form.txtInside.SetFocus();
    QTest::keyClick(window, Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(edit.hasFocus());
    form.lblName.SetCaption("Other");
    EXPECT_EQ(edit.accessibleName(), QStringLiteral("Other"));
}

TEST_F(BinderTest, ALinkIsPressedByMouseAndByKeyboard) {
    Show();
    auto& link = Find<QAbstractButton>("lblLink");
    EXPECT_EQ(link.accessibleName(), QStringLiteral("Get <Help>"));
    QTest::mouseClick(&link, Qt::LeftButton);
    form.lblLink.SetFocus();
    QTest::keyClick(&link, Qt::Key_Return);
    QTest::keyClick(&link, Qt::Key_Space);
    EXPECT_EQ(form.events, (Texts{"link", "link", "link"}));
}

}  // namespace
}  // namespace zenvora::desktop
