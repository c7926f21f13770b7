#include "cli/console_desktop.h"

#include <gtest/gtest.h>
#include <sstream>

namespace zenvora::cli {
namespace {

using controls::Answer;
using controls::Buttons;
using controls::Icon;
using std::chrono::milliseconds;

struct QuestionCase {
    const char* name;
    Buttons buttons;
    Answer answer;
};
class ConsoleAnswers : public testing::TestWithParam<QuestionCase> {};

TEST_P(ConsoleAnswers, AreTheDefault) {
    std::ostringstream err;
    ConsoleDesktop desktop(err, {});
    EXPECT_EQ(desktop.Show({"Disk full", "Error", Icon::Critical, GetParam().buttons}), GetParam().answer);
    EXPECT_EQ(err.str(), "Error: Disk full\n");
}

INSTANTIATE_TEST_SUITE_P(Buttons, ConsoleAnswers,
                         testing::Values(QuestionCase{"Ok", Buttons::Ok, Answer::Ok},
                                         QuestionCase{"OkCancel", Buttons::OkCancel, Answer::Ok},
                                         QuestionCase{"YesNo", Buttons::YesNo, Answer::Yes},
                                         QuestionCase{"YesNoCancel", Buttons::YesNoCancel, Answer::Yes},
                                         QuestionCase{"AbortRetryIgnore", Buttons::AbortRetryIgnore,
                                                      Answer::Abort},
                                         QuestionCase{"RetryCancel", Buttons::RetryCancel, Answer::Cancel}),
                         [](const auto& info) { return info.param.name; });

TEST(ConsoleDesktop, PrintsOnlyTroubleWhenQuiet) {
    std::ostringstream err;
    ConsoleDesktop desktop(err, {.quiet = true});
    desktop.Show({"There are no mappings to save", "", Icon::Information, Buttons::Ok});
    EXPECT_EQ(err.str(), "");
    desktop.Show({"List contains non numeric data.", "INVALID VALUE", Icon::Critical, Buttons::Ok});
    EXPECT_EQ(err.str(), "INVALID VALUE: List contains non numeric data.\n");
}

TEST(ConsoleDesktop, CancelsFileDialogs) {
    std::ostringstream err;
    EXPECT_EQ(ConsoleDesktop(err, {}).Choose({}), "");
}

TEST(Progress, IsDrawnAfterHalfASecondAndWipedAtTheEnd) {
    std::ostringstream err;
    milliseconds now{1000};
    ConsoleDesktop desktop(err, {.drawProgress = true}, [&] { return now; });
    desktop.Progress(0, 100);
    now = milliseconds{1499};
    desktop.Progress(25, 100);
    EXPECT_EQ(err.str(), "");
    now = milliseconds{1500};
    desktop.Progress(50, 100);
    const std::string bar = "\r[" + std::string(20, '#') + std::string(20, ' ') + "] 50 of 100";
    EXPECT_EQ(err.str(), bar);
    desktop.Progress(100, 100);
    EXPECT_EQ(err.str(), bar + "\r" + std::string(bar.size() - 1, ' ') + "\r");
}

TEST(Progress, CountsItsHalfSecondAnewForEachWork) {
    std::ostringstream err;
    milliseconds now{0};
    ConsoleDesktop desktop(err, {.drawProgress = true}, [&] { return now; });
    desktop.Progress(1, 100);
    desktop.EndProgress();
    now = milliseconds{600};
    desktop.Progress(1, 100);
    EXPECT_EQ(err.str(), "");
}

TEST(Progress, IsNotDrawnAwayFromATerminalNorWhenQuiet) {
    for (const auto& options :
         {ConsoleDesktop::Options{}, ConsoleDesktop::Options{.drawProgress = true, .quiet = true}}) {
        std::ostringstream err;
        milliseconds now{0};
        ConsoleDesktop desktop(err, options, [&] { return now; });
        desktop.Progress(1, 100);
        now = milliseconds{5000};
        desktop.Progress(50, 100);
        EXPECT_EQ(err.str(), "");
    }
}

}  // namespace
}  // namespace zenvora::cli
