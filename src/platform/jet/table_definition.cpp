#include "platform/jet/table_definition.h"

#include "platform/text/utf8.h"

namespace zenvora::jet {

int ColumnDefinition::CharacterLimit() const noexcept {
    if (type != ColumnType::Text) return 0;
    return codePage == 0 ? byteLength / 2 : byteLength;
}

std::optional<std::size_t> TableDefinition::FindColumn(std::string_view columnName) const {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (text::EqualsNoCase(columns[i].name, columnName)) return i;
    }
    return std::nullopt;
}

std::optional<std::size_t> TableDefinition::PrimaryKey() const {
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        if (indexes[i].primaryKey) return i;
    }
    return std::nullopt;
}

}  // namespace zenvora::jet
