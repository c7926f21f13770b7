// The record editor through its real widgets: typed, tabbed and clicked, and what is in the Databook
// afterwards as an independent reader sees it.

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTextBrowser>
#include <filesystem>
#include <gtest/gtest.h>

#include "databook/template.h"
#include "desktop/frm_edit_view.h"
#include "desktop/frm_pick_date_view.h"
#include "desktop/look.h"
#include "desktop/screen.h"
#include "platform/ado/pool.h"
#include "records/edit_record.h"
#include "records/small_main_form.h"
#include "support/temp_folder.h"

namespace zenvora::desktop {
namespace {

using testing_support::Settle;
using testing_support::Soon;

class RecordEditor : public testing::Test {
  protected:
    static constexpr text::Date kToday = 40359;  // 6/30/2010

    RecordEditor() {
        SetLook(*qApp);
        QApplication::setPalette(LightColors());
        screen.Register("frmEdit", FrmEditView);
        screen.Register("frmPickDate", FrmPickDateView);
        std::filesystem::create_directories(driveC / "DATA");
        databook::CreateTemplate(driveC / "DATA/LISTINGS.mdb", kToday);
        driveC.Write("Appraise/ZVR.INI", "[DIRECTORIES]\r\nTABLE=COMPS\r\n");
        std::filesystem::copy(ZENVORA_HELP_TEXTS, driveC / "ZVR");
        session.settings.settingsFile = "C:\\Appraise\\ZVR.INI";
        session.settings.applicationDirectory = "C:\\ZVR\\";
        main.EffectiveDate = kToday;
        main.txtBaseDate.SetText("6/30/2010");
        main.Load();
        main.ReopenRecordViews();
    }
    ~RecordEditor() override { QApplication::setPalette(LightColors()); }

    /// Runs the editor on a record; `user` works in its window.
    void Edit(const char* keyBox, const char* mode, const std::function<void(QWidget&)>& user) {
        main.txtCentralKey.SetText(keyBox);
        main.ReopenRecordViews();
        Soon([&] {
            QWidget* const window = QApplication::activeModalWidget();
            ASSERT_NE(window, nullptr);
            ASSERT_TRUE(QTest::qWaitForWindowActive(window));
            user(*window);
            Settle();
            // A test that fails half-way must not wait for a user.
            if (controls::Form* const last = session.forms.Loaded().back(); last->Name() == "frmEdit") {
                ADD_FAILURE() << "the dialog was left open";
                last->Unload();
            }
        });
        session.forms.Event([&] { records::EditRecord(application, main, mode); });
        Settle();
    }
    static QLineEdit& Box(QWidget& window, const char* name) {
        auto* const edit = window.findChild<QLineEdit*>(QString::fromLatin1(name));
        if (edit == nullptr) throw std::logic_error(name);
        return *edit;
    }
    static void Press(QWidget& window, const char* name) {
        auto* const button = window.findChild<QAbstractButton*>(QString::fromLatin1(name));
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    static void Type(QWidget& window, const char* field, const char* text) {
        QLineEdit& edit = Box(window, field);
        QTest::mouseClick(&edit, Qt::LeftButton);
        Settle();
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, QString::fromUtf8(text));
    }
    static void AnswerSoon(QMessageBox::StandardButton button) {
        Soon([button] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        });
    }
    static QString Note(QWidget& window) {
        return window.findChild<QLabel*>(QStringLiteral("fieldNote"))->text();
    }
    static bool HasSign(QLineEdit& edit) {
        return !edit.actions().isEmpty() && edit.actions().constFirst()->isVisible();
    }

