#include "platform/link/endpoint.h"

#include <gtest/gtest.h>

#include "support/fault_of.h"
#include "support/recording_carrier.h"

namespace zenvora::link {
namespace {

using testing_support::FaultOf;
using Steps = std::vector<std::string>;

class EndpointTest : public testing::Test {
  protected:
    EndpointTest() {
        carrier.values["KRN|Query"]["ActiveReports"] = "Smith,";
        carrier.values["KRN|Smith"];
    }
    testing_support::RecordingCarrier carrier;
    Endpoint endpoint{carrier};
};

TEST_F(EndpointTest, ModeTwoBeginsTheConversationAndModeZeroEndsIt) {
    endpoint.SetLinkMode(0);
    endpoint.SetLinkTopic("KRN|Query");
    EXPECT_TRUE(carrier.steps.empty());
    endpoint.SetLinkMode(2);
    EXPECT_EQ(endpoint.LinkMode(), 2);
    endpoint.SetLinkItem("ActiveReports");
    endpoint.LinkRequest();
    EXPECT_EQ(endpoint.Text(), "Smith,");
    endpoint.SetLinkMode(0);
    EXPECT_EQ(endpoint.LinkMode(), 0);
    EXPECT_EQ(carrier.steps, (Steps{"open KRN|Query", "request ActiveReports", "close"}));
}

TEST_F(EndpointTest, ModeTwoOfALinkThatIsUpBeginsAnew) {
    endpoint.SetLinkTopic("KRN|Query");
    endpoint.SetLinkMode(2);
    endpoint.SetLinkTopic("KRN|Smith");
    endpoint.SetLinkMode(2);
    EXPECT_EQ(carrier.steps, (Steps{"open KRN|Query", "close", "open KRN|Smith"}));
}

TEST_F(EndpointTest, ATopicHoldsMoreBarsThanOne) {
    carrier.values["KRN|A|B"];
    endpoint.SetLinkTopic("KRN|A|B");
    endpoint.SetLinkMode(2);
    EXPECT_EQ(carrier.steps, Steps{"open KRN|A|B"});
}

TEST_F(EndpointTest, AModeThatFailsLeavesTheLinkDownAndTextAsItWas) {
    endpoint.SetText("before");
    endpoint.SetLinkTopic("KRN|Nobody");
    EXPECT_EQ(FaultOf([&] { endpoint.SetLinkMode(2); }), 282);
    EXPECT_EQ(endpoint.LinkMode(), 0);
    EXPECT_EQ(endpoint.Text(), "before");
    EXPECT_EQ(endpoint.LastFault(), "nobody answers");
}

TEST_F(EndpointTest, ATopicWithoutServiceIsAnInvalidValue) {
    for (const char* topic : {"", "Smith", "|Smith"}) {
        endpoint.SetLinkTopic(topic);
        EXPECT_EQ(FaultOf([&] { endpoint.SetLinkMode(2); }), 380) << topic;
    }
    EXPECT_EQ(FaultOf([&] { endpoint.SetLinkMode(1); }), 380);
    EXPECT_TRUE(carrier.steps.empty());
}

TEST_F(EndpointTest, AnEmptyTopicReachesNobody) {
    endpoint.SetLinkTopic("KRN|");
    EXPECT_EQ(FaultOf([&] { endpoint.SetLinkMode(2); }), 282);
    EXPECT_TRUE(carrier.steps.empty());
}

TEST_F(EndpointTest, NamesBeyondTheExchangeAreInvalidValues) {
    std::string longName;
    for (int i = 0; i < 256; ++i)
        longName += "ü";
    endpoint.SetLinkTopic("KRN|" + longName);
    EXPECT_EQ(FaultOf([&] { endpoint.SetLinkMode(2); }), 380);
    endpoint.SetLinkTopic("KRN|Smith");
    endpoint.SetLinkMode(2);
    endpoint.SetLinkItem(longName);
    EXPECT_EQ(FaultOf([&] { endpoint.LinkRequest(); }), 380);
    EXPECT_EQ(FaultOf([&] { endpoint.LinkPoke(); }), 380);
    longName.resize(255 * 2);
    endpoint.SetLinkItem(longName);
    EXPECT_EQ(FaultOf([&] { endpoint.LinkPoke(); }), 0);
}

TEST_F(EndpointTest, WithoutAConversationNothingIsAskedOrSent) {
    endpoint.SetLinkItem("ActiveReports");
    EXPECT_EQ(FaultOf([&] { endpoint.LinkRequest(); }), 293);
    EXPECT_EQ(FaultOf([&] { endpoint.LinkPoke(); }), 293);
    EXPECT_TRUE(carrier.steps.empty());
}

TEST_F(EndpointTest, ARequestThatFailsLeavesTextAndMode) {
    endpoint.SetText("before");
    endpoint.SetLinkTopic("KRN|Smith");
    endpoint.SetLinkMode(2);
    endpoint.SetLinkItem("1004MC|16|1");
    EXPECT_EQ(FaultOf([&] { endpoint.LinkRequest(); }), 285);
    EXPECT_EQ(endpoint.Text(), "before");
    EXPECT_EQ(endpoint.LinkMode(), 2);
}

TEST_F(EndpointTest, PokeSendsTextToTheItem) {
    endpoint.SetLinkTopic("KRN|Smith");
    endpoint.SetLinkMode(2);
    endpoint.SetLinkItem("1004MC|16|1");
    endpoint.SetText("4");
    endpoint.LinkPoke();
    ASSERT_EQ(carrier.pokes.size(), 1U);
    EXPECT_EQ(carrier.pokes[0].first, "1004MC|16|1");
    EXPECT_EQ(carrier.pokes[0].second, "4");
}

TEST_F(EndpointTest, TheListenerHearsEachStep) {
    Steps heard;
    endpoint.OnStep([&](std::string_view step) { heard.emplace_back(step); });
    endpoint.SetLinkMode(0);
    endpoint.SetLinkTopic("KRN|Smith");
    endpoint.SetLinkMode(2);
    endpoint.SetLinkItem("a|b");
    endpoint.SetText("v");
    endpoint.LinkPoke();
    EXPECT_EQ(heard, (Steps{"mode 0", "topic KRN|Smith", "mode 2", "item a|b", "text v", "poke"}));
}

TEST(NoCarrier, AnswersAsNobodyDoes) {
    Endpoint endpoint(NoCarrier());
    endpoint.SetLinkTopic("KRN|Query");
    EXPECT_EQ(FaultOf([&] { endpoint.SetLinkMode(2); }), 282);
    EXPECT_EQ(FaultOf([] { static_cast<void>(NoCarrier().Request("x")); }), 293);
    EXPECT_EQ(FaultOf([] { NoCarrier().Poke("x", "y"); }), 293);
}

TEST(EndpointEnd, EndsTheConversationThatIsUp) {
    testing_support::RecordingCarrier carrier;
    carrier.values["KRN|Query"];
    {
        Endpoint endpoint(carrier);
        endpoint.SetLinkTopic("KRN|Query");
        endpoint.SetLinkMode(2);
    }
    EXPECT_EQ(carrier.steps, (Steps{"open KRN|Query", "close"}));
}

}  // namespace
}  // namespace zenvora::link
