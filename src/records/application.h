#pragma once

#include <string>

#include "common/session.h"

namespace zenvora::records {

/// The running program, as the record dialogs see it.
struct Application {
    common::Session& session;
    std::string commandLine;  ///< as the user gave it, without the program's name
};

}  // namespace zenvora::records
