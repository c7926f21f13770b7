#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What the program asks of the desktop that it runs on: other programs, other windows, the system itself.
namespace zenvora::shell {

/// A document to open or a program to start. Paths are host paths.
struct OpenRequest {
    std::string file;
    std::string verb{};  ///< "open", "print"; empty means "open"
    std::string parameters{};
    std::string directory{};  ///< to start in; empty: that of this program
    int showCommand = 1;      ///< 0 hidden, 1 normal, 3 maximized
};

/// Answers of Shell::Open; kOpened and everything above, and negative numbers, are success.
namespace opened {
inline constexpr int kOutOfMemory = 0;
inline constexpr int kFileNotFound = 2;
inline constexpr int kPathNotFound = 3;
inline constexpr int kAccessDenied = 5;
inline constexpr int kBadFormat = 11;
inline constexpr int kSharingViolation = 26;
inline constexpr int kIncompleteAssociation = 27;
inline constexpr int kTimedOut = 28;
inline constexpr int kExchangeFailed = 29;
inline constexpr int kExchangeBusy = 30;
inline constexpr int kNoAssociation = 31;
inline constexpr int kLibraryNotFound = 32;
inline constexpr int kOpened = 33;
}  // namespace opened

/// The version of the system in the numbers of the old platform.
struct OsVersion {
    int major = 0;
    int minor = 0;
    int platform = 0;         ///< 2: of the NT line
    std::string servicePack;  ///< "Service Pack 3", may be empty
};

/// Keeps a window announced; letting go of it withdraws the window.
using WindowNotice = std::shared_ptr<const void>;

/// One thread uses it. Faults: none.
class Shell {
  public:
    virtual ~Shell() = default;

    /// Hands a document to the program that opens its kind, or starts a program. Does not wait for it to end.
    /// See namespace opened for the answer.
    [[nodiscard]] virtual int Open(const OpenRequest& request) = 0;

    /// True when a program is registered that reads files of this kind; host path.
    [[nodiscard]] virtual bool HasReader(const std::string& file) = 0;

    /// Names of the programs that run, without their folders: "KRN.EXE", "bash".
    [[nodiscard]] virtual std::vector<std::string> ProcessNames() = 0;

    /// True when a copy of this program on the same C: was running before this one and still is.
    [[nodiscard]] virtual bool EarlierInstance() = 0;
    /// Tells other copies of the program that a window of that title is on the screen.
    [[nodiscard]] virtual WindowNotice AnnounceWindow(std::string_view title) = 0;
    /// True when any copy of the program, this one included, has announced a window of that title.
    [[nodiscard]] virtual bool FindWindow(std::string_view title) = 0;

    /// Nothing when the system does not tell.
    [[nodiscard]] virtual std::optional<OsVersion> Version() = 0;
    /// The system's own name for people: "Debian GNU/Linux 12 (bookworm)"; may be empty.
    [[nodiscard]] virtual std::string SystemName() = 0;

    /// Directories of the rules, as text paths without a backslash at their end; empty when the system does
    /// not tell. Off Windows they lie on the program's own C:.
    [[nodiscard]] virtual std::string WindowsDirectory() { return "C:\\WINDOWS"; }
    [[nodiscard]] virtual std::string SystemDirectory() { return "C:\\WINDOWS\\SYSTEM32"; }
};

/// A machine without a desktop: nothing can be opened, no program and no window is known.
[[nodiscard]] Shell& NoShell();

}  // namespace zenvora::shell
