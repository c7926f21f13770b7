#include "import/load_preview.h"

#include "platform/text/number.h"

namespace zenvora::importing {

std::vector<controls::GridColumn> LoadPreview::Columns(const std::vector<DestinationField>& fields) {
    constexpr int kWidthOfRow = 600;
    constexpr int kWidthOfReason = 5000;
    std::vector<controls::GridColumn> columns;
    columns.push_back({.caption = "Row", .width = kWidthOfRow, .rightAligned = true});
    for (const DestinationField& field : fields)
        columns.push_back(
            {.caption = field.caption, .rightAligned = field.type == FieldType::Number, .fitsValues = true});
    columns.push_back({.caption = "Not Written Because", .width = kWidthOfReason});
    return columns;
}

std::optional<std::string> LoadPreview::Value(int row, int column) const {
    if (row < 0 || row >= RowCount() || column < 0) return std::nullopt;
    const PreviewRow& shown = rows_[static_cast<std::size_t>(row)];
    if (column == 0) return text::IntegerText(shown.row);
    const auto field = static_cast<std::size_t>(column) - 1;
    if (field < shown.values.size()) return shown.values[field];
    return field == shown.values.size() ? std::optional(shown.refusal) : std::nullopt;
}

}  // namespace zenvora::importing
