#pragma once

#include <exception>
#include <filesystem>
#include <string>
#include <utility>

#include "cli/streams.h"
#include "platform/fault.h"

namespace zenvora::cli {

/// Ends a command with a status and the line that explains it: what happened, to which file, what to do.
struct Failure : std::exception {
    Exit status;
    std::string line;

    Failure(Exit exitStatus, std::string text) : status(exitStatus), line(std::move(text)) {}
    [[nodiscard]] const char* what() const noexcept override { return line.c_str(); }
};

/// True for faults of the file itself (missing, not permitted, damaged, no Databook, disk full), false for
/// those of what was asked of it (a statement, a value, a key).
[[nodiscard]] bool IsFileFault(const Fault& fault) noexcept;

/// A fault in one line: the file and the place in it unless the description names them, the description, the
/// fault's number, and what to do when the description does not say it. `file` is the one in work when the
/// fault names none.
[[nodiscard]] std::string FaultLine(const Fault& fault, const std::string& file);

/// A path as it is shown to the user.
[[nodiscard]] std::string Shown(const std::filesystem::path& path);

}  // namespace zenvora::cli
