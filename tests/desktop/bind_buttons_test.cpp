// Buttons, marks and pictures, both ways.

#include <QToolButton>
#include <gtest/gtest.h>

#include "desktop/binder_fixture.h"
#include "desktop/look.h"
#include "desktop/pictures.h"
#include "desktop/shades.h"

namespace zenvora::desktop {
namespace {

using controls::CheckBox;

TEST_F(BinderTest, AButtonIsPressedByMouseMnemonicEnterAndSpace) {
    Show();
    auto& ok = Find<QPushButton>("cmdOK");
    QTest::mouseClick(&ok, Qt::LeftButton);
    QTest::keyClick(window, Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.events.size() == 2; })) << "shown as pressed for a moment";
    ok.setFocus();
    QTest::keyClick(&ok, Qt::Key_Space);
    QTest::keyClick(&ok, Qt::Key_Return);
    EXPECT_EQ(form.events, (Texts{"ok", "ok", "ok", "ok"}));
}

TEST_F(BinderTest, EnterPressesTheDefaultButtonAndEscapeTheCancelButtonFromAnywhere) {
    Show();
    auto& edit = Find<QLineEdit>("txtInside");
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_TRUE(form.cmdOK.HasFocus()) << "so that the rule of leaving has run";
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_Escape);
    EXPECT_EQ(form.events, (Texts{"ok", "cancel"}));
}

TEST_F(BinderTest, EnterOnAButtonPressesThatOneAndNotTheDefault) {
    Show();
    auto& cancel = Find<QPushButton>("cmdCancel");
    cancel.setFocus();
    QTest::keyClick(&cancel, Qt::Key_Return);
    EXPECT_EQ(form.events, (Texts{"cancel"}));
}

TEST_F(BinderTest, TheMarkOfACheckBoxAndOfAnOptionIsSeenOnAnyGround) {
    const QPalette before = QApplication::palette();
    for (const QPalette& palette : {LightColors(), DarkColors()}) {
        QApplication::setPalette(palette);
        for (QAbstractButton* box : {static_cast<QAbstractButton*>(new QCheckBox),
                                     static_cast<QAbstractButton*>(new QRadioButton)}) {
            const std::unique_ptr<QAbstractButton> owned(box);
            box->resize(box->sizeHint());
            const QImage picture = box->grab().toImage();
            const QColor ground = picture.pixelColor(picture.width() - 1, picture.height() - 1);
            constexpr double kSeen = 3;
            int seen = 0;
            for (int x = 0; x < picture.width(); ++x) {
                for (int y = 0; y < picture.height(); ++y)
                    seen += Contrast(picture.pixelColor(x, y), ground) >= kSeen ? 1 : 0;
            }
            constexpr int kRoundIt = 20;
            EXPECT_GE(seen, kRoundIt) << box->metaObject()->className() << (IsDark(palette) ? ", dark" : "");
        }
    }
    QApplication::setPalette(before);
}

TEST_F(BinderTest, ACheckBoxIsToggledByTheUserAndSetByTheProgram) {
    Show();
    int clicks = 0;
    form.chkFlag.OnClick([&] { ++clicks; });
    auto& box = Find<QCheckBox>("chkFlag");
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(form.chkFlag.Value(), CheckBox::kChecked);
    form.chkFlag.SetValue(CheckBox::kGrayed);
    EXPECT_EQ(box.checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(clicks, 2);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(form.chkFlag.Value(), CheckBox::kUnchecked) << "a grey box becomes unchecked";
    EXPECT_EQ(box.checkState(), Qt::Unchecked);
    EXPECT_EQ(clicks, 3);
}

TEST_F(BinderTest, OptionsOfAGroupExcludeEachOtherBothWays) {
    Show();
    int clicks = 0;
    form.optOne.OnClick([&] { ++clicks; });
    form.optTwo.OnClick([&] { ++clicks; });
    auto& one = Find<QRadioButton>("optOne");
    auto& two = Find<QRadioButton>("optTwo");
    one.click();
    EXPECT_TRUE(form.optOne.Value());
    form.optTwo.SetValue(true);
    EXPECT_TRUE(two.isChecked());
    EXPECT_FALSE(one.isChecked());
    two.click();
    EXPECT_EQ(clicks, 2) << "one that is set already does not change";
    form.optTwo.SetValue(false);
    EXPECT_FALSE(two.isChecked()) << "a group may have none";
    one.setFocus();
    one.click();
    QTest::keyClick(&one, Qt::Key_Down);
    EXPECT_TRUE(form.optTwo.Value()) << "the arrow keys choose";
}

TEST_F(BinderTest, AnImageWithARuleIsAButtonOfTheKeyboard) {
    Show();
    auto& image = Find<QToolButton>("imgCalendar");
    EXPECT_EQ(image.accessibleName(), QStringLiteral("Choose a date"));
    EXPECT_FALSE(image.icon().isNull());
    image.setFocus();
    QTest::keyClick(&image, Qt::Key_Space);
    QTest::keyClick(&image, Qt::Key_Return);
    EXPECT_EQ(form.events, (Texts{"calendar", "calendar"}));
}

TEST(Pictures, AreCrispAtAnyScaleAndUnknownOnesAreNone) {
    EXPECT_TRUE(Picture("no such picture").isNull());
    for (const char* name : {"check", "cross", "calendar", "sent", "splash", "zenvora"}) {
        const QImage image = Picture(name).pixmap(QSize(64, 64)).toImage();
        ASSERT_EQ(image.size(), QSize(64, 64)) << name;
        bool drawn = false;
        for (int place = 0; place < 64 * 64; ++place)
            drawn |= qAlpha(image.pixel(place % 64, place / 64)) > 0;
        EXPECT_TRUE(drawn) << name;
    }
}

}  // namespace
}  // namespace zenvora::desktop
