#include "records/bound_record.h"

#include <algorithm>
#include <string>
#include <utility>

#include "common/dates.h"
#include "platform/text/utf8.h"

namespace zenvora::records {
namespace {

bool IsText(jet::ColumnType type) {
    return type == jet::ColumnType::Text || type == jet::ColumnType::Memo;
}

/// The value that a field's text stands for.
jet::Value ValueOf(const std::string& text, jet::ColumnType type) {
    if (IsText(type) || !text.empty()) return text;
    if (type == jet::ColumnType::DateTime) return jet::DateTime{common::kDayZero};
    return 0.0;
}

}  // namespace

BoundRecord::BoundRecord(ado::Adodc& control, std::vector<BoundField> fields)
    : control_(control), fields_(std::move(fields)), changed_(fields_.size()) {}

void BoundRecord::Show() {
    const ado::Recordset& records = control_.Recordset();
    const bool isThere = !records.Bof() && !records.Eof();
    for (const BoundField& field : fields_)
        field.box.SetText(isThere ? jet::ValueText(records.Value(field.column)) : std::string{});
    changed_.assign(fields_.size(), false);
}

bool BoundRecord::IsPending() const {
    return control_.Recordset().Edit() != ado::EditMode::None ||
           std::find(changed_.begin(), changed_.end(), true) != changed_.end();
}

void BoundRecord::FieldChanged(const controls::TextBox& box) {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (&fields_[i].box == &box) changed_[i] = true;
    }
}

void BoundRecord::FieldIsStored(const controls::TextBox& box) {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (&fields_[i].box == &box) changed_[i] = false;
    }
}

void BoundRecord::Write(std::string_view column, std::string_view text) {
    control_.Recordset().SetValue(column, std::string(text));
    Written(column);
}

void BoundRecord::Written(std::string_view column) {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (text::EqualsNoCase(fields_[i].column, column)) changed_[i] = false;
    }
}

void BoundRecord::Update() {
    ado::Recordset& records = control_.Recordset();
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (!changed_[i]) continue;
        const int field = records.FieldIndex(fields_[i].column);
        // Asked by name, the store says itself that there is no such column.
        if (field < 0) static_cast<void>(records.Value(fields_[i].column));
        const jet::ColumnType type = records.Fields()[static_cast<std::size_t>(field)].type;
        records.SetValue(field, ValueOf(fields_[i].box.Text(), type));
    }
    records.Update();
    changed_.assign(fields_.size(), false);
}

void BoundRecord::Cancel() {
    control_.Recordset().CancelUpdate();
    changed_.assign(fields_.size(), false);
}

BoundRecord::Typed BoundRecord::Keep() const {
    Typed typed{{}, changed_};
    for (const BoundField& field : fields_)
        typed.texts.push_back(field.box.Text());
    return typed;
}

void BoundRecord::Restore(const Typed& typed) {
    control_.Recordset().CancelUpdate();
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        fields_[i].box.SetText(typed.texts[i]);
        changed_[i] = changed_[i] || typed.changed[i];
    }
}

controls::TextBox* BoundRecord::BoxOf(std::string_view column) const {
    for (const BoundField& field : fields_) {
        if (text::EqualsNoCase(field.column, column)) return &field.box;
    }
    return nullptr;
}

std::string_view BoundRecord::TitleOf(const controls::TextBox& box) const {
    for (const BoundField& field : fields_) {
        if (&field.box == &box) return field.title;
    }
    return {};
}

}  // namespace zenvora::records
