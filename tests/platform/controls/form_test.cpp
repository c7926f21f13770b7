#include "platform/controls/form.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/controls/command_button.h"
#include "platform/controls/forms.h"
#include "platform/controls/text_box.h"
#include "platform/fault.h"
#include "support/scripted_desktop.h"

namespace zenvora::controls {
namespace {

using testing_support::ScriptedDesktop;

/// A form that writes down what happens to it.
class SmallForm final : public Form {
  public:
    SmallForm(Forms& forms, std::string name, std::vector<std::string>& events)
        : Form(forms, std::move(name)), events_(events) {
        Add(txtFirst);
        Add(txtSecond);
        Add(cmdOK);
        Add(cmdItem);
    }

    TextBox txtFirst{"txtFirst"};
    TextBox txtSecond{"txtSecond"};
    CommandButton cmdOK{"cmdOK"};
    ControlArray<CommandButton> cmdItem{"cmdItem", 2};
    bool refuses = false;
    bool unloadsItself = false;

  protected:
    void OnLoad() override {
        events_.push_back(Name() + " load");
        if (unloadsItself) Unload();
    }
    void OnActivate() override { events_.push_back(Name() + " activate"); }
    void OnQueryUnload(bool& cancel) override { cancel = refuses; }
    void OnUnload() override { events_.push_back(Name() + " unload"); }