    testing_support::TempFolder driveC;
    QtDesktop screen;
    shell::FixedClock clock{kToday};
    ado::DatabasePool databooks;
    common::Session session{
        .desktop = screen, .clock = clock, .databooks = databooks, .drives = files::DriveMap(driveC.Path())};
    records::SmallMainForm main{session};
    records::Application application{session, {}};
};

TEST_F(RecordEditor, AddsEditsRenamesCancelsAndDeletesRecords) {
    // Through the fields in the order of the keyboard; Enter is OK.
    Edit("12 Oak St", "ADD", [](QWidget& window) {
        QTest::mouseClick(&Box(window, "txtStreet"), Qt::LeftButton);
        const std::pair<const char*, const char*> entries[] = {{"txtStreet", nullptr},
                                                               {"txtCity", "Troy"},
                                                               {"txtState", "OH"},
                                                               {"txtZip", "45373"},
                                                               {"txtOrigListDate", "3/15/2010"},
                                                               {"txtOrigListPrice", "$259,900"},
                                                               {"txtCurrListDate", "5/1/2010"},
                                                               {"txtCurrListPrice", "250"},
                                                               {"txtContractDate", "5/10/2010"},
                                                               {"txtListCancelDate", nullptr},
                                                               {"txtSaleDate", "5/14/2010"},
                                                               {"txtSellingPr", "242500"}};
        for (const auto& [name, text] : entries) {
            QWidget* const focus = window.focusWidget();
            ASSERT_EQ(focus->objectName(), QString::fromLatin1(name));
            if (text != nullptr) QTest::keyClicks(focus, QString::fromLatin1(text));
            if (std::string_view(name) != "txtSellingPr") QTest::keyClick(focus, Qt::Key_Tab);
        }
        QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    });
    // The calendar by the keyboard, and a new street.
    Edit("12 OAK ST", "EDIT", [](QWidget& window) {
        QLineEdit& sale = Box(window, "txtSaleDate");
        sale.setFocus();
        EXPECT_EQ(sale.selectedText(), QStringLiteral("5/14/2010")) << "taking the focus selects the text";
        Soon([] {
            QWidget* const calendar = QApplication::activeModalWidget();
            ASSERT_TRUE(QTest::qWaitForWindowActive(calendar));
            EXPECT_EQ(calendar->windowTitle(), QStringLiteral("Sale Date must be on or after 3/15/2010"));
            QTest::keyClick(calendar->focusWidget(), Qt::Key_Right);
            QTest::keyClick(calendar->focusWidget(), Qt::Key_Return);
        });
        QTest::keyClick(&sale, Qt::Key_F4);
        // A screen without a window manager brings no window to the front by itself.
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        EXPECT_EQ(sale.text(), QStringLiteral("5/15/2010"));
        EXPECT_EQ(window.focusWidget()->objectName(), QStringLiteral("txtSellingPr"));
        Type(window, "txtStreet", "16 O'Brien's Way");
        Press(window, "cmdOK");
    });
    // What was typed is taken back.
    Edit("16 O'BRIEN'S WAY", "EDIT", [](QWidget& window) {
        EXPECT_EQ(Box(window, "txtStreet").text(), QStringLiteral("16 O'Brien's Way"));
        Type(window, "txtCity", "Dayton");
        Type(window, "txtSellingPr", "1");
        QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
    });
    Edit("14 Elm St", "ADD", [](QWidget& window) { Press(window, "cmdCancel"); });
    Edit("18 Elm St", "ADD", [](QWidget& window) {
        Type(window, "txtOrigListPrice", "100000");
        window.close();
    });
    // No keeps the record, Yes deletes it.
    main.txtCentralKey.SetText("14 ELM ST");
    main.ReopenRecordViews();
    AnswerSoon(QMessageBox::No);
    records::DeleteRecord(application, main);
    AnswerSoon(QMessageBox::Yes);
    records::DeleteRecord(application, main);
    EXPECT_EQ(main.txtCentralKey.Text(), "16 O'BRIEN'S WAY");

    QProcess reader;
    const std::string file = (driveC / "DATA/LISTINGS.mdb").string();
    reader.start(QStringLiteral("mdb-export"),
                 {QStringLiteral("-D"), QStringLiteral("%m/%d/%Y"), QStringLiteral("-T"),
                  QStringLiteral("%m/%d/%Y"), QString::fromStdString(file), QStringLiteral("COMPS")});
    if (!reader.waitForStarted()) GTEST_SKIP() << "mdbtools is not installed";
    ASSERT_TRUE(reader.waitForFinished());
    EXPECT_EQ(reader.readAllStandardOutput().toStdString(),
              "CENTRALKEY,ADDRESS,ADDRESS2,CITY,ST,ZIP,NEIGHBORHD,SELLINGPR,PRICEFLD,SALEDATE,SALEFLD,"
              "ORIGLISTPRICE,ORIGLISTDATE,LASTLISTPRICE,LASTLISTDATE,CONTRACTDATE,LISTCANCELDATE,SELECTED,"
              "LISTINGDOM,OTHERAREA2,OtherArea1,ContrKDate,ERCFinal,DAYSONMARKET\n"
              "\"16 O'BRIEN'S WAY\",\"16 O'Brien's Way\",,\"Troy\",\"OH\",\"45373\",,242500,242500,"
              "\"05/15/2010\",\"05/15/2010\",259900,\"03/15/2010\",250000,\"05/01/2010\",\"05/10/2010\","
              "\"01/01/1900\",\"1\",,,,,,\n"
              "\"18 ELM ST\",\"18 Elm St\",,,,,,,,,,100000,\"01/01/1900\",100000,\"01/01/1900\","
              "\"01/01/1900\",\"01/01/1900\",\"0\",,,,,,\n");
}

TEST_F(RecordEditor, AFaultIsOneMessageAndTheDialogStaysWithAllThatWasTyped) {
    Edit("12 Oak St", "ADD", [](QWidget& window) {
        Type(window, "txtCity", "Troy");
        Type(window, "txtSaleDate", "someday");
        AnswerSoon(QMessageBox::Ok);
        window.close();
        Settle();
        ASSERT_TRUE(window.isVisible());
        EXPECT_EQ(Box(window, "txtSaleDate").text(), QStringLiteral("someday"));
        EXPECT_EQ(window.focusWidget()->objectName(), QStringLiteral("txtSaleDate"));
        Press(window, "cmdCancel");
    });
}

TEST_F(RecordEditor, ASignAndALineTellWhatColourAndToolTipTell) {
    Edit("12 Oak St", "ADD", [](QWidget& window) {
        QLineEdit& listed = Box(window, "txtOrigListDate");
        const QString missing = QStringLiteral("Provide a valid date that is greater than 1/1/1900");
        EXPECT_TRUE(HasSign(listed));
        EXPECT_EQ(listed.toolTip(), missing);
        EXPECT_EQ(listed.accessibleDescription(), missing);
        EXPECT_EQ(listed.accessibleName(), QStringLiteral("Original List Date"));
        EXPECT_EQ(Note(window), QStringLiteral("Original List Date: ") + missing) << "the focus is there";
        QTest::keyClicks(&listed, QStringLiteral("3/15/2010"));
        EXPECT_FALSE(HasSign(listed));
        EXPECT_EQ(Note(window), QStringLiteral("F4 opens the calendar."));
        EXPECT_FALSE(HasSign(Box(window, "txtSaleDate")));
        Type(window, "txtSellingPr", "242500");
        EXPECT_TRUE(HasSign(Box(window, "txtSaleDate")));
        Box(window, "txtSaleDate").setFocus();
        EXPECT_EQ(Note(window), QStringLiteral("Sale Date: When there is a sale price, there must be a sale "
                                               "date or a contract date"));
        Press(window, "cmdCancel");
    });
}

TEST_F(RecordEditor, ADoubleClickOnALabelAndASingleOneOnThatOfTheCurrentDateEmptyTheField) {
    Edit("12 Oak St", "ADD", [](QWidget& window) {
        Type(window, "txtSaleDate", "5/14/2010");
        Type(window, "txtCurrListDate", "5/1/2010");
        Type(window, "txtCity", "Troy");
        QTest::mouseClick(window.findChild<QLabel*>(QStringLiteral("lblCurrentListDate")), Qt::LeftButton);
        Settle();
        EXPECT_EQ(Box(window, "txtCurrListDate").text(), QString());
        EXPECT_EQ(window.focusWidget()->objectName(), QStringLiteral("txtCurrListDate"));
        auto* const label = window.findChild<QLabel*>(QStringLiteral("lblSaleDate"));
        QTest::mouseClick(label, Qt::LeftButton);
        Settle();
        EXPECT_EQ(Box(window, "txtSaleDate").text(), QStringLiteral("5/14/2010"));
        QTest::mouseDClick(label, Qt::LeftButton);
        Settle();
        EXPECT_EQ(Box(window, "txtSaleDate").text(), QString());
        Press(window, "cmdCancel");
    });
}

TEST_F(RecordEditor, ThePanelShowsTheHelpOfTheField) {
    Edit("12 Oak St", "ADD", [](QWidget& window) {
        auto* const panel = window.findChild<QTextBrowser*>(QStringLiteral("rtxtInfo"));
        EXPECT_TRUE(panel->toPlainText().startsWith(QStringLiteral("Original List Date")));
        Box(window, "txtSellingPr").setFocus();
        EXPECT_TRUE(panel->toPlainText().startsWith(QStringLiteral("Sale Price")));
        QTest::mouseClick(&Box(window, "txtCity"), Qt::LeftButton);
        Settle();
        EXPECT_EQ(panel->toPlainText(), QString());
        Press(window, "cmdCancel");
    });
}

TEST_F(RecordEditor, TheKnownPlacesShowWithTheSwitch) {
    Edit("12 Oak St", "ADD", [](QWidget& window) {
        EXPECT_EQ(window.findChild<QComboBox*>(QStringLiteral("cboCity")), nullptr);
        Type(window, "txtState", "OH");
        Type(window, "txtZip", "45373");
        Type(window, "txtCity", "Troy");
        Press(window, "cmdCancel");
    });
    application.commandLine = "/V";
    Edit("12 OAK ST", "EDIT", [](QWidget& window) {
        auto* const places = window.findChild<QComboBox*>(QStringLiteral("cboCity"));
        ASSERT_NE(places, nullptr);
        Type(window, "txtState", "OH");
        Type(window, "txtCity", "D");
        ASSERT_GT(places->count(), 4);
        places->setCurrentIndex(3);
        emit places->activated(3);
        Settle();
        EXPECT_EQ(Box(window, "txtZip").text(), QStringLiteral("45373"));
        Press(window, "cmdCancel");
    });
}

/// Pictures of each state, light and dark, for people to look at.
TEST_F(RecordEditor, Pictures) {
    const QDir folder(QStringLiteral(ZENVORA_SCREENSHOTS));
    folder.mkpath(QStringLiteral("."));
    const auto take = [&](QWidget& window, const char* name) {
        for (const bool dark : {false, true}) {
            QApplication::setPalette(dark ? DarkColors() : LightColors());
            Settle();
            const QString file =
                folder.filePath(QString::fromLatin1(name) +
                                (dark ? QStringLiteral("-dark.png") : QStringLiteral("-light.png")));
            const QImage picture = window.grab().toImage();
            EXPECT_TRUE(picture.save(file));
            EXPECT_GT(picture.width(), 600);
        }
        QApplication::setPalette(LightColors());
    };
    application.commandLine = "/V";
    Edit("12 Oak St", "ADD", [&](QWidget& window) {
        const std::pair<const char*, const char*> sound[] = {{"txtStreet", "12 Oak St"},
                                                             {"txtCity", "North Ashby"},
                                                             {"txtState", "OH"},
                                                             {"txtZip", "45373"},
                                                             {"txtCurrListDate", "5/1/2010"},
                                                             {"txtCurrListPrice", "249900"},
                                                             {"txtOrigListPrice", "259900"},
                                                             {"txtContractDate", "5/10/2010"},
                                                             {"txtSaleDate", "5/14/2010"},
                                                             {"txtSellingPr", "242500"},
                                                             {"txtOrigListDate", "3/15/2010"}};
        for (const auto& [field, text] : sound)
            Type(window, field, text);
        take(window, "editor-good");
        Type(window, "txtCurrListPrice", "abc");
        Type(window, "txtCurrListDate", "3/14/2010");
        take(window, "editor-caution");
        Type(window, "txtState", "ME");
        Type(window, "txtOrigListPrice", "");
        Type(window, "txtBaseDate", "6/30/20");
        Type(window, "txtCurrListDate", "");
        Type(window, "txtListCancelDate", "5/25/2010");
        Type(window, "txtContractDate", "5/11/2010");
        Box(window, "txtContractDate").setFocus();
        take(window, "editor-error");
        Soon([&] {
            QWidget* const calendar = QApplication::activeModalWidget();
            ASSERT_TRUE(QTest::qWaitForWindowActive(calendar));
            take(*calendar, "calendar");
            QTest::keyClick(calendar->focusWidget(), Qt::Key_Escape);
        });
        QTest::keyClick(&Box(window, "txtContractDate"), Qt::Key_F4);
        Press(window, "cmdCancel");
    });
    Edit("14 Oak St", "ADD", [&](QWidget& window) {
        Type(window, "txtStreet", "12 Oak St");
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        take(window, "editor-street");
        Press(window, "cmdCancel");
    });
}

}  // namespace
}  // namespace zenvora::desktop
