#include "transfer/field_transfer.h"

#include <gtest/gtest.h>

#include "support/recording_carrier.h"
#include "support/test_session.h"

namespace zenvora::transfer {
namespace {

using Pokes = std::vector<std::pair<std::string, std::string>>;

class FieldTransfer : public testing::Test {
  protected:
    FieldTransfer() {
        carrier.values["KRN|Query"]["ActiveReports"] = "Smith,Jones,";
        carrier.values["KRN|Smith"]["ListForms"] = "1004MC,Text,ICU,";
        carrier.values["Krn|Smith"]["UserID"] = "7";
        // Counts first: they work out the two rows below them.
        for (int i = 0; i < 3; ++i) {
            results.txtTotalC[i].SetText(std::to_string(4 + i));
            results.txtTotalL[i].SetText(std::to_string(20 + i));
        }
        for (int i = 0; i < 3; ++i) {
            const std::string index = std::to_string(i);
            results.txtAveCPrice[i].SetText("0.6" + index);
            results.txtTotalPerAveCPrice[i].SetText("3.0" + index);
            results.txtMedianCPrice[i].SetText("428,75" + index);
            results.txtMedianCDOM[i].SetText("10" + index);
            results.txtMedianLPrice[i].SetText("44655" + index);
            results.txtMedianLDOM[i].SetText("6" + index);
            results.txtMedianLPDivSP[i].SetText(".9" + index);
        }
    }
    void Send(std::span<const FieldRow> fields) {
        TransferFields(endpoint, session, results, fields, outcome);
    }

