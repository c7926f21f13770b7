#include "platform/ado/connection_string.h"

#include <array>
#include <optional>

#include "platform/text/utf8.h"

namespace zenvora::ado {
namespace {

/// The words that may begin a part. Host paths may hold ";" and "=", so that a ";" ends a value only before
/// one of these or at the end.
constexpr std::array<std::string_view, 7> kKeywords{
    "Provider", "Data Source", "Mode", "Persist Security Info", "User ID", "Password", "Jet OLEDB"};

/// The keyword that begins the text, behind blanks and before "=" (":" after "Jet OLEDB").
std::optional<std::string_view> KeywordAt(std::string_view text) {
    while (text.starts_with(' '))
        text.remove_prefix(1);
    for (const std::string_view keyword : kKeywords) {
        if (text.size() <= keyword.size() || !text::EqualsNoCase(text.substr(0, keyword.size()), keyword))
            continue;
        std::string_view rest = text.substr(keyword.size());
        while (rest.starts_with(' '))
            rest.remove_prefix(1);
        if (rest.starts_with(keyword == "Jet OLEDB" ? ':' : '=')) return keyword;
    }
    return std::nullopt;
}

bool AsksForWriting(std::string_view mode) {
    while (!mode.empty()) {
        const std::size_t bar = mode.find('|');
        const std::string_view word = text::TrimView(mode.substr(0, bar));
        if (text::EqualsNoCase(word, "Read")) return false;
        mode = bar == std::string_view::npos ? std::string_view{} : mode.substr(bar + 1);
    }
    return true;
}

}  // namespace

ConnectionString ParseConnectionString(std::string_view text) {
    ConnectionString parsed;
    while (!text.empty()) {
        std::size_t end = text.find(';');
        while (end != std::string_view::npos && !text::TrimView(text.substr(end + 1)).empty() &&
               !KeywordAt(text.substr(end + 1))) {
            end = text.find(';', end + 1);
        }
        const std::string_view part = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        const std::optional<std::string_view> keyword = KeywordAt(part);
        const std::size_t equals = part.find('=');
        if (!keyword || equals == std::string_view::npos) continue;
        const std::string_view value = text::TrimView(part.substr(equals + 1));
        if (*keyword == "Data Source") parsed.dataSource = value;
        if (*keyword == "Mode") parsed.readWrite = AsksForWriting(value);
    }
    return parsed;
}

}  // namespace zenvora::ado
