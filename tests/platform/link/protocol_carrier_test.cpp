#include "platform/link/protocol_carrier.h"

#include <chrono>
#include <deque>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

#include "platform/fault.h"
#include "platform/link/make_link.h"
#include "standin.h"
#include "support/fault_of.h"
#include "support/temp_folder.h"

namespace zenvora::link {
namespace {

using std::chrono::milliseconds;
using testing_support::FaultOf;

/// What the peer of a channel does when it is asked the n-th time.
struct Peer {
    int opened = 0;  ///< channels made
    int closed = 0;  ///< channels let go of
    std::string greeting{kReadyLine};
    std::vector<std::string> received;
    /// Bytes that come back for a query; "(hang)" never answers, "(gone)" closes.
    std::function<std::string(const Query&)> answer = [](const Query& query) {
        return EncodeReply({query.number, 0, {}, {}});
    };
};

class PeerChannel final : public Channel {
  public:
    explicit PeerChannel(Peer& peer) : peer_(peer), waiting_(peer.greeting) { ++peer.opened; }
    ~PeerChannel() override { ++peer_.closed; }

    End Write(std::string_view bytes, Deadline) override {
        if (isGone_) return End::Gone;
        const std::string line(bytes.substr(0, bytes.size() - 1));
        peer_.received.push_back(line);
        const std::string answer = peer_.answer(DecodeQuery(line).value_or(Query{}));
        if (answer == "(gone)") {
            isGone_ = true;
        } else if (answer != "(hang)") {
            waiting_ += answer;
        }
        return End::Done;
    }
    End Read(std::string& bytes, Deadline) override {
        if (waiting_ == "(endless)") {
            bytes += "*NOISE\n";
            return End::Done;
        }
        if (waiting_.empty()) return isGone_ ? End::Gone : End::TimeOut;
        // A byte at a time is the worst that a stream may do.
        bytes += waiting_.front();
        waiting_.erase(0, 1);
        return End::Done;
    }

  private:
    Peer& peer_;
    std::string waiting_;
    bool isGone_ = false;
};

class ProtocolCarrierTest : public testing::Test {
  protected:
    Peer peer;
    bool isThere = true;
    bool isOfUse = true;
    ProtocolCarrier carrier{[this]() -> std::unique_ptr<Channel> {
                                if (!isThere) return nullptr;
                                return std::make_unique<PeerChannel>(peer);
                            },
                            {milliseconds(50), milliseconds(50)},
                            [this] { return isOfUse; }};
};

TEST_F(ProtocolCarrierTest, SpeaksAConversation) {
    peer.answer = [](const Query& query) {
        return EncodeReply({query.number, 0, query.verb == Verb::Request ? "Smith," : "", {}});
    };
    carrier.Open("KRN", "Query");
    EXPECT_EQ(carrier.Request("ActiveReports"), "Smith,");
    carrier.Close();
    carrier.Open("KRN", "Smith");
    carrier.Poke("1004MC|16|1", "4\r\n");
    EXPECT_EQ(peer.received,
              (std::vector<std::string>{"1\tOPEN\tKRN\tQuery", "2\tREQUEST\tActiveReports", "3\tCLOSE",
                                        "4\tOPEN\tKRN\tSmith", "5\tPOKE\t1004MC|16|1\t4\\r\\n"}));
    EXPECT_EQ(peer.opened, 1);
}

TEST_F(ProtocolCarrierTest, WithoutAPeerNobodyAnswers) {
    isThere = false;
    EXPECT_EQ(FaultOf([&] { carrier.Open("KRN", "Query"); }), 282);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(carrier.Request("x")); }), 293);
    EXPECT_EQ(FaultOf([&] { carrier.Poke("x", "y"); }), 293);
    isThere = true;
    carrier.Open("KRN", "Query");
}

TEST_F(ProtocolCarrierTest, PassesFaultsOnByNumber) {
    carrier.Open("KRN", "Smith");
    for (const int number : {285, 380}) {
        // By value: the conversation is closed, and answered, when the loop is long over.
        peer.answer = [number](const Query& query) { return EncodeReply({query.number, number, {}, "why"}); };
        EXPECT_EQ(FaultOf([&] { carrier.Poke("a", "b"); }), number);
        EXPECT_EQ(FaultOf([&] { static_cast<void>(carrier.Request("a")); }), number);
    }
    EXPECT_EQ(peer.opened, 1) << "a refusal is no reason for a new helper";
}

