// Settings files: what is read and not changed keeps its bytes, and what is stored is read back.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "databook_bytes.h"
#include "platform/ini/document.h"
#include "platform/text/utf8.h"

namespace {

void Demand(bool kept) {
    if (!kept) std::abort();
}

/// The input up to a zero byte, which is taken off it.
std::string_view Piece(std::string_view& input) {
    const std::string_view piece = input.substr(0, input.find('\0'));
    input.remove_prefix(std::min(piece.size() + 1, input.size()));
    return piece;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::string_view section = Piece(input);
    const std::string_view key = Piece(input);
    ini::Document document(input);
    const std::string before = document.Bytes();
    // Unpaired halves of UTF-16 cannot be kept in any text.
    if (!input.starts_with("\xFF\xFE")) Demand(before == input);

    if (!text::IsUtf8(section) || !text::IsUtf8(key)) return 0;
    const bool changed = document.Set(section, key, "value");
    Demand(changed == (document.Bytes() != before));
    if (changed) {
        Demand(document.Find(section, key) == "value");
        Demand(ini::Document(document.Bytes()).Find(section, key) == "value");
    }
    long steps = 0;
    document.EachNumbered(section, key, 2,
                          [&](std::string_view value) { return !value.empty() && ++steps < 1000; });
    document.DeleteSection(section);
    Demand(!document.Find(section, key));
    Demand(!ini::Document(document.Bytes()).Find(section, key));
    return 0;
}
