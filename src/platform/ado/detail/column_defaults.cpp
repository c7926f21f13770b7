#include "platform/ado/detail/column_defaults.h"

#include "platform/ado/detail/conversion.h"
#include "platform/fault.h"

namespace zenvora::ado::detail {

std::vector<jet::Value> DefaultsOf(const jet::Table& table, const shell::Clock& clock) {
    const std::vector<jet::ColumnDefinition>& columns = table.Definition().columns;
    std::vector<jet::Value> values(columns.size());
    for (std::size_t column = 0; column < columns.size(); ++column) {
        try {
            values[column] = ConvertValue(table.DefaultOf(column), columns[column], clock);
        } catch (const Fault&) {
            // Another program stored a default that its own column does not take: the record does without it.
            values[column] = jet::Null{};
        }
    }
    return values;
}

}  // namespace zenvora::ado::detail
