#pragma once

#include <string_view>

namespace zenvora::ado::detail {

/// Equal as the key index sees it (jet::CompareGeneral gives 0): without regard to case and to blanks at the
/// end. Find, WHERE and the key thus agree on which records are the same.
[[nodiscard]] bool SameText(std::string_view a, std::string_view b);

}  // namespace zenvora::ado::detail
