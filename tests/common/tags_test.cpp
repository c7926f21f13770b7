#include "common/tags.h"

#include <gtest/gtest.h>

#include "common/globals.h"
#include "common/placement.h"
#include "platform/controls/check_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/label.h"
#include "platform/controls/option_button.h"
#include "platform/controls/text_box.h"
#include "platform/fault.h"
#include "support/test_session.h"

namespace zenvora::common {
namespace {

using testing_support::TestSession;

class AutoComplete final : public controls::Control {
  public:
    using Control::Control;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "AutoComplete"; }
};

class Dialog final : public controls::Form {
  public:
    explicit Dialog(controls::Forms& forms) : Form(forms, "frmDialog", "Dialog") {
        for (controls::Control* control : std::initializer_list<controls::Control*>{
                 &text, &label, &option, &other, &check, &list, &combo, &button})
            Add(*control);
        other.JoinGroupOf(option);
    }
    controls::TextBox text{"txtDataDir"};
    controls::Label label{"lblName"};
    controls::OptionButton option{"optDirToUse", 0};
    controls::OptionButton other{"optDirToUse", 1};
    controls::CheckBox check{"chkAddZeroes"};
    controls::ListBox list{"lstItems"};
    controls::ComboBox combo{"cboItems"};
    controls::CommandButton button{"cmdOK"};
};

class Tags : public testing::Test {
  protected:
    void Put(std::string_view bytes) {
        test_.driveC.Write("Appraise/ZVR.INI", bytes);
        ReadGlobals(session_);
    }
    std::string Bytes() { return test_.driveC.Read("Appraise/ZVR.INI"); }

