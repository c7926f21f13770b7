#include "common/os_version.h"

#include "common/primitives.h"
#include "common/text_helpers.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

constexpr int kNtLine = 2;

std::string VersionText(const shell::OsVersion& version) {
    switch (version.major) {
        case 3:
            return version.platform == kNtLine ? "Windows NT 3.x" : "Windows 3.x";
        case 4:
            if (version.platform == kNtLine) return "Windows NT 4.0";
            return version.minor == 0 ? "Windows 95" : "Windows 98/Windows ME";
        case 5:
            if (version.minor == 0) return "Windows 2000 " + version.servicePack;
            if (version.minor == 1) return "Windows XP " + version.servicePack;
            return {};
        case 6:
            return "Windows Vista " + version.servicePack;
        default:
            return "Unknown Windows Version";
    }
}

}  // namespace

std::string OsVersionText(Session& session) {
    session.vistaFlag = false;
    const auto version = session.machine.Version();
    if (!version) return {};
    session.vistaFlag = version->major == 6;
    return text::Trim(CleanText(VersionText(*version)));
}

bool IsVista(Session& session) {
    return UpTrim(OsVersionText(session)).find("WINDOWS VISTA") != std::string::npos;
}

}  // namespace zenvora::common
