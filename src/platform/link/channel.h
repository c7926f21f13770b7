#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zenvora::link {

using Deadline = std::chrono::steady_clock::time_point;

/// Bytes to and from another program. Its end is the end of the conversation: a program that was started for
/// it is killed with it.
class Channel {
  public:
    enum class End {
        Done,
        TimeOut,  ///< the deadline has passed
        Gone,     ///< the other end is closed
    };
    virtual ~Channel() = default;
    /// Writes all of the bytes.
    [[nodiscard]] virtual End Write(std::string_view bytes, Deadline deadline) = 0;
    /// Waits for bytes and appends what is there.
    [[nodiscard]] virtual End Read(std::string& bytes, Deadline deadline) = 0;
};

/// A connection to a Unix socket; null when nobody listens there.
[[nodiscard]] std::unique_ptr<Channel> ConnectSocket(const std::filesystem::path& socket);

/// A program started with its standard input and output joined to the channel; its standard error goes
/// nowhere, and it inherits no other open file of this one, whose locks would then outlive it. `environment`
/// is all that it gets, as "NAME=value". Null when it cannot be started.
[[nodiscard]] std::unique_ptr<Channel> StartProgram(const std::vector<std::string>& command,
                                                    const std::vector<std::string>& environment);

}  // namespace zenvora::link
