#include "records/date_entry.h"

#include <optional>
#include <string>

#include "common/dates.h"
#include "platform/text/utf8.h"
#include "records/frm_pick_date.h"

namespace zenvora::records {
namespace {

/// The date that the calendar opens on.
text::Date StartingDate(const std::string& text, const shell::Clock& clock) {
    if (!common::IsDate(text, clock) || common::IsDayZero(text, clock)) return clock.Today();
    return common::ConvDate(std::string_view{text}, clock);
}

/// The text in the form M/D/YYYY; one that is no date as it is.
std::string Normalized(const std::string& text, const shell::Clock& clock) {
    const std::optional<text::Date> date = text::TextToDate(text::TrimView(text), clock.Year());
    return date ? common::NormalizeDateText(text::FormatDate(*date, "mm/dd/yyyy"), clock) : text;
}

}  // namespace

void GetCalandarDate(const Application& application, controls::TextBox& field, std::string_view title) {
    common::Session& session = application.session;
    session.lastProcedure = "GetCalandarDate";
    const std::string oldText = field.Text();
    if (!field.Enabled()) return;
    frmPickDate dialog{session};
    dialog.Load();
    dialog.SetCaption(std::string(title));
    dialog.calCalendar.SetValue(StartingDate(oldText, session.clock));
    dialog.Show(controls::Modality::Modal);

    const text::Date chosen = dialog.calCalendar.Value();
    if (!common::IsValidDateEntry(text::DateText(chosen), session.clock)) {
        field.SetFocus();
        field.SetText(Normalized(oldText, session.clock));
    } else if (field.Enabled()) {
        field.SetText(common::NormalizeDateText(text::FormatDate(chosen, "mm/dd/yyyy"), session.clock));
        field.SetFocus();
    }
    session.forms.UnloadFormByName("frmPickDate");
}

}  // namespace zenvora::records