  private:
    std::vector<std::string>& events_;
};

struct FormTest : testing::Test {
    ScriptedDesktop desktop;
    Forms forms{desktop};
    std::vector<std::string> events;
};

using Events = std::vector<std::string>;

TEST_F(FormTest, LoadsOnceActivatesWhenShownAndUnloads) {
    SmallForm form{forms, "frmSmall", events};
    desktop.ExpectForm("frmSmall");
    form.Load();
    form.Show(Modality::Modal);
    EXPECT_EQ(events, (Events{"frmSmall load", "frmSmall activate", "frmSmall unload"}));
    EXPECT_FALSE(form.Loaded());
    EXPECT_TRUE(forms.Loaded().empty());
    EXPECT_TRUE(desktop.ended) << "the program ends with its last form";
}

TEST_F(FormTest, AFormThatItsLoadUnloadsIsNotShown) {
    SmallForm form{forms, "frmSmall", events};
    form.unloadsItself = true;
    form.Show(Modality::Modal);
    EXPECT_TRUE(desktop.shown.empty());
}

TEST_F(FormTest, AFormMayRefuseItsCloseBoxButNotUnload) {
    SmallForm form{forms, "frmSmall", events};
    form.Load();
    form.refuses = true;
    form.Close();
    EXPECT_TRUE(form.Loaded());
    form.Unload();
    EXPECT_FALSE(form.Loaded());
}

TEST_F(FormTest, FindsControlsByNameAndIndex) {
    SmallForm form{forms, "frmSmall", events};
    EXPECT_EQ(form.Find("txtSecond"), &form.txtSecond);
    EXPECT_EQ(form.Find("cmdItem", 1), &form.cmdItem[1]);
    EXPECT_EQ(form.Find("cmdItem"), nullptr);
    EXPECT_EQ(form.Find("txtsecond"), nullptr);
    EXPECT_EQ(form.cmdItem[1].Owner(), &form);
}

TEST_F(FormTest, TheFocusRunsTheRulesOfLeavingAndComing) {
    SmallForm form{forms, "frmSmall", events};
    form.txtFirst.OnGotFocus([&] { events.emplace_back("first comes"); });
    form.txtFirst.OnLostFocus([&] { events.emplace_back("first leaves"); });
    form.txtSecond.OnGotFocus([&] { events.emplace_back("second comes"); });
    form.txtFirst.SetFocus();
    form.txtFirst.SetFocus();
    form.txtSecond.SetFocus();
    EXPECT_EQ(events, (Events{"first comes", "first leaves", "second comes"}));
    EXPECT_TRUE(form.txtSecond.HasFocus());
    EXPECT_FALSE(form.txtFirst.HasFocus());
}

TEST_F(FormTest, ARuleOfLeavingMaySendTheFocusBack) {
    SmallForm form{forms, "frmSmall", events};
    form.txtFirst.OnLostFocus([&] { form.txtFirst.SetFocus(); });
    form.txtSecond.OnGotFocus([&] { events.emplace_back("second comes"); });
    form.txtFirst.SetFocus();
    form.txtSecond.SetFocus();
    EXPECT_TRUE(form.txtFirst.HasFocus());
    EXPECT_TRUE(events.empty());
}

TEST_F(FormTest, DisabledAndHiddenControlsTakeNoFocus) {
    SmallForm form{forms, "frmSmall", events};
    form.txtFirst.SetFocus();
    form.txtSecond.SetEnabled(false);
    form.txtSecond.SetFocus();
    form.cmdOK.SetVisible(false);
    form.cmdOK.SetFocus();
    EXPECT_TRUE(form.txtFirst.HasFocus());
}

TEST_F(FormTest, TheFormBelowIsActivatedAgainWhenTheModalOneIsUnloaded) {
    SmallForm below{forms, "frmBelow", events};
    SmallForm above{forms, "frmAbove", events};
    desktop.ExpectForm("frmBelow");
    desktop.ExpectForm("frmAbove", [](Form& form) { form.Hide(); });
    below.Show(Modality::Modeless);
    events.clear();
    above.Show(Modality::Modal);
    EXPECT_EQ(events, (Events{"frmAbove load", "frmAbove activate"})) << "hidden, and still loaded";
    forms.UnloadFormByName(" FRMABOVE ");
    EXPECT_EQ(events.back(), "frmBelow activate");
    below.Unload();
}

TEST_F(FormTest, UnloadAllFormsPassesOverFormsThatAnotherHasUnloaded) {
    SmallForm first{forms, "frmFirst", events};
    SmallForm second{forms, "frmSecond", events};
    first.Load();
    second.Load();
    forms.UnloadAllForms();
    EXPECT_EQ(events, (Events{"frmFirst load", "frmSecond load", "frmFirst unload", "frmSecond unload"}));
    EXPECT_TRUE(desktop.ended);
}

TEST_F(FormTest, AFaultOfAnEventGoesToTheHandlerAndTheProgramGoesOn) {
    std::string told;
    forms.SetFaultHandler([&](std::exception_ptr fault) {
        try {
            std::rethrow_exception(fault);
        } catch (const Fault& problem) {
            told = problem.description;
        }
        return true;
    });
    forms.Event([] { throw Fault{fault::kDiskFull, "full"}; });
    EXPECT_EQ(told, "full");
    EXPECT_FALSE(forms.Ending());
    EXPECT_NO_THROW(forms.Result());
}

TEST_F(FormTest, WhatEndsTheProgramComesOutOfTheModalFormsAndThenOfTheProgram) {
    SmallForm below{forms, "frmBelow", events};
    SmallForm above{forms, "frmAbove", events};
    forms.SetFaultHandler([](std::exception_ptr) { return false; });
    desktop.ExpectForm("frmBelow", [&](Form&) {
        above.Show(Modality::Modal);
        events.emplace_back("never");
    });
    desktop.ExpectForm("frmAbove", [](Form&) { throw Fault{fault::kDiskFull, "full"}; });
    below.Show(Modality::Modeless);
    EXPECT_TRUE(forms.Ending());
    EXPECT_TRUE(desktop.ended);
    EXPECT_EQ(events, (Events{"frmBelow load", "frmBelow activate", "frmAbove load", "frmAbove activate"}));
    EXPECT_THROW(forms.Result(), Fault);
    forms.Event([&] { events.emplace_back("never"); });
    EXPECT_NE(events.back(), "never") << "no event runs any more";
}

}  // namespace
}  // namespace zenvora::controls
