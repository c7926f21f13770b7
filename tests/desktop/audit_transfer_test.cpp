// The audit addendum through its real widgets.

#include <QPushButton>
#include <QRadioButton>
#include <gtest/gtest.h>

#include "databook/selection.h"
#include "databook/template.h"
#include "desktop/frm_text_view.h"
#include "desktop/screen.h"
#include "support/recording_carrier.h"
#include "support/temp_folder.h"

namespace zenvora::desktop {
namespace {

using testing_support::Settle;
using testing_support::Soon;

TEST(AuditTransfer, TheUserPicksAFreeAddendumAndSends) {
    constexpr text::Date kToday = 40359;  // 6/30/2010
    testing_support::TempFolder folder;
    databook::CreateTemplate(folder / "BOOK.mdb", kToday);
    QtDesktop screen;
    screen.Register("frmText", FrmTextView);
    const shell::FixedClock clock(kToday);
    ado::DatabasePool databooks;
    common::Session session{.desktop = screen, .clock = clock, .databooks = databooks};
    ado::Adodc adoDatabook(databooks, clock);
    adoDatabook.Connectionstring = "Data Source=" + (folder / "BOOK.mdb").string() + ";Mode=ReadWrite";
    databook::AdoSelect(adoDatabook, "COMPS", databook::kMainFieldList, databook::kKeyOrder);
    adoDatabook.Recordset().AddNew();
    adoDatabook.Recordset().SetValue("CENTRALKEY", std::string("12 OAK ST"));
    adoDatabook.Recordset().SetValue("SELECTED", std::string("1"));
    adoDatabook.Recordset().Update();

    testing_support::RecordingCarrier krn;
    krn.values["KRN|Query"]["ActiveReports"] = "Smith,";
    krn.values["Krn|Smith"]["UserID"] = "7";
    krn.values["KRN|Smith"] = {{"ListForms", "1004MC,Text,TextB,"}, {"Text|10|1", "Somebody's text"}};
    krn.values["KRN|SMITH"];
    transfer::frmText form(session, krn, adoDatabook, kToday);

    Soon([&] {
        QWidget* const window = QApplication::activeModalWidget();
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(window->windowTitle(), QStringLiteral("Transfer Audit Report"));
        const auto option = [&](const char* name) {
            return window->findChild<QRadioButton*>(QString::fromLatin1(name));
        };
        ASSERT_NE(option("optText_4"), nullptr);
        EXPECT_EQ(option("optText_0")->text(),
                  QStringLiteral("Text Addendum A   Contains Other Information"));
        EXPECT_FALSE(option("optText_0")->isEnabled());
        EXPECT_FALSE(option("optText_2")->isEnabled());
        QTest::mouseClick(option("optText_1"), Qt::LeftButton);
        EXPECT_TRUE(option("optText_1")->isChecked());
        QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("cmdTransfer")), Qt::LeftButton);
        Settle();
        if (form.Visible()) {
            ADD_FAILURE() << "the dialog was left open";
            form.Unload();
        }
    });
    session.forms.Event([&] { form.Show(controls::Modality::Modal); });
    Settle();
    ASSERT_EQ(krn.pokes.size(), 3U);
    EXPECT_EQ(krn.pokes[2].first, "TextB|10|1");
    EXPECT_TRUE(krn.pokes[2].second.starts_with("Listings:\r\n"));
}

}  // namespace
}  // namespace zenvora::desktop
