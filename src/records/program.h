#pragma once

#include <string>

#include "common/session.h"
#include "platform/files/drive_map.h"

namespace zenvora::records {

/// The program around the record dialogs.
struct Program {
    common::Session& session;
    const files::DriveMap& drives;
    std::string commandLine;  ///< as the user gave it, without the program's name
};

}  // namespace zenvora::records
