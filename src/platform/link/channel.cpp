#ifndef _WIN32

#include "platform/link/channel.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace zenvora::link {
namespace {

class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    [[nodiscard]] int Number() const noexcept { return number_; }

  private:
    int number_;
};

/// Writing into a pipe that nobody reads raises SIGPIPE, which would end this program. Keeps it off while
/// this one writes, and leaves the rest of the program its own ways with signals.
class PipeSignalHeldBack {
  public:
    PipeSignalHeldBack() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~PipeSignalHeldBack() {
        const timespec atOnce{};
        if (!wasPending_) {
            while (sigtimedwait(&pipe_, nullptr, &atOnce) == -1 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    PipeSignalHeldBack(const PipeSignalHeldBack&) = delete;
    PipeSignalHeldBack& operator=(const PipeSignalHeldBack&) = delete;

  private:
    sigset_t pipe_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

bool MakeNonBlocking(int descriptor) {
    const int flags = ::fcntl(descriptor, F_GETFL);
    return flags != -1 && ::fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) != -1;
}

/// An answer is looked for so long before the processor may sleep. KRN answers within this, as a rule, and
/// the waking of idle processors takes several times as long as the answer itself, in a virtual machine above
/// all.
constexpr std::chrono::milliseconds kWakeful{3};

/// Waits until the descriptor is ready; false when the deadline passes.
bool WaitFor(int descriptor, short events, Deadline deadline) {
    using std::chrono::milliseconds;
    using Clock = std::chrono::steady_clock;
    const Deadline asleepFrom = std::min(deadline, Clock::now() + kWakeful);
    for (;;) {
        const auto now = Clock::now();
        const bool isWakeful = now < asleepFrom;
        const auto left = isWakeful ? 0 : std::chrono::ceil<milliseconds>(deadline - now).count();
        pollfd entry{descriptor, events, 0};
        const int ready = ::poll(&entry, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, 1'000'000)));
        if (ready > 0) return true;
        if (ready < 0 && errno != EINTR) return true;  // the call that follows reports it
        if (isWakeful) {
            std::this_thread::yield();
        } else if (ready == 0 && left <= 0) {
            return false;
        }
    }
}

class FileChannel final : public Channel {
  public:
    FileChannel(Descriptor in, Descriptor out, pid_t child)
        : in_(std::move(in)), out_(std::move(out)), child_(child) {}
    ~FileChannel() override {
        if (child_ <= 0) return;
        // A helper that hangs in a call of its system does not see the end of its input.
        ::kill(child_, SIGKILL);
        while (::waitpid(child_, nullptr, 0) == -1 && errno == EINTR) {
        }
    }
    FileChannel(const FileChannel&) = delete;
    FileChannel& operator=(const FileChannel&) = delete;

    End Write(std::string_view bytes, Deadline deadline) override {
        const PipeSignalHeldBack held;
        const int out = out_.Number() >= 0 ? out_.Number() : in_.Number();
        while (!bytes.empty()) {
            const auto put = ::write(out, bytes.data(), bytes.size());
            if (put > 0) {
                bytes.remove_prefix(static_cast<std::size_t>(put));
            } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
                if (!WaitFor(out, POLLOUT, deadline)) return End::TimeOut;
            } else if (errno != EINTR) {
                return End::Gone;
            }
        }
        return End::Done;
    }

    End Read(std::string& bytes, Deadline deadline) override {
        std::array<char, 65536> block;
        for (;;) {
            const auto got = ::read(in_.Number(), block.data(), block.size());
            if (got > 0) {
                bytes.append(block.data(), static_cast<std::size_t>(got));
                return End::Done;
            }
            if (got == 0) return End::Gone;
            if (errno == EAGAIN || errno == EWOULDBLOCK) {
                if (!WaitFor(in_.Number(), POLLIN, deadline)) return End::TimeOut;
            } else if (errno != EINTR) {
                return End::Gone;
            }
        }
    }

  private:
    Descriptor in_;
    Descriptor out_;  ///< none: writes go to in_, a socket
    pid_t child_;
};

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

bool MakePipe(Pipe& made) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    made = {Descriptor(ends[0]), Descriptor(ends[1])};
    return true;
}

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));  // the call takes them so and changes nothing
    pointers.push_back(nullptr);
    return pointers;
}

/// What posix_spawn does in the child before the program starts.
class ChildSetUp {
  public:
    ChildSetUp() {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        // The signals that this program holds back or ignores are its own affair.
        sigset_t none;
        sigset_t usual;
        sigemptyset(&none);
        sigemptyset(&usual);
        sigaddset(&usual, SIGPIPE);
        posix_spawnattr_setsigmask(&attributes, &none);
        posix_spawnattr_setsigdefault(&attributes, &usual);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~ChildSetUp() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    ChildSetUp(const ChildSetUp&) = delete;
    ChildSetUp& operator=(const ChildSetUp&) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

}  // namespace

std::unique_ptr<Channel> ConnectSocket(const std::filesystem::path& socket) {
    sockaddr_un address{};
    const std::string path = socket.string();
    if (path.empty() || path.size() >= sizeof address.sun_path) return nullptr;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), path.size());
    Descriptor connection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (connection.Number() < 0) return nullptr;
    // A full queue of a listener that hangs would block here: without waiting it is as good as nobody.
    if (!MakeNonBlocking(connection.Number())) return nullptr;
    if (::connect(connection.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return nullptr;
    return std::make_unique<FileChannel>(std::move(connection), Descriptor{}, 0);
}

std::unique_ptr<Channel> StartProgram(const std::vector<std::string>& command,
                                      const std::vector<std::string>& environment) {
    if (command.empty()) return nullptr;
    Pipe input;
    Pipe output;
    if (!MakePipe(input) || !MakePipe(output)) return nullptr;
    if (!MakeNonBlocking(input.writing.Number()) || !MakeNonBlocking(output.reading.Number())) return nullptr;

    ChildSetUp child;
    posix_spawn_file_actions_adddup2(&child.actions, input.reading.Number(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&child.actions, output.writing.Number(), STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&child.actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&child.actions, STDERR_FILENO + 1);
    const auto arguments = Pointers(command);
    const auto variables = Pointers(environment);
    pid_t pid = 0;
    if (::posix_spawnp(&pid, arguments[0], &child.actions, &child.attributes, arguments.data(),
                       variables.data()) != 0) {
        return nullptr;
    }
    return std::make_unique<FileChannel>(std::move(output.reading), std::move(input.writing), pid);
}

}  // namespace zenvora::link

#endif