    testing_support::TestSession test;
    common::Session& session = test.session;
    testing_support::RecordingCarrier carrier;
    Endpoint endpoint{carrier};
    analysis::Results1004MC results;
    TransferOutcome outcome;
};

TEST_F(FieldTransfer, MarketFiguresGoOutIn27PokesFieldByField) {
    Send(MarketFields());
    EXPECT_EQ(carrier.pokes,
              (Pokes{{"1004MC|16|1", "4"},       {"1004MC|16|2", "5"},       {"1004MC|16|3", "6"},
                     {"1004MC|17|1", "0.60"},    {"1004MC|17|2", "0.61"},    {"1004MC|17|3", "0.62"},
                     {"1004MC|18|1", "20"},      {"1004MC|18|2", "21"},      {"1004MC|18|3", "22"},
                     {"1004MC|19|1", "3.00"},    {"1004MC|19|2", "3.01"},    {"1004MC|19|3", "3.02"},
                     {"1004MC|21|1", "428,750"}, {"1004MC|21|2", "428,751"}, {"1004MC|21|3", "428,752"},
                     {"1004MC|22|1", "100"},     {"1004MC|22|2", "101"},     {"1004MC|22|3", "102"},
                     {"1004MC|23|1", "446550"},  {"1004MC|23|2", "446551"},  {"1004MC|23|3", "446552"},
                     {"1004MC|24|1", "60"},      {"1004MC|24|2", "61"},      {"1004MC|24|3", "62"},
                     {"1004MC|25|1", ".90"},     {"1004MC|25|2", ".91"},     {"1004MC|25|3", ".92"}}));
    EXPECT_TRUE(outcome.AllArrived());
    EXPECT_EQ(StatusText(outcome), "All 27 values arrived in the report \"Smith\".");
}

TEST_F(FieldTransfer, CondoFiguresGoOutIn12Pokes) {
    Send(CondoFields());
    EXPECT_EQ(carrier.pokes, (Pokes{{"1004MC|54|1", "4"},
                                    {"1004MC|54|2", "5"},
                                    {"1004MC|54|3", "6"},
                                    {"1004MC|55|1", "0.60"},
                                    {"1004MC|55|2", "0.61"},
                                    {"1004MC|55|3", "0.62"},
                                    {"1004MC|56|1", "20"},
                                    {"1004MC|56|2", "21"},
                                    {"1004MC|56|3", "22"},
                                    {"1004MC|57|1", "3.00"},
                                    {"1004MC|57|2", "3.01"},
                                    {"1004MC|57|3", "3.02"}}));
}

TEST_F(FieldTransfer, TheWholeConversationIsInTheOrderThatKrnKnows) {
    std::vector<std::string> steps;
    endpoint.OnStep([&](std::string_view step) { steps.emplace_back(step); });
    Send(CondoFields());
    const std::vector<std::string> begin{"text ",
                                         "mode 0",
                                         "topic KRN|Query",
                                         "mode 2",
                                         "item ActiveReports",
                                         "request",
                                         "mode 0",
                                         "mode 0",
                                         "topic Krn|Smith",
                                         "item UserID",
                                         "mode 2",
                                         "request",
                                         "mode 0",
                                         "mode 0",
                                         "topic KRN|Smith",
                                         "item ListForms",
                                         "mode 2",
                                         "request",
                                         "mode 0",
                                         "mode 0",
                                         "topic KRN|Smith",
                                         "mode 2",
                                         "item 1004MC|54|1",
                                         "text 4",
                                         "poke",
                                         "mode 0",
                                         "topic KRN|Smith",
                                         "mode 2",
                                         "item 1004MC|54|2",
                                         "text 5",
                                         "poke"};
    ASSERT_EQ(steps.size(), 19U + 12 * 6);
    EXPECT_EQ(std::vector<std::string>(steps.begin(), steps.begin() + static_cast<int>(begin.size())), begin);
    EXPECT_EQ(steps.back(), "poke");
    EXPECT_EQ(endpoint.LinkMode(), 2);
}

TEST_F(FieldTransfer, WithoutAnOpenReportNothingIsSentOrShown) {
    carrier.values["KRN|Query"]["ActiveReports"] = "";
    Send(MarketFields());
    EXPECT_EQ(outcome.end, TransferOutcome::End::NoReport);
    EXPECT_TRUE(carrier.pokes.empty());
    controls::Label lblDataSentMsg{"lblDataSentMsg"};
    controls::Image imgDataSentMsg{"imgDataSentMsg"};
    lblDataSentMsg.SetVisible(false);
    imgDataSentMsg.SetVisible(false);
    ShowDataSent(outcome, lblDataSentMsg, imgDataSentMsg);
    EXPECT_FALSE(lblDataSentMsg.Visible());
    EXPECT_FALSE(imgDataSentMsg.Visible());
    EXPECT_EQ(StatusText(outcome), "No report is open in the appraisal program. Nothing was sent.");
}

TEST_F(FieldTransfer, KrnGoneSinceTheStartIsNotMistakenForAReport) {
    // What the link check left there holds the form's name.
    endpoint.SetText("1004MC,Text,ICU,");
    carrier.values.clear();
    Send(MarketFields());
    EXPECT_EQ(outcome.end, TransferOutcome::End::NoReport);
    EXPECT_EQ(carrier.steps, std::vector<std::string>{"open KRN|Query"});
}

TEST_F(FieldTransfer, AReportWithoutTheFormIsLeftAlone) {
    carrier.values["KRN|Smith"]["ListForms"] = "1004,Text,";
    Send(MarketFields());
    EXPECT_EQ(outcome.end, TransferOutcome::End::NoForm);
    EXPECT_TRUE(carrier.pokes.empty());
    EXPECT_EQ(StatusText(outcome), "The report \"Smith\" has no form 1004MC. Nothing was sent.");
}

TEST_F(FieldTransfer, AFormListInLowerCaseStillMatches) {
    carrier.values["KRN|Smith"]["ListForms"] = " text,1004mc ";
    Send(MarketFields());
    EXPECT_EQ(carrier.pokes.size(), 27U);
}

TEST_F(FieldTransfer, AnAnswerWithoutCommaNamesNoReport) {
    carrier.values["KRN|Query"]["ActiveReports"] = "Smith Residence";
    std::vector<std::string> topics;
    endpoint.OnStep([&](std::string_view step) {
        if (step.starts_with("topic ")) topics.emplace_back(step);
    });
    Send(MarketFields());
    EXPECT_EQ(topics, (std::vector<std::string>{"topic KRN|Query", "topic Krn|", "topic KRN|"}));
    EXPECT_TRUE(carrier.pokes.empty());
    EXPECT_EQ(outcome.end, TransferOutcome::End::NoReport);
}

TEST_F(FieldTransfer, ZeroesGoOutAsShownAndEmptyCellsEmptyTheirField) {
    analysis::Results1004MC fresh;
    for (int i = 0; i < 3; ++i)
        fresh.txtTotalC[i].SetText("0");
    TransferFields(endpoint, session, fresh, MarketFields(), outcome);
    ASSERT_EQ(carrier.pokes.size(), 27U);
    EXPECT_EQ(carrier.pokes[0].second, "0");
    EXPECT_EQ(carrier.pokes[3].second, "0.00");
    EXPECT_EQ(carrier.pokes[12], (Pokes::value_type{"1004MC|21|1", ""}));
    EXPECT_TRUE(outcome.AllArrived());
}

TEST_F(FieldTransfer, TheReportIsFoundAnewAtEachPress) {
    Send(CondoFields());
    carrier.values["KRN|Query"]["ActiveReports"] = "Jones,";
    carrier.values["KRN|Jones"]["ListForms"] = "1004MC,";
    carrier.values["Krn|Jones"]["UserID"] = "7";
    Send(CondoFields());
    EXPECT_EQ(outcome.report, "Jones");
    EXPECT_EQ(carrier.pokes.size(), 24U);
}

TEST_F(FieldTransfer, ARefusedValueIsPassedOverAndTold) {
    carrier.faults["poke 1004MC|17|2"] = 380;
    carrier.faults["poke 1004MC|25|3"] = 380;
    Send(MarketFields());
    EXPECT_EQ(carrier.pokes.size(), 25U);
    EXPECT_EQ(outcome.end, TransferOutcome::End::Sent);
    EXPECT_EQ(StatusText(outcome),
              "25 of 27 values arrived in the report \"Smith\". 2 were refused: 1004MC|17|2, 1004MC|25|3.");
    controls::Label lblDataSentMsg{"lblDataSentMsg"};
    controls::Image imgDataSentMsg{"imgDataSentMsg"};
    lblDataSentMsg.SetVisible(false);
    imgDataSentMsg.SetVisible(false);
    ShowDataSent(outcome, lblDataSentMsg, imgDataSentMsg);
    EXPECT_TRUE(lblDataSentMsg.Visible());
    EXPECT_TRUE(imgDataSentMsg.Visible());
    EXPECT_EQ(lblDataSentMsg.Caption(), "Data sent to report");
    EXPECT_EQ(lblDataSentMsg.ToolTipText(), StatusText(outcome));
}

TEST_F(FieldTransfer, ManyRefusalsAreNamedInShort) {
    carrier.faults["poke"] = 380;
    Send(MarketFields());
    EXPECT_EQ(StatusText(outcome),
              "0 of 27 values arrived in the report \"Smith\". 27 were refused: 1004MC|16|1, 1004MC|16|2, "
              "1004MC|16|3, 1004MC|17|1, 1004MC|17|2 and 22 more.");
}

TEST_F(FieldTransfer, AHangInMidTransferTellsWhatArrived) {
    for (const int number : {286, 293}) {
        carrier.pokes.clear();
        carrier.faults = {{"poke 1004MC|18|1", number}};
        try {
            Send(MarketFields());
            FAIL() << "nothing was raised";
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, number);
            EXPECT_NE(fault.description.find("6 of 27 values arrived in the report \"Smith\". Of 1 it is not "
                                             "known whether it arrived, or will yet: look at the report. 20 "
                                             "were not sent."),
                      std::string::npos)
                << fault.description;
        }
        EXPECT_EQ(outcome.end, TransferOutcome::End::BrokeOff);
        EXPECT_EQ(outcome.arrived, 6);
        EXPECT_EQ(outcome.unknown, 1);
        EXPECT_EQ(outcome.NotSent(), 20);
        EXPECT_EQ(carrier.pokes.size(), 6U) << "nothing goes out behind it";
    }
}

TEST_F(FieldTransfer, KrnThatGoesBetweenTwoPokesLeavesNoValueUnknown) {
    struct GoneLater final : link::Carrier {
        testing_support::RecordingCarrier& inner;
        int left = 9;
        explicit GoneLater(testing_support::RecordingCarrier& carrier) : inner(carrier) {}
        void Open(const std::string& service, const std::string& topic) override {
            if (left-- == 0) throw Fault(fault::kNoAnswer, "It has gone.");
            inner.Open(service, topic);
        }
        std::string Request(const std::string& item) override { return inner.Request(item); }
        void Poke(const std::string& item, const std::string& text) override { inner.Poke(item, text); }
        void Close() noexcept override { inner.Close(); }
    } gone(carrier);
    Endpoint other(gone);
    try {
        TransferFields(other, session, results, MarketFields(), outcome);
        FAIL() << "nothing was raised";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, 282);
        EXPECT_EQ(fault.description,
                  "It has gone. 6 of 27 values arrived in the report \"Smith\". 21 were not sent.");
    }
}

}  // namespace
}  // namespace zenvora::transfer