TEST_F(ProtocolCarrierTest, AHelperThatHangsIsLetGoAtTheLimit) {
    carrier.Open("KRN", "Smith");
    peer.answer = [](const Query&) { return "(hang)"; };
    EXPECT_EQ(FaultOf([&] { carrier.Poke("a", "b"); }), 286);
    EXPECT_EQ(peer.closed, 1);
    EXPECT_EQ(FaultOf([&] { carrier.Poke("a", "b"); }), 293) << "the conversation went with it";
    EXPECT_EQ(FaultOf([&] { carrier.Open("KRN", "Smith"); }), 286);
    EXPECT_EQ(peer.opened, 2);
}

TEST_F(ProtocolCarrierTest, ATimeOutThatTheHelperReportsGivesANewHelper) {
    for (const int number : {286, 293}) {
        peer = {};
        carrier.Open("KRN", "Smith");
        // By value: the conversation is closed, and answered, when the loop is long over.
        peer.answer = [number](const Query& query) { return EncodeReply({query.number, number, {}, "why"}); };
        EXPECT_EQ(FaultOf([&] { carrier.Poke("a", "b"); }), number);
        peer.answer = Peer{}.answer;
        carrier.Open("KRN", "Smith");
        EXPECT_EQ(peer.closed, 1) << number;
        carrier.Poke("a", "b");
    }
}

TEST_F(ProtocolCarrierTest, AHelperThatGoesInMidConversationBreaksIt) {
    carrier.Open("KRN", "Smith");
    peer.answer = [](const Query&) { return "(gone)"; };
    EXPECT_EQ(FaultOf([&] { carrier.Poke("a", "b"); }), 293);
    peer.answer = Peer{}.answer;
    carrier.Open("KRN", "Smith");
    EXPECT_EQ(peer.opened, 2);
}

TEST_F(ProtocolCarrierTest, AHelperThatWentBetweenConversationsIsReplaced) {
    carrier.Open("KRN", "Smith");
    peer.answer = [](const Query&) { return "(gone)"; };
    carrier.Close();
    peer.answer = Peer{}.answer;
    peer.received.clear();
    carrier.Open("KRN", "Jones");
    EXPECT_EQ(peer.opened, 2);
    EXPECT_EQ(peer.received, (std::vector<std::string>{"4\tOPEN\tKRN\tJones"}));
}

TEST_F(ProtocolCarrierTest, AHelperWhoseProgramEndedIsNotUsedAgain) {
    carrier.Open("KRN", "Smith");
    isOfUse = false;
    isThere = false;
    EXPECT_EQ(FaultOf([&] { carrier.Open("KRN", "Smith"); }), 282);
    EXPECT_EQ(peer.closed, 1);
}

TEST_F(ProtocolCarrierTest, EventsAndOldRepliesArePassedOver) {
    carrier.Open("KRN", "Smith");
    peer.answer = [](const Query& query) {
        return "*UNREGISTER\tKRN\n" + EncodeReply({query.number - 1, 0, "old", {}}) +
               EncodeReply({query.number, 0, "new", {}});
    };
    EXPECT_EQ(carrier.Request("a"), "new");
}

TEST_F(ProtocolCarrierTest, NonsenseEndsTheHelper) {
    for (const char* nonsense : {"what?\n", "0\tERR\t285\tno query\n", "99\tOK\t\n", "2\tOK\n", "\xFF\n"}) {
        peer = {};
        carrier.Open("KRN", "Smith");
        peer.answer = [&](const Query&) { return nonsense; };
        EXPECT_EQ(FaultOf([&] { static_cast<void>(carrier.Request("a")); }), 285) << nonsense;
        EXPECT_GE(peer.closed, 1) << nonsense;
    }
}

TEST_F(ProtocolCarrierTest, APeerThatNeverStopsIsLeftAtTheLimit) {
    peer.greeting = "(endless)";
    EXPECT_EQ(FaultOf([&] { carrier.Open("KRN", "Smith"); }), 285) << "its first line is no greeting";
    peer.greeting = std::string(kReadyLine);
    carrier.Open("KRN", "Smith");
    peer.answer = [](const Query&) { return "(endless)"; };
    EXPECT_EQ(FaultOf([&] { static_cast<void>(carrier.Request("a")); }), 286);
}

TEST_F(ProtocolCarrierTest, AHelperOfAnotherVersionIsRefused) {
    peer.greeting = "*READY\t2\n";
    EXPECT_EQ(FaultOf([&] { carrier.Open("KRN", "Query"); }), 285);
    peer.greeting = "";
    EXPECT_EQ(FaultOf([&] { carrier.Open("KRN", "Query"); }), 286) << "one that says nothing";
}

