#include "platform/shell/child_process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace zenvora::shell {
namespace {

constexpr int kStep = 5;  // milliseconds
constexpr std::size_t kMostOutput = 4096;

}  // namespace

Child Start(const std::vector<std::string>& command, const std::string& directory, int output) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));  // the call takes it so and changes nothing
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (output < 0) {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    } else {
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    }
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (!directory.empty()) posix_spawn_file_actions_addchdir_np(&actions, directory.c_str());
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);

    pid_t process = 0;
    Child child;
    child.error = posix_spawnp(&process, arguments.front(), &actions, &attributes, arguments.data(), environ);
    if (child.error == 0) child.process = process;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

std::optional<int> WaitFor(int process, int milliseconds) {
    for (int waited = 0;; waited += kStep) {
        int status = 0;
        const pid_t ended = ::waitpid(process, &status, WNOHANG);
        if (ended == process) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        if (ended < 0 && errno != EINTR) return -1;
        if (waited >= milliseconds) return std::nullopt;
        std::this_thread::sleep_for(std::chrono::milliseconds(kStep));
    }
}

std::optional<std::string> OutputOf(const std::vector<std::string>& command, int milliseconds) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return std::nullopt;
    const Child child = Start(command, {}, ends[1]);
    ::close(ends[1]);
    std::optional<std::string> text;
    if (child.process != 0) {
        const std::optional<int> status = WaitFor(child.process, milliseconds);
        if (!status) {
            ::kill(child.process, SIGKILL);
            static_cast<void>(WaitFor(child.process, milliseconds));
        } else if (*status == 0) {
            // The pipe holds more than what is read of it, so that the program never waits for its reader.
            std::array<char, kMostOutput> bytes{};
            const ssize_t got = ::read(ends[0], bytes.data(), bytes.size());
            text.emplace(bytes.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
        }
    }
    ::close(ends[0]);
    return text;
}

std::vector<std::string> Arguments(const std::string& line) {
    std::vector<std::string> arguments;
    bool quoted = false;
    bool open = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
            if (!open) arguments.emplace_back();
            open = true;
        } else if (c == ' ' && !quoted) {
            open = false;
        } else {
            if (!open) arguments.emplace_back();
            open = true;
            arguments.back().push_back(c);
        }
    }
    return arguments;
}

}  // namespace zenvora::shell
