#include "common/error_rule.h"

#include <exception>
#include <gtest/gtest.h>

#include "support/test_session.h"

namespace zenvora::common {
namespace {

using controls::Answer;
using testing_support::TestSession;

struct Cause {
    const char* name;
    int number;
    const char* text;
};
class DiskFaults : public testing::TestWithParam<Cause> {};

TEST_P(DiskFaults, AskAndNameTheProcedureEnteredLast) {
    TestSession test;
    test.session.lastProcedure = " AdoSetField ";
    test.desktop.Expect(GetParam().text, Answer::Retry);
    EXPECT_EQ(ReportFileError(test.session, GetParam().number), ErrorAnswer::Retry);
    ASSERT_EQ(test.desktop.messages.size(), 1U);
    EXPECT_EQ(test.desktop.messages[0].title, "Error");
    EXPECT_EQ(test.desktop.messages[0].buttons, controls::Buttons::AbortRetryIgnore);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, DiskFaults,
    testing::Values(Cause{"DeviceIo", 57, "Device I/O error.\nError # 57 in module AdoSetField."},
                    Cause{"DiskFull", 61, "Disk full.\nError # 61 in module AdoSetField."},
                    Cause{"DeviceUnavailable", 68, "Device unavailable.\nError # 68 in module AdoSetField."},
                    Cause{"DiskNotReady", 71, "Disk not ready.\nError # 71 in module AdoSetField."}),
    [](const auto& info) { return info.param.name; });

TEST(ReportFileError, TurnsEachButtonIntoItsAnswer) {
    for (const auto& [button, answer] : {std::pair{Answer::Ok, ErrorAnswer::Retry},
                                         {Answer::Retry, ErrorAnswer::Retry},
                                         {Answer::Ignore, ErrorAnswer::NextStatement},
                                         {Answer::Abort, ErrorAnswer::LeaveProcedure},
                                         {Answer::Cancel, ErrorAnswer::LeaveProcedure},
                                         {Answer::Yes, ErrorAnswer::Raise},
                                         {Answer::No, ErrorAnswer::Raise}}) {
        TestSession test;
        test.desktop.ExpectAny(button);
        EXPECT_EQ(ReportFileError(test.session, 61), answer);
    }
    EXPECT_EQ(static_cast<int>(ErrorAnswer::Retry), 0);
    EXPECT_EQ(static_cast<int>(ErrorAnswer::NextStatement), 1);
    EXPECT_EQ(static_cast<int>(ErrorAnswer::LeaveProcedure), 2);
    EXPECT_EQ(static_cast<int>(ErrorAnswer::Raise), 3);
}

TEST(ReportFileError, RaisesAllOtherFaultsWithoutAMessage) {
    TestSession test;
    for (const int number : {5, 13, 53, 58, 70, 75, 76, 3021, 3265, 20001}) {
        EXPECT_EQ(ReportFileError(test.session, number), ErrorAnswer::Raise) << number;
    }
    EXPECT_TRUE(test.desktop.messages.empty());
}

TEST(ReportFileError, EndsTheProgramWhenTheDatabooksMayBeCorrupt) {
    TestSession test;
    test.desktop.Expect(
        "The databases may be corrupt.  Please run the rebuild programs. (Double Click on the icons) and "
        "restart "
        "Quillet Album.");
    bool ended = false;
    try {
        WithErrorRule(test.session, "AdoSelect", [] { throw Fault(fault::kRecordLocked, "locked"); });
    } catch (const std::exception&) {
        ADD_FAILURE() << "a handler of ordinary failures must not see the end of the program";
    } catch (const ProgramEnds& end) {
        ended = true;
        EXPECT_EQ(end.faultNumber, 3218);
    }
    EXPECT_TRUE(ended);
}

TEST(WithErrorRule, RunsItsStatementAndKeepsTheProceduresName) {
    TestSession test;
    int runs = 0;
    EXPECT_EQ(WithErrorRule(test.session, "AdoSelect", [&] { ++runs; }), StatementEnd::Done);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(test.session.lastProcedure, "AdoSelect");
}

TEST(WithErrorRule, RetriesTheStatement) {
    TestSession test;
    test.desktop.Expect("Disk full.\nError # 61 in module AdoSetField.", Answer::Retry);
    test.desktop.Expect("Disk full.\nError # 61 in module AdoSetField.", Answer::Ok);
    int runs = 0;
    EXPECT_EQ(WithErrorRule(test.session, "AdoSetField",
                            [&] {
                                if (++runs < 3) throw Fault(fault::kDiskFull, "full");
                            }),
              StatementEnd::Done);
    EXPECT_EQ(runs, 3);
}

TEST(WithErrorRule, GoesOnBehindTheStatement) {
    TestSession test;
    test.desktop.ExpectAny(Answer::Ignore);
    EXPECT_EQ(WithErrorRule(test.session, "AdoSetField", [] { throw Fault(fault::kDeviceIo, "io"); }),
              StatementEnd::Skipped);
}

TEST(WithErrorRule, LeavesTheProcedure) {
    TestSession test;
    test.desktop.ExpectAny(Answer::Abort);
    EXPECT_EQ(WithErrorRule(test.session, "AdoSetField", [] { throw Fault(fault::kDeviceIo, "io"); }),
              StatementEnd::LeaveProcedure);
}

TEST(WithErrorRule, RaisesTheSameFaultToTheCaller) {
    TestSession test;
    try {
        WithErrorRule(test.session, "AdoSelect", [] {
            Place place;
            place.file = "LISTINGS.mdb";
            throw Fault(fault::kNoSuchTable, "no table", std::move(place));
        });
        ADD_FAILURE();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kNoSuchTable);
        EXPECT_EQ(fault.description, "no table");
        EXPECT_EQ(fault.place.file, "LISTINGS.mdb");
    }
}

TEST(WithErrorRule, NamesTheInnerProcedureWhenThatWasEnteredLast) {
    TestSession test;
    test.desktop.Expect("Disk full.\nError # 61 in module AdoSelect.", Answer::Ignore);
    WithErrorRule(test.session, "AdoConnectSelect", [&] {
        WithErrorRule(test.session, "AdoSelect", [] {});
        throw Fault(fault::kDiskFull, "full");
    });
}

}  // namespace
}  // namespace zenvora::common
