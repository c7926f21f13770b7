#include "platform/link/line_protocol.h"

#include <gtest/gtest.h>

#include "platform/link/line_server.h"
#include "support/recording_carrier.h"

namespace zenvora::link {
namespace {

using Fields = std::vector<std::string>;

TEST(LineProtocol, EscapesWhatWouldEndAFieldOrALine) {
    EXPECT_EQ(EncodeLine({"7", "POKE", "a\tb", "c\r\nd\\e", ""}), "7\tPOKE\ta\\tb\tc\\r\\nd\\\\e\t\n");
    EXPECT_EQ(DecodeLine("7\tPOKE\ta\\tb\tc\\r\\nd\\\\e\t"), (Fields{"7", "POKE", "a\tb", "c\r\nd\\e", ""}));
    EXPECT_EQ(DecodeLine(""), Fields{""});
    EXPECT_EQ(DecodeLine("Zürich €"), Fields{"Zürich €"});
}

TEST(LineProtocol, RefusesBrokenEscapesAndBytesThatAreNoText) {
    for (const char* line : {"a\\", "a\\x", "\\\tb", "a\xFF", "\xC3"})
        EXPECT_FALSE(DecodeLine(line)) << line;
    EXPECT_EQ(EncodeLine({"a\xFF"}), "a\uFFFD\n");
}

TEST(LineProtocol, AQueryHasANumberAVerbAndItsArguments) {
    const auto query = DecodeQuery("12\tPOKE\t1004MC|16|1\t4");
    ASSERT_TRUE(query);
    EXPECT_EQ(query->number, 12U);
    EXPECT_EQ(query->verb, Verb::Poke);
    EXPECT_EQ(query->arguments, (Fields{"1004MC|16|1", "4"}));
    EXPECT_EQ(EncodeQuery(*query), "12\tPOKE\t1004MC|16|1\t4\n");
    EXPECT_EQ(EncodeQuery({1, Verb::Open, {"KRN", "Query"}}), "1\tOPEN\tKRN\tQuery\n");
    EXPECT_EQ(EncodeQuery({2, Verb::Close}), "2\tCLOSE\n");
    for (const char* line : {"", "12", "12\tNOD", "x\tCLOSE", "-1\tCLOSE", "12\tPOKE\ta", "12\tPOKE\ta\tb\tc",
                             "12\tclose", "99999999999999999999\tCLOSE", "12\tCLOSE\t", " 12\tCLOSE"}) {
        EXPECT_FALSE(DecodeQuery(line)) << line;
    }
}

TEST(LineProtocol, AReplyIsATextOrAFault) {
    EXPECT_EQ(EncodeReply({3, 0, "Smith,", {}}), "3\tOK\tSmith,\n");
    EXPECT_EQ(EncodeReply({3, 282, {}, "Nobody.\n"}), "3\tERR\t282\tNobody.\\n\n");
    const auto reply = DecodeReply("3\tERR\t282\tNobody");
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->fault, 282);
    EXPECT_EQ(reply->description, "Nobody");
    EXPECT_EQ(DecodeReply("3\tOK\t")->text, "");
    for (const char* line : {"", "3", "3\tOK", "3\tOK\ta\tb", "3\tERR\tx\ty", "3\tERR\t0\ty",
                             "3\tERR\t-282\ty", "3\tERR\t282", "x\tOK\ta", "*READY\t1"}) {
        EXPECT_FALSE(DecodeReply(line)) << line;
    }
}

TEST(LineBuffer, CutsLinesHoweverTheBytesCome) {
    LineBuffer buffer;
    EXPECT_TRUE(buffer.Append("one\ntw"));
    EXPECT_EQ(buffer.Next(), "one");
    EXPECT_FALSE(buffer.Next());
    EXPECT_TRUE(buffer.Append("o\r\n\nfour"));
    EXPECT_EQ(buffer.Next(), "two");
    EXPECT_EQ(buffer.Next(), "");
    EXPECT_FALSE(buffer.Next());
}

TEST(LineBuffer, TakesNoLineWithoutEnd) {
    LineBuffer buffer;
    const std::string block(1U << 20U, 'x');
    for (std::size_t taken = 0; taken + block.size() <= kLongestLine; taken += block.size())
        ASSERT_TRUE(buffer.Append(block));
    EXPECT_FALSE(buffer.Append(block));
}

TEST(LineServer, AnswersByItsCarrier) {
    testing_support::RecordingCarrier carrier;
    carrier.values["KRN|Query"]["ActiveReports"] = "Smith,\tJones";
    carrier.faults["poke b"] = 380;
    carrier.missingCharacters = "Ż";
    EXPECT_EQ(AnswerLine(carrier, "1\tOPEN\tKRN\tQuery"), "1\tOK\t\n");
    EXPECT_EQ(AnswerLine(carrier, "2\tREQUEST\tActiveReports"), "2\tOK\tSmith,\\tJones\n");
    EXPECT_EQ(AnswerLine(carrier, "3\tPOKE\ta\t4"), "3\tOK\t\n");
    EXPECT_EQ(AnswerLine(carrier, "4\tPOKE\tb\t4"), "4\tERR\t380\tfault 380\n");
    EXPECT_EQ(AnswerLine(carrier, "5\tFITS\tŻ"), "5\tOK\t0\n");
    EXPECT_EQ(AnswerLine(carrier, "6\tCLOSE"), "6\tOK\t\n");
    EXPECT_EQ(AnswerLine(carrier, "7\tOPEN\tKRN\tNobody"), "7\tERR\t282\tnobody answers\n");
    EXPECT_EQ(AnswerLine(carrier, "rubbish"), "0\tERR\t285\tThis line is no query of the link protocol.\n");
}

}  // namespace
}  // namespace zenvora::link
