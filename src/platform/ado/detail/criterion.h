#pragma once

#include <string>
#include <string_view>

namespace zenvora::ado::detail {

/// What Recordset::Find looks for: a field's name and a text.
struct Criterion {
    std::string field;
    std::string text;
};

/// NAME='text'. Two single quotes inside stand for one, and two asterisks for one: searches double both in
/// the key they look for. Fault 3134: any other form.
[[nodiscard]] Criterion ParseCriterion(std::string_view criterion);

}  // namespace zenvora::ado::detail
