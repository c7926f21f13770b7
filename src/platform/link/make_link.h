#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/link/carrier.h"
#include "platform/link/protocol_carrier.h"

namespace zenvora::link {

/// Which way to the appraisal program.
struct LinkSettings {
    /// Folder of this program, where its helpers lie beside it.
    std::filesystem::path programFolder;
    /// Home folder of this user.
    std::filesystem::path home;
    /// Not empty: a file of krn-standin, which is started and talked to instead.
    std::filesystem::path standinFile;
    /// Not empty: a Unix socket where somebody speaks the line protocol. Not on Windows.
    std::filesystem::path socket;
    /// Of the texts that the appraisal program takes and gives: a Windows code page.
    int codePage = 1252;
    TimeLimits limits{};
};

/// The settings as the environment of this process has them: ZENVORA_STANDIN, ZENVORA_LINK_SOCKET and
/// ZENVORA_KRN_CODEPAGE, and HOME. Faults: none.
[[nodiscard]] LinkSettings LinkSettingsOfEnvironment();

/// The stand-in when its file is named, else the socket when that is, else the appraisal program itself: in
/// this process on Windows, beside it under Wine elsewhere. Starts nothing yet. Faults: none.
[[nodiscard]] std::unique_ptr<Carrier> MakeLink(const LinkSettings& settings);

}  // namespace zenvora::link
