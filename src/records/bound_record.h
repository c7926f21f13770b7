#pragma once

#include <string_view>
#include <vector>

#include "platform/ado/adodc.h"
#include "platform/controls/text_box.h"
#include "platform/fault.h"

namespace zenvora::records {

/// A text box and the column that it shows.
struct BoundField {
    controls::TextBox& box;
    std::string_view column;
    std::string_view title;  ///< what a message calls it: "Sale Date"
};

/// Binds text boxes to the columns of a data control's current record: shows the record, and hands the texts
/// that have changed to it when it is updated.
///
/// A missing date or price shows as the empty text or its stored form, and the empty text is stored as day
/// zero or as 0. What is written straight to a column takes the place of what its field holds, until the
/// field changes again.
class BoundRecord {
  public:
    BoundRecord(ado::Adodc& control, std::vector<BoundField> fields);

    /// Reads the columns of the current record into the fields, in the order given; without a record they
    /// become empty. Nothing is pending then. Fault 3265: there is no such column.
    void Show();
    /// Whether anything has changed since the record was shown or updated.
    [[nodiscard]] bool IsPending() const;
    /// A field's text has changed.
    void FieldChanged(const controls::TextBox& box);
    /// A changed field needs storing no more: what it shows is stored.
    void FieldIsStored(const controls::TextBox& box);

    /// Writes a text straight to a column. Faults: as ado::Recordset::SetValue.
    void Write(std::string_view column, std::string_view text);
    /// To be called when a column was written straight by other means.
    void Written(std::string_view column);
    /// Hands over the changed texts and updates the record. Faults: 13, 3163, 6 and those of the store; the
    /// changes are pending still then.
    void Update();
    /// Gives up what is pending in the record; the fields keep their texts.
    void Cancel();

    /// What the fields hold, and which of them have changed.
    struct Typed {
        std::vector<std::string> texts;
        std::vector<bool> changed;
    };
    [[nodiscard]] Typed Keep() const;
    /// Gives up what is pending in the record, and brings back what was typed, to be stored yet.
    void Restore(const Typed& typed);

    /// The field that shows a column, null when none does; and what a message calls a field.
    [[nodiscard]] controls::TextBox* BoxOf(std::string_view column) const;
    [[nodiscard]] std::string_view TitleOf(const controls::TextBox& box) const;

  private:
    ado::Adodc& control_;
    std::vector<BoundField> fields_;
    std::vector<bool> changed_;
};

}  // namespace zenvora::records
