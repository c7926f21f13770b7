#pragma once

#include <filesystem>

#include "common/session.h"

namespace zenvora::frame {

/// Puts in place what the program needs on its C:, at every start and before ReadGlobals: \Appraise with
/// ZVR.INI and in it the name of the table and the data directory, \WINDOWS, \ZVR with the template, the
/// texts of the editor's fields and the help, \ZVR\DATA. `share` is the folder of the files that are
/// installed with the program.
///
/// What is there stays as it is, but for the help: it is brought up to date, and what it replaces is kept as
/// NAME.bak. What cannot be put in place, or a settings file that could not be written, is told in one
/// message, and the program goes on with what there is. Faults: none.
void ProvisionDriveC(common::Session& session, const std::filesystem::path& share);

/// The folder of the files that are installed with the program: share/zenvora beside the folder that holds
/// the running program.
[[nodiscard]] std::filesystem::path ShareFolder();

}  // namespace zenvora::frame
