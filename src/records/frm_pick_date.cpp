#include "records/frm_pick_date.h"

#include <functional>
#include <string>

#include "common/dates.h"
#include "common/error_rule.h"
#include "common/placement.h"
#include "common/tags.h"
#include "platform/fault.h"
#include "records/editor_message.h"

namespace zenvora::records {
namespace {

constexpr int kJanuary = 1;
constexpr int kDecember = 12;
constexpr int kDaysOfShortMonth = 28;

}  // namespace

frmPickDate::frmPickDate(common::Session& session)
    : Form(session.forms, "frmPickDate", "Days on Market Calculator"), session_(session) {
    LayOut();
    SetRules();
}

void frmPickDate::LayOut() {
    constexpr float kWidth = 11100;  // twips
    constexpr float kHeight = 8310;
    SetPlacement({0, 0, kWidth, kHeight});
    cmdLastMonth.SetCaption("Prev &Month");
    cmdLastWeek.SetCaption("Prev &Week");
    cmdYesterDay.SetCaption("Prev &Day");
    cmdToday.SetCaption("Tod&ay");
    cmdTomorrow.SetCaption("Next Da&y");
    cmdNextWeek.SetCaption("Next Wee&k");
    cmdNextMonth.SetCaption("Next Mont&h");
    ckbQuickExit.SetCaption("Quick Exit");
    ckbQuickExit.SetTag("<WINDIR>ATLAS.INI[PREFERENCES]QUICKEXIT|0");
    cmdCancel.SetCaption("&Cancel");
    cmdOK.SetCaption("&OK");
    cmdDayZero.SetCaption("&1/1/1900");
    cmdDayZero.SetVisible(false);
    cmdOK.SetDefault(true);
    cmdCancel.SetCancel(true);
    Add(calCalendar);
    for (controls::CommandButton* button :
         {&cmdLastMonth, &cmdLastWeek, &cmdYesterDay, &cmdToday, &cmdTomorrow, &cmdNextWeek, &cmdNextMonth})
        Add(*button);
    Add(ckbQuickExit);
    Add(cmdCancel);
    Add(cmdOK);
    Add(cmdDayZero);
}

void frmPickDate::SetRules() {
    const auto days = [this](int count) {
        return [this, count] { calCalendar.SetValue(calCalendar.Value() + count); };
    };
    const auto moves = [this](controls::CommandButton& button, std::string_view name,
                              const std::function<void()>& step) {
        button.OnClick([this, name, step] { Move(name, step); });
    };
    moves(cmdToday, "cmdToday_Click", [this] {
        const std::string today = text::DateText(session_.clock.Today());
        calCalendar.SetValue(common::ConvDate(
            std::string_view{common::NormalizeDateText(today, session_.clock)}, session_.clock));
    });
    moves(cmdYesterDay, "cmdYesterDay_Click", days(-1));
    moves(cmdTomorrow, "cmdTomorrow_Click", days(1));
    moves(cmdNextWeek, "cmdNextWeek_Click", days(7));
    // The name in the message of a disk fault; it was always spelled so.
    moves(cmdLastWeek, "CmdLastSeek_Click", [this] { calCalendar.MoveWeeks(-1); });
    moves(cmdLastMonth, "cmdlastmonth_Click", [this] { MoveMonths(-1); });
    moves(cmdNextMonth, "cmdNextMonth_Click", [this] { MoveMonths(1); });
    moves(cmdDayZero, "cmdDayZero_Click", [this] { calCalendar.SetValue(common::kDayZero); });

    cmdOK.OnClick([this] { Hide(); });
    cmdCancel.OnClick([this] {
        calCalendar.SetValue(common::kDayZero);
        Hide();
    });
    // One click chooses, Enter accepts.
    calCalendar.OnDateClick([this] { cmdOK.SetFocus(); });
    calCalendar.OnDateDblClick([this] { cmdOK.Click(); });
}

void frmPickDate::Move(std::string_view name, const std::function<void()>& step) {
    try {
        if (common::WithErrorRule(session_, name, step) == common::StatementEnd::LeaveProcedure) return;
    } catch (const Fault& fault) {
        return TellFault(session_, "The calendar stays where it is.", {}, fault, {});
    }
    CheckExit();
}

void frmPickDate::MoveMonths(int months) {
    const text::Date from = calCalendar.Value();
    const int last = months < 0 ? kJanuary : kDecember;
    const int first = months < 0 ? kDecember : kJanuary;
    try {
        if (calCalendar.Month() == last) {
            calCalendar.SetYear(calCalendar.Year() + months);
            calCalendar.SetMonth(first);
        } else {
            calCalendar.SetMonth(calCalendar.Month() + months);
        }
    } catch (const Fault& fault) {
        // That month has no such day.
        if (fault.number != fault::kInvalidProperty) throw;
        calCalendar.SetValue(from + months * kDaysOfShortMonth);
    }
}

void frmPickDate::CheckExit() {
    if (ckbQuickExit.Value() == controls::CheckBox::kChecked) cmdOK.Click();
}

void frmPickDate::OnLoad() {
    common::ResetFormPosition(*this);
    common::TagReadCheck(session_, ckbQuickExit);
}

void frmPickDate::OnActivate() {
    calCalendar.SetFocus();
}

void frmPickDate::OnQueryUnload(bool& cancel) {
    cancel = true;
    cmdCancel.Click();
}

void frmPickDate::OnUnload() {
    common::TagWriteCheck(session_, ckbQuickExit);
    common::SaveWindowPlacement(session_, *this);
}

}  // namespace zenvora::records
