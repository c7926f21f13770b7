#ifndef _WIN32

#include "platform/link/krn_process.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/text/utf8.h"

namespace zenvora::link {
namespace {

namespace fs = std::filesystem;

/// A small file as a whole; empty when it cannot be read. The size of what lies in /proc is not known before.
std::string Content(const fs::path& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    // A process that ends between opening and reading fails the reading: an iterator would throw then.
    content << file.rdbuf();
    return content.str();
}

std::string ShortName(const fs::path& process) {
    std::string name = Content(process / "comm");
    while (!name.empty() && name.back() == '\n')
        name.pop_back();
    return name;
}

bool IsZombie(const fs::path& process) {
    // "PID (NAME) STATE ...": the name may hold parentheses and blanks of its own.
    const std::string status = Content(process / "stat");
    const std::size_t name = status.rfind(')');
    if (name == std::string::npos || name + 2 >= status.size()) return false;
    const char state = status[name + 2];
    return state == 'Z' || state == 'X';
}

bool IsOurs(const fs::path& process) {
    struct stat status {};
    return ::stat(process.c_str(), &status) == 0 && status.st_uid == ::geteuid();
}

std::string_view ValueOf(const std::vector<std::string>& environment, std::string_view name) {
    for (const std::string_view variable : environment) {
        if (variable.size() > name.size() && variable.starts_with(name) && variable[name.size()] == '=')
            return variable.substr(name.size() + 1);
    }
    return {};
}

/// What decides about whether two programs of a prefix find each other: the screen, the code page, the server
/// of the prefix.
constexpr std::array<std::string_view, 13> kShared{
    "DISPLAY",    "WAYLAND_DISPLAY", "XAUTHORITY", "XDG_RUNTIME_DIR", "LC_ALL", "LC_CTYPE",       "LANG",
    "WINEPREFIX", "WINELOADER",      "WINESERVER", "WINEDLLPATH",     "PATH",   "LD_LIBRARY_PATH"};

std::optional<KrnProcess> Describe(int pid, const fs::path& process, const fs::path& home) {
    std::vector<std::string> all;
    const std::string block = Content(process / "environ");
    for (std::size_t at = 0; at < block.size();) {
        const std::size_t end = std::min(block.find('\0', at), block.size());
        all.push_back(block.substr(at, end - at));
        at = end + 1;
    }

    KrnProcess krn{.pid = pid};
    const std::string_view prefix = ValueOf(all, "WINEPREFIX");
    krn.prefix = prefix.empty() ? home / ".wine" : fs::path(prefix);
    std::error_code fault;
    if (!fs::is_directory(krn.prefix / "drive_c", fault)) return {};
    krn.is32Bit = IsPrefix32Bit(krn.prefix);

    // The process runs the loader, or the preloader beside it, which takes the loader's name as its argument.
    std::string loader = fs::read_symlink(process / "exe", fault).string();
    constexpr std::string_view kPreloader = "-preloader";
    if (loader.ends_with(kPreloader)) loader.resize(loader.size() - kPreloader.size());
    krn.loader = loader.empty() ? "wine" : loader;

    for (const std::string_view name : kShared) {
        const std::string_view value = ValueOf(all, name);
        if (!value.empty()) krn.environment.push_back(std::string(name) + "=" + std::string(value));
    }
    if (prefix.empty()) krn.environment.push_back("WINEPREFIX=" + krn.prefix.string());
    krn.environment.push_back("HOME=" + home.string());
    krn.environment.emplace_back("WINEDEBUG=-all");
    return krn;
}

constexpr std::string_view kKrn = "KRN.EXE";

}  // namespace

bool IsPrefix32Bit(const fs::path& prefix) {
    std::ifstream registry(prefix / "system.reg", std::ios::binary);
    std::string line;
    for (int count = 0; count < 8 && std::getline(registry, line); ++count) {
        if (line.starts_with("#arch=win32")) return true;
    }
    return false;
}

std::optional<KrnProcess> FindKrn(const fs::path& procRoot, const fs::path& home) {
    std::error_code fault;
    for (fs::directory_iterator entry(procRoot, fault), end; !fault && entry != end; entry.increment(fault)) {
        const std::string number = entry->path().filename().string();
        if (number.empty() || number.size() > 9 ||
            !std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; })) {
            continue;
        }
        const fs::path& process = entry->path();
        if (!text::EqualsNoCase(ShortName(process), kKrn) || IsZombie(process) || !IsOurs(process)) continue;
        if (auto krn = Describe(std::stoi(number), process, home)) return krn;
    }
    return {};
}

bool IsStillThere(const KrnProcess& krn, const fs::path& procRoot) {
    const fs::path process = procRoot / std::to_string(krn.pid);
    return text::EqualsNoCase(ShortName(process), kKrn) && !IsZombie(process);
}

}  // namespace zenvora::link

#endif