    TestSession test_;
    Session& session_ = test_.session;
    Dialog dialog_{session_.forms};
};

TEST_F(Tags, ATagIsLegitimateByWhatItContains) {
    EXPECT_TRUE(TagIsLegit("<IniDir>Zvr.ini[CONFIG]SPLASH1|0"));
    EXPECT_TRUE(TagIsLegit("<X>a[b]c|inidefault"));
    EXPECT_TRUE(TagIsLegit("]ini[><"));
    EXPECT_FALSE(TagIsLegit("<X>a[b]c|default"));
    EXPECT_FALSE(TagIsLegit("<IniDirZvr.ini[CONFIG]SPLASH1|0"));
    EXPECT_FALSE(TagIsLegit(""));
}

TEST_F(Tags, EveryKindOfControlIsReadByItsRule) {
    Put("[A]\nTEXT= some text \nNAME=caption\nOPT=1\nCHK=2\n[L]\nITEM01=a\nITEM02= b "
        "\nITEM04=d\n[M]\nM1=x\n");
    dialog_.text.SetTag("<IniDir>Zvr.ini[A]TEXT|none");
    dialog_.label.SetTag("<IniDir>Zvr.ini[A]NAME|none");
    dialog_.option.SetTag("<IniDir>Zvr.ini[A]OPT|0");
    dialog_.check.SetTag("<IniDir>Zvr.ini[A]CHK|0");
    dialog_.list.SetTag("<IniDir>Zvr.ini[L]ITEM##|");
    dialog_.list.AddItem("old");
    dialog_.combo.SetTag("<IniDir>Zvr.ini[M]M#|");
    TagReadAll(session_, dialog_);
    EXPECT_EQ(dialog_.text.Text(), "some text");
    EXPECT_EQ(dialog_.label.Caption(), "caption");
    EXPECT_TRUE(dialog_.option.Value());
    EXPECT_EQ(dialog_.check.Value(), 2);
    ASSERT_EQ(dialog_.list.ListCount(), 2);
    EXPECT_EQ(dialog_.list.List(1), "b");
    ASSERT_EQ(dialog_.combo.ListCount(), 1);
    EXPECT_EQ(dialog_.combo.List(0), "x");
    EXPECT_EQ(dialog_.combo.Text(), "");
}

TEST_F(Tags, AMissingKeyGivesTheDefaultOfTheTag) {
    Put("[A]\n");
    dialog_.text.SetTag("<IniDir>Zvr.ini[DIRECTORIES]DATADIR|C:\\DATABOOK\\export");
    dialog_.option.SetTag("<IniDir>Zvr.ini[CONFIG]MDBFILEPATH|0");
    dialog_.option.SetValue(true);
    dialog_.check.SetTag("<IniDir>Zvr.ini[CONFIG]ADDZEROES|1");
    TagReadAll(session_, dialog_);
    EXPECT_EQ(dialog_.text.Text(), "C:\\DATABOOK\\export");
    EXPECT_FALSE(dialog_.option.Value());
    EXPECT_EQ(dialog_.check.Value(), 1);
}

TEST_F(Tags, ATagWithoutABarReadsTheEmptyText) {
    Put("[A]\nK=1\n");
    dialog_.text.SetText("before");
    dialog_.text.SetTag("<IniDir>Zvr.ini[A]K");
    TagReadAll(session_, dialog_);
    EXPECT_EQ(dialog_.text.Text(), "");
}

TEST_F(Tags, AnIllegitimateTagIsSkippedOnReading) {
    dialog_.text.SetText("kept");
    dialog_.text.SetTag("free text");
    dialog_.check.SetValue(1);
    TagReadAll(session_, dialog_);
    EXPECT_EQ(dialog_.text.Text(), "kept");
    EXPECT_EQ(dialog_.check.Value(), 1);
}

TEST_F(Tags, AControlThatTheTextReaderDoesNotServeGetsTheMessage) {
    AutoComplete box("txtAuto");
    box.SetTag("<IniDir>Zvr.ini[A]K|1");
    test_.desktop.Expect("invalid tag type of object sent");
    TagRead(session_, box);
}

TEST_F(Tags, AnAutoCompleteControlOnAFormGetsTheMessageToo) {
    class Special final : public controls::Form {
      public:
        explicit Special(controls::Forms& forms) : Form(forms, "frmSpecial") { Add(box); }
        AutoComplete box{"txtAuto"};
    } form(session_.forms);
    form.box.SetTag("<IniDir>Zvr.ini[A]K|1");
    test_.desktop.Expect("invalid tag type of object sent");
    TagReadAll(session_, form);
    TagWriteAll(session_, form);
}

TEST_F(Tags, ACheckBoxTakesTheLeadingNumberAndRefusesOtherStates) {
    dialog_.check.SetTag("<IniDir>Zvr.ini[A]CHK|0");
    Put("[A]\nCHK=1 yes\n");
    TagReadCheck(session_, dialog_.check);
    EXPECT_EQ(dialog_.check.Value(), 1);
    Put("[A]\nCHK=yes\n");
    TagReadCheck(session_, dialog_.check);
    EXPECT_EQ(dialog_.check.Value(), 0);
    for (const std::string_view bad : {"3", "-1", "1E300"}) {
        Put("[A]\nCHK=" + std::string(bad) + "\n");
        try {
            TagReadCheck(session_, dialog_.check);
            ADD_FAILURE() << bad;
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, fault::kInvalidProperty);
            EXPECT_EQ(fault.place.file, "C:\\APPRAISE\\ZVR.INI");
            EXPECT_NE(fault.description.find("CHK"), std::string::npos);
        }
    }
}

TEST_F(Tags, EveryKindOfControlIsWrittenByItsRule) {
    Put("[L]\nOTHER=lost\nITEM03=lost\n");
    dialog_.text.SetTag("<IniDir>Zvr.ini[A]TEXT|");
    dialog_.text.SetText("new");
    dialog_.label.SetTag("<IniDir>Zvr.ini[A]NAME|");
    dialog_.label.SetCaption("caption");
    dialog_.option.SetTag("<IniDir>Zvr.ini[A]OPT|0");
    dialog_.option.SetValue(true);
    dialog_.check.SetTag("<IniDir>Zvr.ini[A]CHK|0");
    dialog_.check.SetValue(2);
    dialog_.list.SetTag("<IniDir>Zvr.ini[L]ITEM##|");
    dialog_.list.AddItem("a");
    dialog_.list.AddItem("b");
    TagWriteAll(session_, dialog_);
    EXPECT_EQ(Bytes(), "[A]\nTEXT=new\nNAME=caption\nOPT=1\nCHK=2\n\n[L]\nITEM01=a\nITEM02=b\n");
}