/// The stand-in as a program of its own.
class StandinProgram : public testing::Test {
  protected:
    StandinProgram() {
        settings.programFolder = std::filesystem::path(ZENVORA_STANDIN).parent_path();
        settings.standinFile = Reports("[Smith]\nforms = 1004MC,\nhang = 1004MC|1|1\ndie = 1004MC|2|1\n");
        settings.limits = {milliseconds(300), milliseconds(100)};
    }
    std::filesystem::path Reports(std::string_view text) { return folder.Write("KRN.txt", text); }

    testing_support::TempFolder folder;
    LinkSettings settings;
};

TEST_F(StandinProgram, AnswersAndKeepsWhatIsSent) {
    const auto carrier = MakeLink(settings);
    carrier->Open("KRN", "Query");
    EXPECT_EQ(carrier->Request("ActiveReports"), "Smith,");
    carrier->Close();
    carrier->Open("Krn", "SMITH");
    carrier->Poke("1004MC|16|1", "a\r\nb\tc\\");
    EXPECT_EQ(carrier->Request("1004MC|16|1"), "a\r\nb\tc\\");
    EXPECT_NE(folder.Read("KRN.txt").find("\n1004MC|16|1 = a\\r\\nb\\tc\\\\\n"), std::string::npos);
    EXPECT_EQ(FaultOf([&] { carrier->Poke("Text|5|1", "x"); }), 380);
    EXPECT_EQ(FaultOf([&] { carrier->Open("KRN", "Jones"); }), 282);
}

TEST_F(StandinProgram, AHangEndsAtTheLimitAndTheNextConversationWorks) {
    const auto carrier = MakeLink(settings);
    carrier->Open("KRN", "Smith");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(FaultOf([&] { carrier->Poke("1004MC|1|1", "x"); }), 286);
    EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(400));
    carrier->Open("KRN", "Smith");
    carrier->Poke("1004MC|3|1", "x");
}

TEST_F(StandinProgram, ADeathBreaksTheConversationAndTheNextOneWorks) {
    const auto carrier = MakeLink(settings);
    carrier->Open("KRN", "Smith");
    EXPECT_EQ(FaultOf([&] { carrier->Poke("1004MC|2|1", "x"); }), 293);
    carrier->Open("KRN", "Smith");
    carrier->Poke("1004MC|3|1", "x");
}

TEST_F(StandinProgram, AFileThatCannotBeReadAnswersNobody) {
    settings.standinFile = folder / "missing.txt";
    EXPECT_EQ(FaultOf([&] { MakeLink(settings)->Open("KRN", "Query"); }), 282);
    settings.programFolder = folder.Path();
    EXPECT_EQ(FaultOf([&] { MakeLink(settings)->Open("KRN", "Query"); }), 282);
}

TEST_F(StandinProgram, AFolderIsNoFileOfReports) {
    EXPECT_EQ(FaultOf([&] { const standin::Reports reports(folder.Path()); }), fault::kFileNotFound);
}

TEST_F(StandinProgram, ListensOnASocket) {
    const auto socket = folder / "krn.socket";
    const auto listener =
        StartProgram({ZENVORA_STANDIN, settings.standinFile.string(), "--socket", socket.string()}, {});
    ASSERT_TRUE(listener);
    std::string said;
    ASSERT_EQ(listener->Read(said, std::chrono::steady_clock::now() + std::chrono::seconds(10)),
              Channel::End::Done);
    LinkSettings bySocket;
    bySocket.limits = {milliseconds(2000), milliseconds(100)};
    bySocket.socket = socket;
    const auto carrier = MakeLink(bySocket);
    const auto other = MakeLink(bySocket);
    carrier->Open("KRN", "Query");
    other->Open("KRN", "Query");
    EXPECT_EQ(carrier->Request("ActiveReports"), "Smith,");
    EXPECT_EQ(other->Request("ActiveReports"), "Smith,");
    bySocket.socket = folder / "nobody";
    EXPECT_EQ(FaultOf([&] { MakeLink(bySocket)->Open("KRN", "Query"); }), 282);
}

TEST(StartProgram, APipeThatNobodyReadsDoesNotEndThisProgram) {
    const auto program = StartProgram({"/bin/true"}, {});
    ASSERT_TRUE(program);
    const Deadline deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::string bytes;
    EXPECT_EQ(program->Read(bytes, deadline), Channel::End::Gone);
    const std::string block(1U << 20U, 'x');
    EXPECT_EQ(program->Write(block, deadline), Channel::End::Gone);
}

TEST(StartProgram, AProgramThatReadsNothingTimesOut) {
    const auto program = StartProgram({"/bin/sleep", "60"}, {});
    ASSERT_TRUE(program);
    const std::string block(1U << 20U, 'x');
    EXPECT_EQ(program->Write(block, std::chrono::steady_clock::now() + milliseconds(50)),
              Channel::End::TimeOut);
}

}  // namespace
}  // namespace zenvora::link
