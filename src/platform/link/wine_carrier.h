#pragma once

#include <filesystem>
#include <memory>

#include "platform/link/carrier.h"
#include "platform/link/protocol_carrier.h"

namespace zenvora::link {

struct WineSettings {
    /// Holds zenvora-dde.exe and zenvora-dde32.exe.
    std::filesystem::path helperFolder;
    /// The home folder of this user.
    std::filesystem::path home;
    std::filesystem::path procRoot = "/proc";
    /// Of the texts that the appraisal program takes and gives: a Windows code page.
    int codePage = 1252;
    TimeLimits limits{};
};

/// The exchange with KRN.EXE where that runs under Wine: zenvora-dde.exe is started beside it and speaks for
/// this program. Nothing is started while KRN.EXE does not run: each conversation then is fault 282. One
/// whose helper is missing is fault 285, which the user hears of.
[[nodiscard]] std::unique_ptr<Carrier> MakeWineCarrier(WineSettings settings);

}  // namespace zenvora::link
