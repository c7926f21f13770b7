#include "platform/shell/system_shell.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sys/utsname.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#include "platform/fault.h"
#include "platform/shell/child_process.h"
#include "platform/text/utf8.h"

namespace zenvora::shell {
namespace {

namespace fs = std::filesystem;

constexpr int kUnknownFailure = 1;
constexpr int kLockTries = 50;

// Exit statuses of xdg-open.
constexpr int kDone = 0;
constexpr int kNoSuchFile = 2;
constexpr int kNoTool = 3;
constexpr int kNoSuccess = 4;

std::unique_ptr<files::HostFile> OpenLockFile(const fs::path& path) {
    for (const files::OpenMode mode :
         {files::OpenMode::ReadWrite, files::OpenMode::CreateNew, files::OpenMode::ReadWrite}) {
        try {
            return files::SystemDisk().Open(path, mode);
        } catch (const Fault& fault) {
            // Another copy may make the file between two of the tries.
            if (fault.number != fault::kFileNotFound && fault.number != fault::kFileExists) break;
        }
    }
    return nullptr;
}

/// A number that is the same in every copy of the program.
std::string Fingerprint(std::string_view text) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : text) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 1099511628211U;
    }
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string digits;
    for (int shift = 60; shift >= 0; shift -= 4)
        digits.push_back(kDigits[(hash >> static_cast<unsigned>(shift)) & 0xFU]);
    return digits;
}

bool EndsInExe(std::string_view name) {
    return text::EqualsNoCase(text::Right(name, 4), ".exe");
}

std::string FirstLine(const fs::path& path, char end) {
    std::ifstream file(path, std::ios::binary);
    std::string line;
    std::getline(file, line, end);
    return line;
}

/// Name of the program of a process. The kernel's own name of it is cut at 15 characters, and is that of the
/// interpreter for what Wine runs; its command line then begins with the program.
std::string ProgramName(const fs::path& process) {
    const std::string command = FirstLine(process / "cmdline", '\0');
    std::string name = command.substr(command.find_last_of("/\\") + 1);
    return EndsInExe(name) ? name : FirstLine(process / "comm", '\n');
}

/// The folder that holds the drive_c that a file lies in; empty when it lies in none.
std::string PrefixOf(const fs::path& file) {
    for (fs::path folder = file.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        if (folder.filename() == "drive_c") return folder.parent_path().string();
    }
    return {};
}

}  // namespace

SystemShell::SystemShell(fs::path lockFolder) : SystemShell(std::move(lockFolder), Tools{}) {}

SystemShell::SystemShell(fs::path lockFolder, Tools tools)
    : lockFolder_(std::move(lockFolder)), tools_(std::move(tools)) {
    std::error_code ignored;
    fs::create_directories(lockFolder_, ignored);
    instanceLock_ = OpenLockFile(lockFolder_ / "instance.lock");
    if (instanceLock_ == nullptr) return;
    // Whoever gets the lock for himself alone is the first; all hold it in common while they run.
    earlier_ = instanceLock_->TryLock(0, 1, files::LockKind::Exclusive) == files::LockAnswer::Held;
    for (int tries = 0; tries < kLockTries; ++tries) {
        if (instanceLock_->TryLock(0, 1, files::LockKind::Shared) != files::LockAnswer::Held) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));  // another copy is at the line above
    }
}

SystemShell::~SystemShell() {
    for (const int process : running_)
        static_cast<void>(WaitFor(process, 0));
}

int SystemShell::Open(const OpenRequest& request) {
    std::erase_if(running_, [](int process) { return WaitFor(process, 0).has_value(); });
    const fs::path file = request.file;
    std::error_code error;
    if (!fs::exists(file, error)) {
        if (error == std::errc::permission_denied) return opened::kAccessDenied;
        return fs::is_directory(file.parent_path(), error) ? opened::kFileNotFound : opened::kPathNotFound;
    }
    if (::access(file.c_str(), R_OK) != 0) return opened::kAccessDenied;
    if (!request.verb.empty() && !text::EqualsNoCase(request.verb, "open")) return opened::kNoAssociation;
    return EndsInExe(request.file) ? RunWindowsProgram(request) : OpenDocument(request);
}

