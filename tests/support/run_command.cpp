#include "support/run_command.h"

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace zenvora::testing_support {

CommandResult RunCommand(const std::string& command) {
    CommandResult result;
    FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) return result;
    std::array<char, 65536> piece{};
    for (std::size_t got = 0; (got = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;)
        result.output.append(piece.data(), got);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

}  // namespace zenvora::testing_support
