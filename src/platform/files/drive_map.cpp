#include "platform/files/drive_map.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

#include "platform/fault.h"
#include "platform/text/utf8.h"

namespace zenvora::files {
namespace {

/// The components of a text path behind its drive, "." and ".." worked out.
std::vector<std::string_view> Components(std::string_view path) {
    std::vector<std::string_view> parts;
    while (!path.empty()) {
        const std::size_t end = path.find_first_of("\\/");
        const std::string_view part = path.substr(0, end);
        path = end == std::string_view::npos ? std::string_view{} : path.substr(end + 1);
        if (part.empty() || part == ".") continue;
        if (part != "..") {
            parts.push_back(part);
        } else if (!parts.empty()) {
            parts.pop_back();
        }
    }
    return parts;
}

/// The entry of a folder that the name means; empty when there is none.
std::filesystem::path FindEntry(const std::filesystem::path& folder, std::string_view name) {
    std::error_code error;
    std::filesystem::path exact = folder / name;
    if (std::filesystem::symlink_status(exact, error).type() != std::filesystem::file_type::not_found)
        return exact;
    std::string best;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string candidate = entry->path().filename().string();
        if (text::EqualsNoCase(candidate, name) && (best.empty() || candidate < best)) best = candidate;
    }
    return best.empty() ? std::filesystem::path() : folder / best;
}

std::string_view Environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

}  // namespace

DriveMap::DriveMap(std::filesystem::path driveC) : driveC_(std::move(driveC)) {}

DriveMap DriveMap::Nowhere() {
    return DriveMap("/dev/null");  // a path below what is no folder: absent, and refused to every write
}

std::filesystem::path DriveMap::HostPath(std::string_view textPath) const {
    std::filesystem::path host = driveC_;
    if (textPath.size() >= 2 && textPath[1] == ':') {
        const char drive = textPath[0];
        if (drive == 'Z' || drive == 'z') {
            host = "/";
        } else if (drive != 'C' && drive != 'c') {
            Place place;
            place.file = textPath;
            throw Fault(fault::kPathNotFound,
                        "There is no drive " + std::string(textPath.substr(0, 2)) + " for \"" +
                            std::string(textPath) +
                            "\". Use C: for the program's own files and Z: for all others.",
                        std::move(place));
        }
        textPath.remove_prefix(2);
    }
    bool exists = true;
    for (const std::string_view part : Components(textPath)) {
        std::filesystem::path found;
        if (exists) found = FindEntry(host, part);
        exists = !found.empty();
        host = exists ? found : host / part;
    }
    return host;
}

std::string DriveMap::TextPath(const std::filesystem::path& hostPath) {
    std::string path = std::filesystem::absolute(hostPath).lexically_normal().string();
    if (path.find('\\') != std::string::npos) {
        Place place;
        place.file = path;
        throw Fault(fault::kPathAccess,
                    "\"" + path + "\" has a backslash in a name, which no drive path can hold. Rename it.",
                    std::move(place));
    }
    return "Z:" + text::ReplaceAll(path, "/", "\\");
}

std::filesystem::path DriveCFolder(std::string_view zenvoraHome, std::string_view xdgDataHome,
                                   std::string_view home) {
    if (!zenvoraHome.empty()) return std::filesystem::absolute(zenvoraHome).lexically_normal();
    const std::filesystem::path data = xdgDataHome;
    if (data.is_absolute()) return data / "zenvora";
    return std::filesystem::absolute(std::filesystem::path(home) / ".local" / "share" / "zenvora");
}

std::filesystem::path DriveCFolder() {
    std::string home(Environment("HOME"));
    if (home.empty()) {
        // A service may run without HOME; the user still has one.
        const passwd* user =
            ::getpwuid(::getuid());  // NOLINT(concurrency-mt-unsafe): at the start, one thread
        if (user != nullptr && user->pw_dir != nullptr) home = user->pw_dir;
    }
    return DriveCFolder(Environment("ZENVORA_HOME"), Environment("XDG_DATA_HOME"), home);
}

}  // namespace zenvora::files
