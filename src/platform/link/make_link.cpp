#include "platform/link/make_link.h"

#include <charconv>
#include <cstdlib>
#include <string_view>
#include <vector>

#ifdef _WIN32
#include "platform/link/ddeml_carrier.h"
#else
#include <unistd.h>

#include "platform/link/channel.h"
#include "platform/link/wine_carrier.h"
#endif

namespace zenvora::link {
namespace {

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

#ifndef _WIN32

std::vector<std::string> WholeEnvironment() {
    std::vector<std::string> variables;
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable)
        variables.emplace_back(*variable);
    return variables;
}

#endif

}  // namespace

LinkSettings LinkSettingsOfEnvironment() {
    LinkSettings settings;
    std::error_code fault;
#ifndef _WIN32
    settings.programFolder = std::filesystem::read_symlink("/proc/self/exe", fault).parent_path();
#endif
    settings.home = Variable("HOME");
    settings.standinFile = Variable("ZENVORA_STANDIN");
    settings.socket = Variable("ZENVORA_LINK_SOCKET");
    const std::string codePage = Variable("ZENVORA_KRN_CODEPAGE");
    int number = 0;
    const auto [end, bad] = std::from_chars(codePage.data(), codePage.data() + codePage.size(), number);
    if (bad == std::errc{} && end == codePage.data() + codePage.size() && number > 0)
        settings.codePage = number;
    return settings;
}

std::unique_ptr<Carrier> MakeLink(const LinkSettings& settings) {
#ifdef _WIN32
    return std::make_unique<DdemlCarrier>(settings.limits.answer, settings.codePage);
#else
    if (!settings.standinFile.empty()) {
        const std::vector<std::string> command{(settings.programFolder / "krn-standin").string(),
                                               settings.standinFile.string()};
        return std::make_unique<ProtocolCarrier>(
            [command] { return StartProgram(command, WholeEnvironment()); }, settings.limits);
    }
    if (!settings.socket.empty()) {
        const auto socket = settings.socket;
        return std::make_unique<ProtocolCarrier>([socket] { return ConnectSocket(socket); }, settings.limits);
    }
    return MakeWineCarrier({.helperFolder = settings.programFolder,
                            .home = settings.home,
                            .codePage = settings.codePage,
                            .limits = settings.limits});
#endif
}

}  // namespace zenvora::link
