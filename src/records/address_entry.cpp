#include "records/address_entry.h"

#include "common/primitives.h"
#include "common/text_helpers.h"
#include "databook/selection.h"
#include "platform/text/utf8.h"
#include "records/field_advice.h"

namespace zenvora::records {
namespace {

constexpr controls::Color kWarningText = 0xFF0000;
constexpr float kWarningSize = 16;

}  // namespace

void AddressEntry::StreetLeft() {
    const std::string key = common::UpTrim(fields_.txtStreet.Text());
    if (key.empty()) return fields_.txtStreet.SetText(currentKey_);
    if (key == common::UpTrim(currentKey_)) return;
    if (!records_.HasRecordset()) records_.Refresh();
    ado::Recordset& records = records_.Recordset();
    records.MoveFirst();
    records.Find(databook::KeyCriterion(key));
    if (records.Eof()) {
        currentKey_ = key;
        return;
    }
    controls::RichRun warning;
    warning.text = "Please enter a unique street address. " + key + " already exists in the datafile.";
    warning.bold = true;
    warning.size = kWarningSize;
    warning.color = kWarningText;
    controls::RichParagraph paragraph;
    paragraph.runs = {warning};
    rtxtInfo_.SetParagraphs({paragraph});
}

void AddressEntry::StateChanged() {
    controls::TextBox& state = fields_.txtState;
    if (!state.Text().empty()) {
        const bool good = common::IsValidState(state.Text());
        state.SetBackColor(good ? kGood : kError);
        state.SetToolTipText(good ? "" : "Invalid state abbreviation.");
    }
    PlaceChanged();
}

void AddressEntry::PlaceChanged() {
    if (text::Trim(fields_.txtCity.Text()).empty()) return;
    if (common::IsValidState(common::UpTrim(fields_.txtState.Text()))) AddCityToCombo();
}

void AddressEntry::AddCityToCombo() {
    const std::string line = text::Trim(fields_.txtCity.Text()) + ", " +
                             common::UpTrim(fields_.txtState.Text()) + "  " +
                             text::Trim(fields_.txtZip.Text());
    if (!cities_.Add(line)) return;
    // The list only grows: once it is filled, its new end is all that it lacks.
    const std::vector<std::string>& places = cities_.Places();
    if (fields_.cboCity.ListCount() + 1 == static_cast<int>(places.size())) {
        fields_.cboCity.AddItem(places.back());
    } else {
        fields_.cboCity.Clear();
        fields_.cboCity.AddItems(places);
    }
}

void AddressEntry::CityPicked() {
    const std::string place = fields_.cboCity.Text();
    if (place.empty()) return;
    const auto left = [](std::string_view text, std::string_view delimiter) {
        return text::Trim(common::SplitFirst(text, "L", delimiter));
    };
    const auto right = [](std::string_view text, std::string_view delimiter) {
        return text::Trim(common::SplitFirst(text, "R", delimiter));
    };
    fields_.txtCity.SetText(left(place, ","));
    const std::string rest = right(place, ",");
    fields_.txtState.SetText(rest.empty() ? "" : left(rest, " "));
    fields_.txtZip.SetText(rest.empty() ? "" : right(rest, " "));
}

}  // namespace zenvora::records
