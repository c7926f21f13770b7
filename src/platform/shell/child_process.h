#pragma once

#include <optional>
#include <string>
#include <vector>

/// Programs that this one starts. They live on without it and share no terminal with it.
namespace zenvora::shell {

struct Child {
    int process = 0;  ///< 0: it could not be started
    int error = 0;    ///< then the errno of why
};

/// Starts a program, which is sought in PATH when its name has no "/". What it prints goes to `output`, a
/// file descriptor, or nowhere when that is negative.
[[nodiscard]] Child Start(const std::vector<std::string>& command, const std::string& directory = {},
                          int output = -1);

/// Exit status of a child once it has ended, -1 when a signal ended it; nothing when it has not ended within
/// `milliseconds`.
[[nodiscard]] std::optional<int> WaitFor(int process, int milliseconds);

/// What a program prints, up to some thousand characters, when it ends well within `milliseconds`; nothing
/// otherwise.
[[nodiscard]] std::optional<std::string> OutputOf(const std::vector<std::string>& command, int milliseconds);

/// A command line taken apart at its blanks; double quotes keep blanks together.
[[nodiscard]] std::vector<std::string> Arguments(const std::string& line);

}  // namespace zenvora::shell
