#pragma once

#include <exception>
#include <string>
#include <utility>

#include "cli/streams.h"
#include "common/fault_text.h"
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

using common::FaultLine;
using common::Shown;

}  // namespace zenvora::cli
