#include "common/ini.h"

#include <gtest/gtest.h>

#include "platform/controls/combo_box.h"
#include "platform/controls/list_box.h"
#include "platform/fault.h"
#include "support/test_session.h"

namespace zenvora::common {
namespace {

using testing_support::TestSession;

constexpr std::string_view kIni = "C:\\Appraise\\ZVR.INI";

class IniAccess : public testing::Test {
  protected:
    void Put(std::string_view bytes) { test_.driveC.Write("Appraise/ZVR.INI", bytes); }
    std::string Bytes() { return test_.driveC.Read("Appraise/ZVR.INI"); }

    TestSession test_;
    Session& session_ = test_.session;
};

TEST_F(IniAccess, AMissingKeySectionOrFileGivesTheDefault) {
    EXPECT_EQ(ReadIni(session_, kIni, "CONFIG", "ADDZEROES", "1"), "1");
    Put("[CONFIG]\nADDZEROES=0\n");
    EXPECT_EQ(ReadIni(session_, kIni, "CONFIG", "ADDZEROES", "1"), "0");
    EXPECT_EQ(ReadIni(session_, "c:\\APPRAISE\\zvr.ini", "config", "addzeroes", "1"), "0");
    EXPECT_EQ(ReadIni(session_, kIni, "CONFIG", "500REC", "x  "), "x");
    EXPECT_EQ(ReadIni(session_, kIni, "NONE", "ADDZEROES", "d"), "d");
    EXPECT_EQ(ReadIni(session_, "Q:\\ZVR.INI", "CONFIG", "ADDZEROES", "d"), "d");
    EXPECT_EQ(ReadIni(session_, kIni, "CONFIG", "500REC"), "");
}

TEST_F(IniAccess, AnEmptyValueIsNoReasonForTheDefault) {
    Put("[CONFIG]\nADDZEROES=\n");
    EXPECT_EQ(ReadIni(session_, kIni, "CONFIG", "ADDZEROES", "1"), "");
}

TEST_F(IniAccess, AValueOf300CharactersIsReadWhole) {
    const std::string value(300, 'v');
    Put("[A]\nK=" + value + "\n");
    EXPECT_EQ(ReadIni(session_, kIni, "A", "K"), value);
}

TEST_F(IniAccess, TheLargestBufferHoldsAValueOf32509Characters) {
    std::string value;
    for (int i = 0; i < 32509; ++i)
        value += "\xC3\xA9";
    Put("[A]\nK=" + value + "\n");
    EXPECT_EQ(ReadIni(session_, kIni, "A", "K"), value);
    Put("[A]\nK=" + value + "x\n");
    try {
        static_cast<void>(ReadIni(session_, kIni, "A", "K"));
        ADD_FAILURE();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kOverflow);
        EXPECT_EQ(fault.place.file, kIni);
    }
}

TEST_F(IniAccess, APathWithABarStoresNothingAndReadsDefaults) {
    test_.driveC.Write("WINDOWS/ATLAS.INI", "[PREFERENCES]\nQUICKEXIT=1\n");
    test_.driveC.Write("WINDOWS/ATLAS.INI|", "[PREFERENCES]\nQUICKEXIT=1\n");
    for (const std::string_view path : {"C:\\WINDOWS\\ATLAS.INI|", "", " "}) {
        EXPECT_EQ(ReadIni(session_, path, "PREFERENCES", "QUICKEXIT", "0"), "0");
        WriteIni(session_, path, "PREFERENCES", "QUICKEXIT", "2");
        DeleteSection(session_, path, "PREFERENCES");
        EXPECT_EQ(IniNextFree(session_, path, "PREFERENCES", "QUICKEXIT"), 0);
        EXPECT_FALSE(IniFindValue(session_, path, "PREFERENCES", "QUICKEXIT", "1"));
    }
    EXPECT_EQ(test_.driveC.Read("WINDOWS/ATLAS.INI"), "[PREFERENCES]\nQUICKEXIT=1\n");
    EXPECT_EQ(test_.driveC.Read("WINDOWS/ATLAS.INI|"), "[PREFERENCES]\nQUICKEXIT=1\n");
    EXPECT_TRUE(test_.desktop.messages.empty());
}

TEST_F(IniAccess, AFileThatCannotBeWrittenLosesTheValueWithoutAWord) {
    WriteIni(session_, kIni, "A", "K", "1");
    WriteIni(session_, "Q:\\ZVR.INI", "A", "K", "1");
    EXPECT_FALSE(std::filesystem::exists(test_.driveC / "Appraise"));
    EXPECT_TRUE(test_.desktop.messages.empty());
}

TEST_F(IniAccess, WritesBesideWhatIsThere) {
    Put("; mine\n[A]\nK=1\n");
    WriteIni(session_, kIni, "a", "k", "2");
    WriteIni(session_, kIni, "B", {{"L", "3"}, {"M", "4"}});
    EXPECT_EQ(Bytes(), "; mine\n[A]\nK=2\n\n[B]\nL=3\nM=4\n");
    DeleteSection(session_, kIni, "A");
    EXPECT_EQ(Bytes(), "; mine\n[B]\nL=3\nM=4\n");
    ReplaceSection(session_, kIni, "B", {{"N", "5"}});
    EXPECT_EQ(Bytes(), "; mine\n\n[B]\nN=5\n");
}

TEST_F(IniAccess, FindsAValueUpToTheFirstEmptyKey) {
    Put("[CITIES]\nCITY1=Ashby, OH  44000\nCITY2=Dale, OH  \nCITY4=Far, OH  1\n");
    EXPECT_TRUE(IniFindValue(session_, kIni, "CITIES", "CITY", " Dale, OH "));
    EXPECT_FALSE(IniFindValue(session_, kIni, "CITIES", "CITY", "dale, OH"));
    EXPECT_FALSE(IniFindValue(session_, kIni, "CITIES", "CITY", "Far, OH  1"));
    EXPECT_FALSE(IniFindValue(session_, kIni, "CITIES", "CITY", ""));
}

TEST_F(IniAccess, TheNextFreeNumberIsThatOfTheFirstEmptyKey) {
    EXPECT_EQ(IniNextFree(session_, kIni, "CITIES", "CITY"), 0);
    EXPECT_FALSE(IniFindValue(session_, kIni, "CITIES", "CITY", "x"));
    Put("[A]\n");
    EXPECT_EQ(IniNextFree(session_, kIni, "CITIES", "CITY"), 1);
    Put("[CITIES]\nCITY1=a\nCITY2=b\nCITY4=d\n");
    EXPECT_EQ(IniNextFree(session_, kIni, "CITIES", "CITY"), 3);
    WriteIni(session_, kIni, "CITIES", "CITY3", "c");
    EXPECT_EQ(IniNextFree(session_, kIni, "CITIES", "CITY"), 5);
}

TEST_F(IniAccess, FillsAListByCountOrUpToTheFirstEmptyKey) {
    Put("[CITIES]\nCITY1=a\nCITY2=b\nCITY4=d\n");
    controls::ComboBox combo("cboCity");
    combo.AddItem("first");
    IniFillList(session_, combo, kIni, "CITIES", "CITY", -1);
    ASSERT_EQ(combo.ListCount(), 3);
    EXPECT_EQ(combo.List(2), "b");
    controls::ListBox list("lst");
    IniFillList(session_, list, kIni, "CITIES", "CITY", 4);
    ASSERT_EQ(list.ListCount(), 4);
    EXPECT_EQ(list.List(2), "");
    EXPECT_EQ(list.List(3), "d");
    IniFillList(session_, list, kIni, "CITIES", "CITY", 0);
    EXPECT_EQ(list.ListCount(), 4);
}

TEST(IniBool, OnlyTheTrimmedTextZeroIsFalse) {
    EXPECT_FALSE(IniBool("0"));
    EXPECT_FALSE(IniBool(" 0 "));
    EXPECT_TRUE(IniBool(""));
    EXPECT_TRUE(IniBool("00"));
    EXPECT_TRUE(IniBool("no"));
    EXPECT_TRUE(IniBool("1"));
}

}  // namespace
}  // namespace zenvora::common