int SystemShell::RunWindowsProgram(const OpenRequest& request) {
    std::vector<std::string> command;
    // A program runs in the prefix that it lies in, beside the others there.
    if (const std::string prefix = PrefixOf(request.file); !prefix.empty())
        command = {"env", "WINEPREFIX=" + prefix};
    command.insert(command.end(), {tools_.windowsRunner, request.file});
    for (std::string& argument : Arguments(request.parameters))
        command.push_back(std::move(argument));
    const Child child = Start(command, request.directory);
    if (child.process == 0) return opened::kNoAssociation;
    running_.push_back(child.process);
    return opened::kOpened;
}

int SystemShell::OpenDocument(const OpenRequest& request) {
    const Child child = Start({tools_.opener, request.file}, request.directory);
    if (child.process == 0) return opened::kNoAssociation;
    const std::optional<int> status = WaitFor(child.process, tools_.patience);
    if (!status) {
        running_.push_back(child.process);
        return opened::kOpened;
    }
    switch (*status) {
        case kDone:
            return opened::kOpened;
        case kNoSuchFile:
            return opened::kFileNotFound;
        case kNoTool:
        case kNoSuccess:
            return opened::kNoAssociation;
        default:
            return kUnknownFailure;
    }
}

bool SystemShell::HasReader(const std::string& file) {
    std::optional<std::string> kind = OutputOf({tools_.kinds, "query", "filetype", file}, tools_.patience);
    if (!kind) return false;
    kind->resize(std::min(kind->size(), kind->find_first_of("\r\n;")));
    if (kind->empty()) return false;
    const auto reader = OutputOf({tools_.kinds, "query", "default", *kind}, tools_.patience);
    return reader && reader->find(".desktop") != std::string::npos;
}

std::vector<std::string> SystemShell::ProcessNames() {
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(tools_.processes, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string folder = entry->path().filename().string();
        if (folder.find_first_not_of("0123456789") != std::string::npos) continue;
        // A process may end while it is looked at.
        if (std::string name = ProgramName(entry->path()); !name.empty()) names.push_back(std::move(name));
    }
    return names;
}

bool SystemShell::EarlierInstance() {
    return earlier_ && instanceLock_->TestLock(0, 1) == files::LockAnswer::Held;
}

fs::path SystemShell::WindowLock(std::string_view title) const {
    return lockFolder_ / ("window-" + Fingerprint(title) + ".lock");
}

WindowNotice SystemShell::AnnounceWindow(std::string_view title) {
    std::shared_ptr<files::HostFile> lock = OpenLockFile(WindowLock(title));
    if (lock == nullptr || lock->TryLock(0, 1, files::LockKind::Shared) != files::LockAnswer::Taken)
        return {};
    return lock;
}

bool SystemShell::FindWindow(std::string_view title) {
    try {
        const auto lock = files::SystemDisk().Open(WindowLock(title), files::OpenMode::ReadWrite);
        return lock->TestLock(0, 1) == files::LockAnswer::Held;
    } catch (const Fault&) {
        return false;
    }
}

std::optional<OsVersion> SystemShell::Version() {
    return OsVersion{10, 0, 2, {}};
}

std::string SystemShell::SystemName() {
    std::ifstream file(tools_.release);
    for (std::string line; std::getline(file, line);) {
        constexpr std::string_view kKey = "PRETTY_NAME=";
        if (!line.starts_with(kKey)) continue;
        std::string name = line.substr(kKey.size());
        std::erase(name, '"');
        return name;
    }
    utsname system{};
    if (::uname(&system) != 0) return {};
    return std::string(system.sysname) + " " + system.release;
}

fs::path LockFolder(const fs::path& driveC, std::string_view runtimeDirectory) {
    const fs::path runtime = runtimeDirectory;
    if (!runtime.is_absolute()) return driveC / ".run";
    return runtime / "zenvora" / Fingerprint(driveC.lexically_normal().string());
}

fs::path LockFolder(const fs::path& driveC) {
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    return LockFolder(driveC, runtime == nullptr ? std::string_view() : std::string_view(runtime));
}

}  // namespace zenvora::shell
