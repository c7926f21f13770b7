#include "common/ini.h"

#include <filesystem>
#include <optional>

#include "common/file_helpers.h"
#include "platform/fault.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

// The buffer of the old platform grows by steps; a value that fills the largest one but for two characters
// does not fit.
constexpr std::size_t kBufferStep = 256;
constexpr std::size_t kLargestBuffer = 32767 / kBufferStep * kBufferStep;
constexpr std::size_t kLongestValue = kLargestBuffer - 3;

/// The host path of a usable settings file.
std::optional<std::filesystem::path> UsableFile(const Session& session, std::string_view file) {
    const std::string_view path = text::TrimView(file);
    if (path.empty() || path.find('|') != std::string_view::npos) return std::nullopt;
    try {
        return session.drives.HostPath(path);
    } catch (const Fault&) {
        return std::nullopt;
    }
}

const ini::Document& DocumentOf(Session& session, std::string_view file) {
    if (const auto path = UsableFile(session, file)) return session.profiles.Look(*path);
    static const ini::Document none;
    return none;
}

void Change(Session& session, std::string_view file, const std::function<bool(ini::Document&)>& change) {
    const auto path = UsableFile(session, file);
    // As on the old platform nobody asks whether it was stored.
    if (path) static_cast<void>(session.profiles.Change(*path, change));
}

std::string WithoutTrailingBlanks(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

}  // namespace

std::string ReadIni(Session& session, std::string_view file, std::string_view section, std::string_view key,
                    std::string_view defaultValue) {
    std::optional<std::string> found = DocumentOf(session, file).Find(section, key);
    std::string value = found ? std::move(*found) : WithoutTrailingBlanks(defaultValue);
    if (value.size() > kLongestValue && text::Length(value) > kLongestValue) {
        Place place;
        place.file = file;
        throw Fault(fault::kOverflow,
                    "The setting " + std::string(key) + " in section " + std::string(section) +
                        " is longer than 32,509 characters. Shorten it in the settings file.",
                    std::move(place));
    }
    return value;
}

void WriteIni(Session& session, std::string_view file, std::string_view section, std::string_view key,
              std::string_view value) {
    Change(session, file, [&](ini::Document& document) { return document.Set(section, key, value); });
}

void WriteIni(Session& session, std::string_view file, std::string_view section,
              const std::vector<std::pair<std::string, std::string>>& values) {
    Change(session, file, [&](ini::Document& document) {
        bool changed = false;
        for (const auto& [key, value] : values)
            changed |= document.Set(section, key, value);
        return changed;
    });
}

void DeleteSection(Session& session, std::string_view file, std::string_view section) {
    Change(session, file, [&](ini::Document& document) { return document.DeleteSection(section); });
}

void ReplaceSection(Session& session, std::string_view file, std::string_view section,
                    const std::vector<std::pair<std::string, std::string>>& values) {
    Change(session, file, [&](ini::Document& document) {
        bool changed = document.DeleteSection(section);
        for (const auto& [key, value] : values)
            changed |= document.Set(section, key, value);
        return changed;
    });
}

bool IniFindValue(Session& session, std::string_view file, std::string_view section, std::string_view prefix,
                  std::string_view value) {
    if (!UsableFile(session, file) || !FileExists(session, session.drives, file)) return false;
    const std::string_view wanted = text::TrimView(value);
    bool found = false;
    DocumentOf(session, file).EachNumbered(section, prefix, 0, [&](std::string_view stored) {
        const std::string_view trimmed = text::TrimView(stored);
        if (trimmed.empty()) return false;
        found = trimmed == wanted;
        return !found;
    });
    return found;
}

long IniNextFree(Session& session, std::string_view file, std::string_view section, std::string_view prefix) {
    if (!UsableFile(session, file) || !FileExists(session, session.drives, file)) return 0;
    long number = 0;
    DocumentOf(session, file).EachNumbered(section, prefix, 0, [&](std::string_view stored) {
        ++number;
        return !text::TrimView(stored).empty();
    });
    return number;
}

std::vector<std::string> IniList(Session& session, std::string_view file, std::string_view section,
                                 std::string_view prefix, long count, std::size_t width) {
    std::vector<std::string> values;
    if (count == 0) return values;
    DocumentOf(session, file).EachNumbered(section, prefix, width, [&](std::string_view stored) {
        if (width > 0) stored = text::TrimView(stored);
        if (count < 0 && stored.empty()) return false;
        values.emplace_back(stored);
        return count < 0 || values.size() < static_cast<std::size_t>(count);
    });
    return values;
}

bool IniBool(std::string_view value) {
    return text::TrimView(value) != "0";
}

}  // namespace zenvora::common
