#include "records/city_list.h"

#include <utility>

#include "common/file_helpers.h"
#include "common/ini.h"
#include "platform/text/utf8.h"

namespace zenvora::records {
namespace {

constexpr std::string_view kSection = "CITIES";
constexpr std::string_view kPrefix = "CITY";

std::vector<std::string> PlacesInFile(common::Session& session) {
    return common::IniList(session, session.settings.settingsFile, kSection, kPrefix, -1);
}

}  // namespace

void CityList::Read() {
    places_ = PlacesInFile(session_);
    stored_ = places_.size();
    for (const std::string& place : places_)
        known_.insert(text::Trim(place));
    isRead_ = true;
}

bool CityList::Add(std::string_view place) {
    if (!common::FileExists(session_, session_.drives, session_.settings.settingsFile)) return false;
    if (!isRead_) Read();
    if (!known_.insert(text::Trim(place)).second) return false;
    places_.emplace_back(place);
    return true;
}

void CityList::Store() {
    if (stored_ == places_.size()) return;
    // Another program may have added places meanwhile: theirs keep their numbers.
    const std::vector<std::string> inFile = PlacesInFile(session_);
    std::unordered_set<std::string> there;
    for (const std::string& place : inFile)
        there.insert(text::Trim(place));
    std::size_t number = inFile.size();
    std::vector<std::pair<std::string, std::string>> values;
    for (; stored_ < places_.size(); ++stored_) {
        const std::string& place = places_[stored_];
        if (!there.contains(text::Trim(place)))
            values.emplace_back(std::string(kPrefix) + std::to_string(++number), place);
    }
    common::WriteIni(session_, session_.settings.settingsFile, kSection, values);
}

}  // namespace zenvora::records
