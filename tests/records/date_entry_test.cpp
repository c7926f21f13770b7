#include "records/date_entry.h"

#include <functional>
#include <string>

#include "records/editor_fixture.h"
#include "records/frm_pick_date.h"

namespace zenvora::records {
namespace {

class DateEntry : public EditorTest {
  protected:
    /// Opens the calendar on a field of the main form.
    void Pick(const std::string& text, const std::function<void(frmPickDate&)>& user) {
        main.txtBaseDate.SetText(text);
        desktop.ExpectForm("frmPickDate", [&](controls::Form& form) {
            opened_ = dynamic_cast<frmPickDate&>(form).calCalendar.Value();
            user(dynamic_cast<frmPickDate&>(form));
        });
        GetCalandarDate(application, main.txtBaseDate, "Effective Appraisal Date:");
    }
    [[nodiscard]] const std::string& Field() { return main.txtBaseDate.Text(); }

    static text::Date On(int year, int month, int day) { return text::DayNumber(year, month, day).value(); }
    /// The value after one press, from a start.
    text::Date After(text::Date start, controls::CommandButton frmPickDate::*button) {
        frmPickDate dialog{session};
        dialog.Load();
        dialog.calCalendar.SetValue(start);
        (dialog.*button).Click();
        const text::Date value = dialog.calCalendar.Value();
        dialog.Unload();
        return value;
    }

