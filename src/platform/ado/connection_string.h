#pragma once

#include <string>
#include <string_view>

namespace zenvora::ado {

/// The parts of a connection string that the store looks at: "Data Source" and "Mode", found without regard
/// to case.
struct ConnectionString {
    std::string dataSource;  ///< as it stands in the text
    bool readWrite = true;   ///< false for "Mode=Read"
};
[[nodiscard]] ConnectionString ParseConnectionString(std::string_view text);

}  // namespace zenvora::ado
