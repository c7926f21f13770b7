#include "frame/recent_databooks.h"

#include <utility>

#include "common/ini.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {
namespace {

constexpr std::string_view kSection = "RECENT";
constexpr std::string_view kPrefix = "DATABOOK";

}  // namespace

void RecentDatabooks::Read() {
    paths_ = common::IniList(session_, session_.settings.settingsFile, kSection, kPrefix, -1);
    if (paths_.size() > kMost) paths_.resize(kMost);
}

void RecentDatabooks::Opened(std::string_view path) {
    if (!paths_.empty() && paths_.front() == path) return;
    std::erase_if(paths_, [&](const std::string& known) { return text::EqualsNoCase(known, path); });
    paths_.insert(paths_.begin(), std::string(path));
    if (paths_.size() > kMost) paths_.resize(kMost);
    Store();
}

void RecentDatabooks::Gone(std::string_view path) {
    if (std::erase_if(paths_, [&](const std::string& known) { return text::EqualsNoCase(known, path); }) > 0)
        Store();
}

void RecentDatabooks::Store() {
    std::vector<std::pair<std::string, std::string>> keys;
    for (const std::string& path : paths_) {
        keys.emplace_back(
            std::string(kPrefix) + text::IntegerText(static_cast<std::int64_t>(keys.size()) + 1), path);
    }
    common::ReplaceSection(session_, session_.settings.settingsFile, kSection, keys);
}

}  // namespace zenvora::frame