    text::Date opened_ = 0;
};

void Cancel(frmPickDate& dialog) {
    dialog.cmdCancel.Click();
}

TEST_F(DateEntry, OpensOnTheDateOfTheField) {
    Pick("5/14/2009", Cancel);
    EXPECT_EQ(opened_, On(2009, 5, 14));
}

TEST_F(DateEntry, OpensOnTodayForDayZeroNothingAndWhatIsNoDate) {
    for (const char* text : {"01/01/1900", "1/1/1900", "", "   ", "abc", "1/5", "1/5/2999"}) {
        Pick(text, Cancel);
        EXPECT_EQ(opened_, kToday) << text;
    }
}

TEST_F(DateEntry, HasTheTitleAndTheFocusOnTheCalendar) {
    Pick("", [](frmPickDate& dialog) {
        EXPECT_EQ(dialog.Caption(), "Effective Appraisal Date:");
        EXPECT_TRUE(dialog.calCalendar.HasFocus());
        EXPECT_FALSE(dialog.cmdDayZero.Visible());
        dialog.cmdCancel.Click();
    });
}

TEST_F(DateEntry, OkWritesMonthDayYearWithoutZeroesAndGivesTheFieldTheFocus) {
    main.txtCentralKey.SetFocus();
    Pick("1/5/2009", [](frmPickDate& dialog) {
        dialog.calCalendar.SetValue(On(2009, 12, 5));
        dialog.cmdOK.Click();
    });
    EXPECT_EQ(Field(), "12/5/2009");
    EXPECT_TRUE(main.txtBaseDate.HasFocus());
    EXPECT_TRUE(session.forms.Loaded().size() == 1) << "the calendar is unloaded";
}

TEST_F(DateEntry, CancelBringsTheOldDateBackWithoutZeroes) {
    Pick("01/05/2009", Cancel);
    EXPECT_EQ(Field(), "1/5/2009");
    EXPECT_TRUE(main.txtBaseDate.HasFocus());
}

TEST_F(DateEntry, CancelLeavesAnEmptyFieldEmptyAndWhatIsNoDateAsItIs) {
    Pick("", Cancel);
    EXPECT_EQ(Field(), "");
    Pick("abc", Cancel);
    EXPECT_EQ(Field(), "abc");
}

TEST_F(DateEntry, TheCloseBoxIsACancel) {
    Pick("01/05/2009", [](frmPickDate& dialog) {
        dialog.calCalendar.SetValue(On(2010, 1, 1));
        dialog.Close();
        EXPECT_FALSE(dialog.Visible());
    });
    EXPECT_EQ(Field(), "1/5/2009");
}

TEST_F(DateEntry, ADisabledFieldOpensNothing) {
    main.txtBaseDate.SetEnabled(false);
    GetCalandarDate(application, main.txtBaseDate, "x");
    EXPECT_TRUE(desktop.shown.empty());
    EXPECT_EQ(session.lastProcedure, "GetCalandarDate");
}

TEST_F(DateEntry, ADateOfAYearToComeIsWrittenAsDayZero) {
    Pick("", [](frmPickDate& dialog) {
        dialog.calCalendar.SetValue(On(2011, 1, 1));
        dialog.cmdOK.Click();
    });
    EXPECT_EQ(Field(), "01/01/1900");
}

TEST_F(DateEntry, TheButtonsMoveTheDate) {
    const text::Date start = On(2010, 5, 14);
    EXPECT_EQ(After(start, &frmPickDate::cmdYesterDay), start - 1);
    EXPECT_EQ(After(start, &frmPickDate::cmdTomorrow), start + 1);
    EXPECT_EQ(After(start, &frmPickDate::cmdLastWeek), start - 7);
    EXPECT_EQ(After(start, &frmPickDate::cmdNextWeek), start + 7);
    EXPECT_EQ(After(start, &frmPickDate::cmdLastMonth), On(2010, 4, 14));
    EXPECT_EQ(After(start, &frmPickDate::cmdNextMonth), On(2010, 6, 14));
    EXPECT_EQ(After(start, &frmPickDate::cmdToday), kToday);
    EXPECT_EQ(After(On(2010, 1, 3), &frmPickDate::cmdLastWeek), On(2009, 12, 27))
        << "over the turn of a year";
    EXPECT_EQ(After(On(2010, 12, 31), &frmPickDate::cmdTomorrow), On(2011, 1, 1));
}

TEST_F(DateEntry, MonthsGoOverTheTurnOfAYear) {
    EXPECT_EQ(After(On(2010, 1, 31), &frmPickDate::cmdLastMonth), On(2009, 12, 31));
    EXPECT_EQ(After(On(2010, 12, 31), &frmPickDate::cmdNextMonth), On(2011, 1, 31));
}

TEST_F(DateEntry, AMonthWithoutTheDayIsTakenAsTwentyEightDays) {
    EXPECT_EQ(After(On(2010, 1, 31), &frmPickDate::cmdNextMonth), On(2010, 2, 28));
    EXPECT_EQ(After(On(2012, 1, 31), &frmPickDate::cmdNextMonth), On(2012, 2, 28)) << "in any year";
    EXPECT_EQ(After(On(2010, 3, 31), &frmPickDate::cmdLastMonth), On(2010, 3, 3));
    EXPECT_EQ(After(On(2010, 5, 31), &frmPickDate::cmdNextMonth), On(2010, 6, 28));
}

TEST_F(DateEntry, BeyondTheLastDateTheCalendarStaysAndSaysSo) {
    desktop.ExpectAny();
    EXPECT_EQ(After(On(9999, 12, 31), &frmPickDate::cmdTomorrow), On(9999, 12, 31));
}

TEST_F(DateEntry, WithQuickExitEachMovingButtonAcceptsAndAClickInTheCalendarDoesNot) {
    using Button = controls::CommandButton frmPickDate::*;
    for (const Button button : {&frmPickDate::cmdLastMonth, &frmPickDate::cmdLastWeek,
                                &frmPickDate::cmdYesterDay, &frmPickDate::cmdToday, &frmPickDate::cmdTomorrow,
                                &frmPickDate::cmdNextWeek, &frmPickDate::cmdNextMonth}) {
        Pick("5/14/2010", [&](frmPickDate& dialog) {
            EXPECT_EQ(dialog.ckbQuickExit.Value(), controls::CheckBox::kUnchecked) << "in every run";
            dialog.ckbQuickExit.Toggle();
            dialog.calCalendar.ClickDate(On(2010, 5, 18));
            EXPECT_TRUE(dialog.Visible());
            (dialog.*button).Click();
            EXPECT_FALSE(dialog.Visible());
        });
        EXPECT_NE(Field(), "5/14/2010");
        EXPECT_NE(Field(), "5/18/2010");
    }
}

TEST_F(DateEntry, AClickChoosesAndGoesToOkAndADoubleClickAccepts) {
    Pick("5/14/2010", [](frmPickDate& dialog) {
        dialog.calCalendar.ClickDate(On(2010, 5, 20));
        EXPECT_TRUE(dialog.cmdOK.HasFocus());
        EXPECT_TRUE(dialog.Visible());
        dialog.calCalendar.DblClickDate(On(2010, 5, 21));
        EXPECT_FALSE(dialog.Visible());
    });
    EXPECT_EQ(Field(), "5/21/2010");
}

TEST_F(DateEntry, OfTheEditorTellTheLowerBoundAndGoOnToTheNextField) {
    struct Picture {
        controls::Image frmEdit::*image;
        const char* field;
        const char* next;
        const char* title;
        const char* titleWithBound;
    };
    const Picture pictures[] = {
        {&frmEdit::imaOrigListDate, "txtOrigListDate", "txtOrigListPrice",
         "Original Listing Date:", "Original Listing Date:"},
        {&frmEdit::imaCurrListDate, "txtCurrListDate", "txtCurrListPrice",
         "Current Listing Date:", "Current Listing Date must be on or after 3/15/2010"},
        {&frmEdit::imaContractDate, "txtContractDate", "txtListCancelDate",
         "Contract Date:", "Contract Date must be on or after 3/15/2010"},
        {&frmEdit::imaListCancelDate, "txtListCancelDate", "txtSaleDate",
         "Listing Cancel Date:", "Listing Cancel Date must be on or after 3/15/2010"},
        {&frmEdit::imaSaleDate, "txtSaleDate", "txtSellingPr",
         "Sale Date:", "Sale Date must be on or after 3/15/2010"},
    };
    Store("12 OAK ST");
    Edit("12 OAK ST", [&](User user) {
        for (const Picture& picture : pictures) {
            for (const char* listed : {"3/15/10", "3/15/2010"}) {
                const bool isBound = std::string_view(listed) == "3/15/2010";
                user.Edit().txtOrigListDate.SetText(listed);
                desktop.ExpectForm("frmPickDate", [&](controls::Form& form) {
                    EXPECT_EQ(form.Caption(), isBound ? picture.titleWithBound : picture.title);
                    auto& dialog = dynamic_cast<frmPickDate&>(form);
                    dialog.calCalendar.SetValue(On(2010, 6, 1));
                    dialog.cmdOK.Click();
                });
                (user.Edit().*picture.image).Click();
                EXPECT_EQ(user.Text(picture.field), "6/1/2010");
                EXPECT_EQ(user.Focus(), picture.next);
            }
        }
        desktop.ExpectForm("frmPickDate", [&](controls::Form& form) {
            EXPECT_EQ(form.Caption(), "Effective Appraisal Date:");
            auto& dialog = dynamic_cast<frmPickDate&>(form);
            dialog.calCalendar.SetValue(On(2010, 6, 15));
            dialog.cmdOK.Click();
        });
        user.Press("imaBaseDateCal");
        EXPECT_EQ(user.Text("txtBaseDate"), "6/15/2010");
        EXPECT_EQ(user.Focus(), "txtBaseDate");
        EXPECT_EQ(main.EffectiveDate, On(2010, 6, 15));
        user.Press("cmdCancel");
    });
}

}  // namespace
}  // namespace zenvora::records
