#include "transfer/conversation.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <utility>

#include "platform/fault.h"
#include "support/fault_of.h"
#include "support/recording_carrier.h"
#include "support/test_session.h"

namespace zenvora::transfer {
namespace {

using testing_support::FaultOf;
using Steps = std::vector<std::string>;

class Conversation : public testing::Test {
  protected:
    Conversation() {
        endpoint.OnStep([this](std::string_view step) { steps.emplace_back(step); });
    }
    void Open(const std::string& answer) { carrier.values["KRN|Query"]["ActiveReports"] = answer; }
    void OpenSmith(const std::string& forms = "1004MC,Text,") {
        Open("Smith,Jones,");
        carrier.values["KRN|Smith"] = {{"ListForms", forms}, {"OFFSCRN|11|2", "06/30/2010"}};
        carrier.values["Krn|Smith"]["UserID"] = "7";
    }
    Steps Taken() { return std::exchange(steps, {}); }

    testing_support::TestSession test;
    common::Session& session = test.session;
    testing_support::RecordingCarrier carrier;
    Endpoint endpoint{carrier};
    Steps steps;
};

// ---- the order of the steps ----

TEST_F(Conversation, KrnQueryActiveReportsSetsTheItemBehindTheMode) {
    OpenSmith();
    KrnQueryActiveReports(endpoint, session);
    EXPECT_EQ(Taken(),
              (Steps{"mode 0", "topic KRN|Query", "mode 2", "item ActiveReports", "request", "mode 0"}));
    EXPECT_EQ(endpoint.Text(), "Smith,Jones,");
    EXPECT_EQ(session.lastProcedure, "KrnQueryActiveReports");
}

TEST_F(Conversation, KrnListFormsSetsTheItemBeforeTheMode) {
    OpenSmith();
    KrnListForms(endpoint, session, "Smith");
    EXPECT_EQ(Taken(), (Steps{"mode 0", "topic KRN|Smith", "item ListForms", "mode 2", "request", "mode 0"}));
    EXPECT_EQ(endpoint.Text(), "1004MC,Text,");
    EXPECT_EQ(session.lastProcedure, "KrnListForms");
}

TEST_F(Conversation, KrnOpenReportWritesTheServiceInMixedCase) {
    OpenSmith();
    KrnOpenReport(endpoint, session, "Smith");
    EXPECT_EQ(Taken(), (Steps{"mode 0", "topic Krn|Smith", "item UserID", "mode 2", "request", "mode 0"}));
    EXPECT_EQ(session.lastProcedure, "KrnOpenReport");
}

TEST_F(Conversation, KrnGetFieldInfoFetchesTheItem) {
    OpenSmith();
    EXPECT_EQ(KrnGetFieldInfo(endpoint, session, "Smith", "OFFSCRN|11|2"), "06/30/2010");
    EXPECT_EQ(Taken(),
              (Steps{"mode 0", "topic KRN|Smith", "item OFFSCRN|11|2", "mode 2", "request", "mode 0"}));
    EXPECT_EQ(session.lastProcedure, "KrnGetFieldInfo");
}

TEST_F(Conversation, KrnPokeTextLeavesTheLinkUp) {
    OpenSmith();
    EXPECT_EQ(KrnPokeText(endpoint, session, "KRN|Smith", "1004MC|16|1", "4"), PokeEnd::Arrived);
    EXPECT_EQ(Taken(), (Steps{"mode 0", "topic KRN|Smith", "mode 2", "item 1004MC|16|1", "text 4", "poke"}));
    EXPECT_EQ(endpoint.LinkMode(), 2);
    KrnQueryActiveReports(endpoint, session);
    EXPECT_EQ(endpoint.LinkMode(), 0);
    EXPECT_EQ(session.lastProcedure, "KrnQueryActiveReports");
}

TEST_F(Conversation, AValueArrivesTrimmed) {
    OpenSmith();
    KrnPokeText(endpoint, session, "KRN|Smith", "1004MC|16|1", "  428,750 ");
    ASSERT_EQ(carrier.pokes.size(), 1U);
    EXPECT_EQ(carrier.pokes[0].second, "428,750");
}

TEST_F(Conversation, OpenFirstReportGoesThroughAllThree) {
    OpenSmith();
    OpenFirstReport(endpoint, session);
    EXPECT_EQ(carrier.steps,
              (Steps{"open KRN|Query", "request ActiveReports", "close", "open Krn|Smith", "request UserID",
                     "close", "open KRN|Smith", "request ListForms", "close"}));
    EXPECT_EQ(endpoint.Text(), "1004MC,Text,");
}

// ---- texts ----

TEST(FirstCommaField, IsTheTextBeforeTheFirstComma) {
    EXPECT_EQ(FirstCommaField("Smith,Jones"), "Smith");
    EXPECT_EQ(FirstCommaField("Smith,"), "Smith");
    EXPECT_EQ(FirstCommaField(" Smith ,"), " Smith ");
    EXPECT_EQ(FirstCommaField(",Smith"), "");
    EXPECT_EQ(FirstCommaField("Smith Residence"), "");
    EXPECT_EQ(FirstCommaField(""), "");
}

TEST_F(Conversation, AnItemWithoutFormMakesNoConversation) {
    OpenSmith();
    for (const char* item : {"|5|1", "", "   ", "  |5|1"})
        EXPECT_EQ(KrnGetFieldInfo(endpoint, session, "Smith", item), "") << item;
    EXPECT_TRUE(Taken().empty());
}

TEST(IsCondoForm, SearchesTheCodesWithTheirCommas) {
    for (const char* code : {"ECUFM,", "ICUFM,", "NCE,", "NCU,", "ECI,", "ICI,", "ECU,", "ICU,"}) {
        EXPECT_TRUE(IsCondoForm(code)) << code;
        EXPECT_TRUE(IsCondoForm(std::string("1004MC,") + code + "Text")) << code;
    }
    EXPECT_TRUE(IsCondoForm("XICU,")) << "a plain substring";
    EXPECT_FALSE(IsCondoForm("1004MC,Text,ICU")) << "the last one lacks its comma";
    EXPECT_FALSE(IsCondoForm("icu,"));
    EXPECT_FALSE(IsCondoForm("1004MC,Text,"));
    EXPECT_FALSE(IsCondoForm(""));
}

// ---- is a report open? ----

TEST_F(Conversation, IsKrnReportOpenJudgesTheAnswer) {
    EXPECT_FALSE(IsKrnReportOpen(endpoint, session));
    for (const char* none : {"None ", "none", "  NONE", "", "   "}) {
        Open(none);
        EXPECT_FALSE(IsKrnReportOpen(endpoint, session)) << none;
    }
    for (const char* some : {"Smith,", "Smith Residence", "None,"}) {
        Open(some);
        EXPECT_TRUE(IsKrnReportOpen(endpoint, session)) << some;
    }
}

TEST_F(Conversation, IsKrnReportOpenForgetsWhatStoodInText) {
    endpoint.SetText("Smith,");
    EXPECT_FALSE(IsKrnReportOpen(endpoint, session));
    EXPECT_EQ(endpoint.Text(), "");
}

TEST_F(Conversation, AnAnswerWithoutCommaIsAnOpenReportWithoutName) {
    Open("Smith Residence");
    EXPECT_TRUE(IsKrnReportOpen(endpoint, session));
    Taken();
    OpenFirstReport(endpoint, session);
    EXPECT_EQ(Taken(), (Steps{"mode 0", "topic KRN|Query", "mode 2", "item ActiveReports", "request",
                              "mode 0", "mode 0", "topic Krn|", "item UserID", "mode 2", "mode 0",
                              "topic KRN|", "item ListForms", "mode 2"}));
}

// ---- EnsureKrnRunning ----

TEST_F(Conversation, WithoutKrnEveryQueryLeavesTextEmptyAndTheUserIsAskedOnce) {
    bool AskKrnAtStart = true;
    int launches = 0;
    const auto launch = [&] { ++launches; };
    test.desktop.Expect(
        "Would you like to launch the program?\nIf yes, please open AND save an Appraisal report.",
        controls::Answer::Yes);
    EXPECT_FALSE(EnsureKrnRunning(endpoint, session, AskKrnAtStart, launch));
    EXPECT_EQ(endpoint.Text(), "");
    EXPECT_FALSE(AskKrnAtStart);
    EXPECT_EQ(launches, 1);
    ASSERT_EQ(test.desktop.messages.size(), 1U);
    EXPECT_EQ(test.desktop.messages[0].title, "Appraisal Program Not Running");
    EXPECT_EQ(test.desktop.messages[0].buttons, controls::Buttons::YesNo);

    EXPECT_FALSE(EnsureKrnRunning(endpoint, session, AskKrnAtStart, launch));
    EXPECT_EQ(launches, 1);
    EXPECT_EQ(endpoint.Text(), "");
}

TEST_F(Conversation, OnNoNothingIsLaunchedAndTheQuestionDoesNotComeBack) {
    bool AskKrnAtStart = true;
    int launches = 0;
    test.desktop.ExpectAny(controls::Answer::No);
    EXPECT_FALSE(EnsureKrnRunning(endpoint, session, AskKrnAtStart, [&] { ++launches; }));
    EXPECT_FALSE(EnsureKrnRunning(endpoint, session, AskKrnAtStart, [&] { ++launches; }));
    EXPECT_EQ(launches, 0);
}

TEST_F(Conversation, WithTheFlagClearNothingIsAsked) {
    bool AskKrnAtStart = false;
    EXPECT_FALSE(EnsureKrnRunning(endpoint, session, AskKrnAtStart, [] { FAIL(); }));
}

TEST_F(Conversation, WithAReportOpenTheFlagStays) {
    OpenSmith();
    bool AskKrnAtStart = true;
    EXPECT_TRUE(EnsureKrnRunning(endpoint, session, AskKrnAtStart, [] { FAIL(); }));
    EXPECT_TRUE(AskKrnAtStart);
    EXPECT_EQ(carrier.steps, (Steps{"open KRN|Query", "request ActiveReports", "close"}));
}

TEST_F(Conversation, WithoutAReportTheFirstOneIsTriedBeforeTheQuestion) {
    Open("None ");
    bool AskKrnAtStart = false;
    EXPECT_FALSE(EnsureKrnRunning(endpoint, session, AskKrnAtStart, [] { FAIL(); }));
    // The answer has no comma, so that the report is the one without a name.
    EXPECT_EQ(Taken(), (Steps{"text ",
                              "mode 0",
                              "topic KRN|Query",
                              "mode 2",
                              "item ActiveReports",
                              "request",
                              "mode 0",
                              "mode 0",
                              "topic KRN|Query",
                              "mode 2",
                              "item ActiveReports",
                              "request",
                              "mode 0",
                              "mode 0",
                              "topic Krn|",
                              "item UserID",
                              "mode 2",
                              "mode 0",
                              "topic KRN|",
                              "item ListForms",
                              "mode 2",
                              "text ",
                              "mode 0",
                              "topic KRN|Query",
                              "mode 2",
                              "item ActiveReports",
                              "request",
                              "mode 0"}));
}

// ---- failures ----

TEST_F(Conversation, QuietFailuresLeaveTextAsItWas) {
    OpenSmith();
    struct Case {
        const char* name;
        std::function<void()> run;
        std::vector<int> quiet;
    };
    const std::vector<Case> cases{
        {"KrnQueryActiveReports", [&] { KrnQueryActiveReports(endpoint, session); }, {282}},
        {"KrnListForms", [&] { KrnListForms(endpoint, session, "Smith"); }, {282, 380}},
        {"KrnOpenReport", [&] { KrnOpenReport(endpoint, session, "Smith"); }, {282, 380}},
        {"KrnGetFieldInfo",
         [&] { EXPECT_EQ(KrnGetFieldInfo(endpoint, session, "Smith", "OFFSCRN|11|2"), ""); },
         {282, 285, 380}},
        {"KrnPokeText",
         [&] { EXPECT_EQ(KrnPokeText(endpoint, session, "KRN|Smith", "a", "before"), PokeEnd::Refused); },
         {380}},
    };
    for (const Case& one : cases) {
        for (const int number : {282, 285, 286, 293, 380}) {
            const bool isQuiet = std::find(one.quiet.begin(), one.quiet.end(), number) != one.quiet.end();
            for (const char* verb : {"open", "request", "poke"}) {
                if (std::string_view(verb) ==
                    (std::string_view(one.name) == "KrnPokeText" ? "request" : "poke"))
                    continue;
                carrier.faults = {{verb, number}};
                endpoint.SetText("before");
                EXPECT_EQ(FaultOf(one.run), isQuiet ? 0 : number) << one.name << ' ' << verb << ' ' << number;
                EXPECT_EQ(endpoint.Text(), "before") << one.name << ' ' << verb << ' ' << number;
            }
        }
    }
}

TEST_F(Conversation, AFailureLeavesTheModeAsItWasAndTheNextOperationBeginsAtZero) {
    OpenSmith();
    carrier.faults["request UserID"] = 380;
    KrnOpenReport(endpoint, session, "Smith");
    EXPECT_EQ(endpoint.LinkMode(), 2);
    carrier.steps.clear();
    KrnListForms(endpoint, session, "Smith");
    EXPECT_EQ(carrier.steps, (Steps{"close", "open KRN|Smith", "request ListForms", "close"}));
}

TEST_F(Conversation, FailuresThatTheUserIsAskedAboutAreRepeatedPassedOverOrLeft) {
    OpenSmith();
    carrier.faults["poke"] = 71;
    const std::string text = "Disk not ready.\nError # 71 in module KrnPokeText.";

    test.desktop.Expect(text, controls::Answer::Retry);
    test.desktop.Expect(text, controls::Answer::Ignore);
    EXPECT_EQ(KrnPokeText(endpoint, session, "KRN|Smith", "a", "b"), PokeEnd::Unknown);
    EXPECT_EQ(std::count(carrier.steps.begin(), carrier.steps.end(), "poke a"), 2);

    test.desktop.Expect(text, controls::Answer::Abort);
    EXPECT_EQ(KrnPokeText(endpoint, session, "KRN|Smith", "a", "b"), PokeEnd::Unknown);

    // Passed over, the statements behind it are taken all the same.
    carrier.faults = {{"open", 71}};
    test.desktop.ExpectAny(controls::Answer::Ignore);
    EXPECT_EQ(FaultOf([&] { KrnPokeText(endpoint, session, "KRN|Smith", "a", "b"); }), 293);
}

TEST_F(Conversation, CharactersThatKrnLacksAreTold) {
    OpenSmith();
    carrier.missingCharacters = "Ż";
    EXPECT_EQ(KrnPokeText(endpoint, session, "KRN|Smith", "a", "Ż 1"), PokeEnd::Changed);
    EXPECT_EQ(KrnPokeText(endpoint, session, "KRN|Smith", "a", "é 1"), PokeEnd::Arrived);
}

}  // namespace
}  // namespace zenvora::transfer
