// Statements, as the parser of each kind takes them.

#include <string_view>

#include "databook_bytes.h"
#include "platform/ado/detail/statement.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    const std::string_view statement{reinterpret_cast<const char*>(data), size};
    fuzz::Tolerate([&] { static_cast<void>(ado::detail::ParseSelect(statement)); });
    fuzz::Tolerate([&] { static_cast<void>(ado::detail::ParseChange(statement)); });
    return 0;
}
