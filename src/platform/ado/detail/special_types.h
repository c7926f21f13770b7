#pragma once

#include <optional>
#include <string_view>

#include "platform/jet/value.h"

/// Column types that only files of other programs have: decimals, identifiers, bytes.
namespace zenvora::ado::detail {

/// The number as a decimal of `precision` digits, `scale` of them behind the point, rounded half away from
/// zero. Nothing when its digits do not fit.
[[nodiscard]] std::optional<jet::Numeric> DecimalOf(double value, int precision, int scale);
[[nodiscard]] double DoubleOf(const jet::Numeric& decimal);

/// "{00112233-4455-6677-8899-AABBCCDDEEFF}", braces or not.
[[nodiscard]] std::optional<jet::Guid> GuidOf(std::string_view text);

/// Does a column of this type hold bytes?
[[nodiscard]] bool TakesBytes(jet::ColumnType type) noexcept;

}  // namespace zenvora::ado::detail