TEST_F(Tags, AnOptionThatIsNotSetWritesZero) {
    Put("[A]\nOPT=1\n");
    dialog_.option.SetTag("<IniDir>Zvr.ini[A]OPT|0");
    TagWriteAll(session_, dialog_);
    EXPECT_EQ(Bytes(), "[A]\nOPT=0\n");
}

TEST_F(Tags, AListComesBackAsItWasWritten) {
    Put("[A]\n");
    dialog_.list.SetTag("<IniDir>Zvr.ini[L]ITEM#|");
    for (int i = 1; i <= 25; ++i)
        dialog_.list.AddItem("item " + std::to_string(i));
    TagWriteList(session_, dialog_.list);
    TagReadList(session_, dialog_.list);
    ASSERT_EQ(dialog_.list.ListCount(), 25);
    EXPECT_EQ(dialog_.list.List(24), "item 25");
}

TEST_F(Tags, ControlsWithoutATagStoreNothing) {
    Put("[A]\nK=1\n");
    dialog_.text.SetText("typed");
    TagWriteAll(session_, dialog_);
    EXPECT_EQ(Bytes(), "[A]\nK=1\n");
}

TEST_F(Tags, ASettingUnderTheWindowsDirectoryShowsItsDefaultAndStoresNothing) {
    test_.driveC.Write("WINDOWS/ATLAS.INI", "[PREFERENCES]\nQUICKEXIT=1\n");
    Put("[A]\n");
    dialog_.check.SetTag("<WINDIR>ATLAS.INI[PREFERENCES]QUICKEXIT|0");
    TagReadCheck(session_, dialog_.check);
    EXPECT_EQ(dialog_.check.Value(), 0);
    dialog_.check.SetValue(1);
    TagWriteCheck(session_, dialog_.check);
    EXPECT_EQ(test_.driveC.Read("WINDOWS/ATLAS.INI"), "[PREFERENCES]\nQUICKEXIT=1\n");
    EXPECT_FALSE(std::filesystem::exists(test_.driveC / "WINDOWS/ATLAS.INI|"));
}

TEST_F(Tags, TheReadersRegisterTheirNames) {
    // A path that needs no look at the disk, which registers a name of its own.
    for (controls::Control* control : dialog_.Controls())
        control->SetTag("<WINDIR>ATLAS.INI[A]K#|0");
    TagRead(session_, dialog_.combo);
    EXPECT_EQ(session_.lastProcedure, "ErrTagReadTag");
    EXPECT_EQ(dialog_.combo.Text(), "0");
    TagReadOption(session_, dialog_.option);
    EXPECT_EQ(session_.lastProcedure, "ErrTagReadOptionTag");
    TagReadCheck(session_, dialog_.check);
    EXPECT_EQ(session_.lastProcedure, "ErrTagReadBkBoxTag");
    TagReadList(session_, dialog_.list);
    EXPECT_EQ(session_.lastProcedure, "TagLstreadIni");
}

TEST_F(Tags, APlacementIsStoredUnderTheFormsName) {
    Put("[A]\n");
    dialog_.SetPlacement({120.5F, 0, 12015, 7005});
    SaveWindowPlacement(session_, dialog_);
    EXPECT_EQ(Bytes(),
              "[A]\n\n[FORMS]\nFRMDIALOGTOP=0\nFRMDIALOGLEFT=120.5\nFRMDIALOGHEIGHT=7005\n"
              "FRMDIALOGWIDTH=12015\n");
    ResetFormPosition(dialog_);
    EXPECT_EQ(dialog_.Placement().left, 0);
    EXPECT_EQ(dialog_.Placement().top, 0);
    EXPECT_EQ(dialog_.Placement().width, 12015);
}

}  // namespace
}  // namespace zenvora::common
