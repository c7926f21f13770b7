#pragma once

#include <string>

namespace zenvora::testing_support {

struct CommandResult {
    int status = -1;     ///< of the exit; -1: it did not end by itself
    std::string output;  ///< standard output and standard error
};

/// Runs a command line of the shell.
[[nodiscard]] CommandResult RunCommand(const std::string& command);

}  // namespace zenvora::testing_support
