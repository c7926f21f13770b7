#include "frame/frm_main.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/test_session.h"

namespace zenvora::frame {
namespace {

using controls::Form;

struct MainWindowTest : testing::Test {
    testing_support::TestSession program;
    frmMain form{program.session};

    [[nodiscard]] std::string Caption(std::string_view name, int index = controls::Control::kNoIndex) const {
        const auto* const control = dynamic_cast<const controls::CaptionControl*>(form.Find(name, index));
        return control == nullptr ? "(none)" : control->Caption();
    }
};

TEST_F(MainWindowTest, PageOneHasItsControlsWithTheirCaptions) {
    EXPECT_EQ(Caption("GroupBox2"), "Address");
    EXPECT_EQ(Caption("GroupBox1"), "");
    EXPECT_EQ(Caption("Label1"), "Effective Appraisal Date");
    EXPECT_EQ(Caption("cmdAdd"), "&Add");
    EXPECT_EQ(Caption("cmdEdit"), "&Edit");
    EXPECT_EQ(Caption("cmdDelete"), "&Delete");
    EXPECT_EQ(Caption("cmdChkValidity"), "C&heck for Validity");
    EXPECT_EQ(Caption("txtCalculate"), "&Calculate");
    EXPECT_EQ(Caption("cmdPrintAudit"), "Print");
    EXPECT_EQ(Caption("cmdExit2"), "E&xit");
    for (const char* name : {"tdgViewer", "tdbgData", "lblExplanation", "txtCentralKey", "txtBaseDate",
                             "cboBaseDate", "imaBaseDateCal"}) {
        EXPECT_NE(form.Find(name), nullptr) << name;
    }
}

TEST_F(MainWindowTest, PageTwoHasItsControlsWithTheirCaptions) {
    EXPECT_EQ(Caption("Frame1"), "Inventory Analysis");
    EXPECT_EQ(Caption("Frame2"), "Median Sale && List Price, DOM, Sale / List %");
    EXPECT_EQ(Caption("fraTransfer"), "1004MC: Transfer");
    EXPECT_EQ(Caption("cmdTransfer"), "&Mkt R && A");
    EXPECT_EQ(Caption("cmdTransferAudit"), "A&udit Trail");
    EXPECT_EQ(Caption("cmdTransferCondoCoop"), "C&ondo/Co Op");
    EXPECT_EQ(Caption("Label19"), "Effective Appraisal Date");
    EXPECT_EQ(Caption("lblDataSentMsg"), "Data sent to report");
    EXPECT_EQ(Caption("cmdPrintCalc"), "Print");
    EXPECT_EQ(Caption("cmdBack"), "<<  Comps and Listings");
    EXPECT_EQ(Caption("cmdExit"), "E&xit");
    EXPECT_EQ(Caption("PushButton1"), "E&xit");
    for (const char* row :
         {"txtTotalC", "txtAveCPrice", "txtTotalL", "txtTotalPerAveCPrice", "txtMedianCPrice",
          "txtMedianCDOM", "txtMedianLPrice", "txtMedianLDOM", "txtMedianLPDivSP"}) {
        for (int column = 0; column < 3; ++column)
            EXPECT_NE(form.Find(row, column), nullptr) << row << "(" << column << ")";
    }
}

TEST_F(MainWindowTest, TheMenusHaveTheirEntries) {
    std::vector<std::string> menus;
    for (const controls::Menu& menu : form.Menus()) {
        menus.push_back(menu.title->Caption());
        for (const controls::Menu::Entry& entry : menu.entries)
            menus.push_back("  " + (entry.item == nullptr ? "-" : entry.item->Caption()));
    }
    EXPECT_EQ(menus, (std::vector<std::string>{
                         "File", "  New Databook", "  Open Databook", "  Merge Databooks", "  Open Recent",
                         "  -", "  Audit Report as PDF...", "  Calculations as PDF...",
                         "  Shrink Long Addresses in the PDF", "Setup", "  Configuration", "Refresh",
                         "  Check for Appraisal Software", "Help", "  About", "  Zenvora Help  F1"}));
    EXPECT_EQ(Caption("mnuFileItem", 1), "New Databook");
    EXPECT_EQ(form.Find("mnuFileItem", 0), nullptr);
    EXPECT_EQ(form.Find("mnuRefreshItem", 2), nullptr);
    EXPECT_NE(form.Find("mnuRecentItem", 9), nullptr);
}

}  // namespace
}  // namespace zenvora::frame
