#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The appraisal program as a process of this machine, on systems with a /proc.
namespace zenvora::link {

struct KrnProcess {
    int pid = 0;
    std::filesystem::path prefix{};          ///< the folder that holds drive_c
    std::filesystem::path loader{};          ///< what runs Windows programs there
    bool is32Bit = false;                    ///< the prefix runs no 64-bit programs
    std::vector<std::string> environment{};  ///< what a program beside it must share with it: "NAME=value"
};

/// Finds KRN.EXE among the processes of this user, zombies aside, by their short names without regard to
/// case. One whose prefix has no drive_c is passed over. `home` is the home folder of this user. Faults:
/// none.
[[nodiscard]] std::optional<KrnProcess> FindKrn(const std::filesystem::path& procRoot,
                                                const std::filesystem::path& home);

/// True while that process is there under that name. Faults: none.
[[nodiscard]] bool IsStillThere(const KrnProcess& krn, const std::filesystem::path& procRoot);

/// True for a prefix made for 32-bit programs only. Faults: none.
[[nodiscard]] bool IsPrefix32Bit(const std::filesystem::path& prefix);

}  // namespace zenvora::link
