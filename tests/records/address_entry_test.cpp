#include "records/address_entry.h"

#include <ctime>
#include <filesystem>
#include <string>

#include "common/ini.h"
#include "records/editor_fixture.h"

namespace zenvora::records {
namespace {

/// The dialog open on "12 OAK ST", beside "14 OAK ST".
class AddressEntryTest : public EditorTest {
  protected:
    void Open(const std::function<void(User)>& user) {
        Store("12 OAK ST", {{"ADDRESS", std::string("12 Oak St")}});
        Store("14 OAK ST");
        Edit("12 OAK ST", [&](User u) {
            user(u);
            if (u.Edit().Loaded()) u.Press("cmdCancel");
        });
    }
    [[nodiscard]] std::vector<std::string> Places() {
        return common::IniList(session, session.settings.settingsFile, "CITIES", "CITY", -1);
    }
};

constexpr const char* kWarning =
    "Please enter a unique street address. 14 OAK ST already exists in the datafile.";

TEST_F(AddressEntryTest, AnEmptyStreetBecomesTheKey) {
    Open([](User user) {
        user.Type("txtStreet", "  ");
        user.GoTo("txtCity");
        EXPECT_EQ(user.Text("txtStreet"), "12 OAK ST");
    });
}

TEST_F(AddressEntryTest, AnotherRecordsStreetDrawsTheWarningInAnyCase) {
    Open([](User user) {
        user.Type("txtStreet", " 14 oak st ");
        user.GoTo("txtCity");
        EXPECT_EQ(user.Panel().Text(), kWarning);
        const controls::RichRun& run = user.Panel().Paragraphs().at(0).runs.at(0);
        EXPECT_TRUE(run.bold);
        EXPECT_EQ(run.size, 16);
        EXPECT_EQ(run.color, controls::Color{0xFF0000});
        EXPECT_EQ(user.Text("txtStreet"), " 14 oak st ") << "the typed text stays";
        EXPECT_EQ(user.Focus(), "txtCity") << "the focus is not held back";
    });
}

TEST_F(AddressEntryTest, GoingBackToItsOwnStreetDrawsNone) {
    Open([](User user) {
        user.Type("txtStreet", "14 Oak St");
        user.GoTo("txtCity");
        user.Edit().txtCity.Click();
        user.Type("txtStreet", " 12 oak ST");
        user.GoTo("txtCity");
        EXPECT_EQ(user.Panel().Text(), "");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Keys(), (std::vector<std::string>{"12 OAK ST", "14 OAK ST"}));
}

TEST_F(AddressEntryTest, AStreetWithAnApostropheIsSearchedAndFound) {
    Store("3 O'BRIEN'S * WAY");
    Open([](User user) {
        user.Type("txtStreet", "3 O'Brien's * Way");
        user.GoTo("txtCity");
        EXPECT_NE(user.Panel().Text().find("3 O'BRIEN'S * WAY already exists"), std::string::npos);
        user.Type("txtStreet", "5 O'Brien's Way");
        user.Press("cmdOK");
    });
    EXPECT_EQ(Stored("5 O'BRIEN'S WAY", "ADDRESS"), "5 O'Brien's Way");
}

TEST_F(AddressEntryTest, AStateIsGoodOrRedAndAnEmptyOneLeavesTheColour) {
    Open([](User user) {
        for (const char* bad : {"ME", "NV", "O", "XX"}) {
            user.Type("txtState", bad);
            EXPECT_EQ(user.Color("txtState"), kError) << bad;
            EXPECT_EQ(user.Tip("txtState"), "Invalid state abbreviation.");
        }
        user.Type("txtState", "");
        EXPECT_EQ(user.Color("txtState"), kError);
        for (const char* good : {"NC", "oh", "DC"}) {
            user.Type("txtState", good);
            EXPECT_EQ(user.Color("txtState"), kGood) << good;
            EXPECT_EQ(user.Tip("txtState"), "");
        }
        user.Type("txtZip", "any text!!");
        EXPECT_EQ(user.Color("txtZip"), kGood);
    });
}

TEST_F(AddressEntryTest, EachStageOfACityIsStoredOnceTheStateIsGood) {
    Open([&](User user) {
        user.Type("txtZip", "45373");
        user.TypeSlowly("txtCity", "Tr");
        user.GoTo("txtState");
        EXPECT_TRUE(Places().empty()) << "there is no state yet";
        user.Type("txtState", "oh");
        user.TypeSlowly("txtCity", "Troy");
        EXPECT_EQ(user.Edit().cboCity.ListCount(), 4) << "known at once: Tr, T, Tro, Troy";
        user.GoTo("txtState");
        EXPECT_EQ(Places(), (std::vector<std::string>{"Tr, OH  45373", "T, OH  45373", "Tro, OH  45373",
                                                      "Troy, OH  45373"}));
    });
    EXPECT_NE(Settings().find("TABLE=COMPS"), std::string::npos) << "the rest of the file stays";
}

TEST_F(AddressEntryTest, APlaceThatIsThereIsNotStoredAgain) {
    test.driveC.Write("Appraise/ZVR.INI", "[CITIES]\r\nCITY1=Troy, OH  45373\r\n");
    Open([&](User user) {
        user.Type("txtZip", "45373");
        user.Type("txtState", "OH");
        user.Type("txtCity", " Troy ");
        EXPECT_EQ(user.Edit().cboCity.ListCount(), 0) << "the list is filled when a place is new";
        user.Type("txtCity", "Dayton");
        ASSERT_EQ(user.Edit().cboCity.ListCount(), 2);
        EXPECT_EQ(user.Edit().cboCity.List(0), "Troy, OH  45373");
    });
    EXPECT_EQ(Places(), (std::vector<std::string>{"Troy, OH  45373", "Dayton, OH  45373"}));
}

TEST_F(AddressEntryTest, TheSearchStopsAtTheFirstGapAndTheGapIsFilled) {
    test.driveC.Write("Appraise/ZVR.INI", "[CITIES]\r\nCITY1=Ashby, OH  44001\r\nCITY3=Troy, OH  45373\r\n");
    Open([](User user) {
        user.Type("txtZip", "45373");
        user.Type("txtState", "OH");
        user.Type("txtCity", "Troy");
    });
    EXPECT_EQ(Places(), (std::vector<std::string>{"Ashby, OH  44001", "Troy, OH  45373", "Troy, OH  45373"}));
}

TEST_F(AddressEntryTest, WhatAnotherProgramHasStoredMeanwhileKeepsItsNumber) {
    Open([&](User user) {
        user.Type("txtZip", "45373");
        user.Type("txtState", "OH");
        user.Type("txtCity", "Troy");
        common::WriteIni(session, session.settings.settingsFile, "CITIES", "CITY1", "Ashby, OH  44001");
    });
    EXPECT_EQ(Places(), (std::vector<std::string>{"Ashby, OH  44001", "Troy, OH  45373"}));
}

TEST_F(AddressEntryTest, WithoutASettingsFileNothingIsStored) {
    std::filesystem::remove(test.driveC / "Appraise/ZVR.INI");
    Open([&](User user) {
        user.Type("txtState", "OH");
        user.Type("txtCity", "Troy");
        EXPECT_EQ(user.Edit().cboCity.ListCount(), 0);
        user.GoTo("txtZip");
        EXPECT_FALSE(std::filesystem::exists(test.driveC / "Appraise/ZVR.INI"));
    });
}

TEST_F(AddressEntryTest, ARecordThatIsShownStoresItsPlace) {
    Store("16 OAK ST",
          {{"CITY", std::string("Troy")}, {"ST", std::string("OH")}, {"ZIP", std::string("45373")}});
    Edit("16 OAK ST", [](User user) { user.Press("cmdCancel"); });
    EXPECT_EQ(Places(), std::vector<std::string>{"Troy, OH  45373"}) << "once, and as a whole";
}

TEST_F(AddressEntryTest, TheListOfPlacesShowsWithTheSwitchAlone) {
    Open([](User user) { EXPECT_FALSE(user.Edit().cboCity.Visible()); });
    application.commandLine = "x /v";
    Edit("12 OAK ST", [](User user) { EXPECT_TRUE(user.Edit().cboCity.Visible()); });
}

TEST_F(AddressEntryTest, APickedPlaceFillsCityStateAndZip) {
    Open([](User user) {
        controls::ComboBox& places = user.Edit().cboCity;
        places.AddItem("New Troy, OH  45373-12");
        places.Pick(0);
        EXPECT_EQ(user.Text("txtCity"), "New Troy");
        EXPECT_EQ(user.Text("txtState"), "OH");
        EXPECT_EQ(user.Text("txtZip"), "45373-12");
        places.AddItem("Nowhere,");
        places.Pick(places.ListCount() - 1);
        EXPECT_EQ(user.Text("txtCity"), "Nowhere");
        EXPECT_EQ(user.Text("txtState"), "");
        EXPECT_EQ(user.Text("txtZip"), "");
    });
}

// Each keystroke once read the file and compared with every entry.
TEST_F(AddressEntryTest, ALongListDoesNotSlowTyping) {
    constexpr int kPlaces = 50000;
    std::string file = "[CITIES]\r\n";
    for (int i = 1; i <= kPlaces; ++i) {
        const std::string number = std::to_string(i);
        file += "CITY" + number + "=Town " + number + ", OH  45373\r\n";
    }
    test.driveC.Write("Appraise/ZVR.INI", file);
    Open([&](User user) {
        user.Type("txtZip", "45373");
        user.Type("txtState", "OH");
        user.Type("txtCity", "First");  // reads the list
        const std::clock_t start = std::clock();
        user.TypeSlowly("txtCity", "North Ashby upon Sea");
        const double milliseconds = 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC / 20;
        EXPECT_LT(milliseconds, 8) << "a keystroke";
        // Stages that end in a blank are the same place as the one before.
        EXPECT_EQ(user.Edit().cboCity.ListCount(), kPlaces + 1 + 17);
    });
    EXPECT_EQ(Places().size(), kPlaces + 1 + 17U);
    EXPECT_EQ(Places().back(), "North Ashby upon Sea, OH  45373");
}

}  // namespace
}  // namespace zenvora::records
