// krn-standin: the stand-in for the appraisal program, over the line protocol.

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

#include "platform/fault.h"
#include "platform/link/line_protocol.h"
#include "platform/link/line_server.h"
#include "standin.h"

namespace {

using namespace zenvora;

constexpr const char* kHelp =
    "krn-standin FILE                 speaks the link protocol on its standard input and output\n"
    "krn-standin FILE --socket PATH   listens on a Unix socket\n\n"
    "Stands in for the appraisal program, with the reports, forms and fields that FILE tells. See\n"
    "samples/KRN.txt for such a file.\n";

void Misbehave(standin::Act act) {
    if (act == standin::Act::Die) ::_exit(9);
    for (;;)
        ::pause();
}

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto put = ::write(descriptor, bytes.data(), bytes.size());
        if (put <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

/// Serves one client until its end.
void Serve(int in, int out, const std::filesystem::path& file) {
    standin::StandinCarrier carrier(file, Misbehave);
    link::LineBuffer buffer;
    std::array<char, 65536> block;
    if (!WriteAll(out, link::kReadyLine)) return;
    for (;;) {
        const auto got = ::read(in, block.data(), block.size());
        if (got <= 0 || !buffer.Append({block.data(), static_cast<std::size_t>(got)})) return;
        while (const auto line = buffer.Next()) {
            if (!WriteAll(out, link::AnswerLine(carrier, *line))) return;
        }
    }
}

int Listen(const std::filesystem::path& file, const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (path.size() >= sizeof address.sun_path || listener < 0) {
        std::cerr << "krn-standin: " << path
                  << " is too long for the path of a socket. Choose a shorter one.\n";
        return 2;
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    if (::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener, 8) != 0) {
        std::cerr << "krn-standin: no socket can be made at " << path << ": " << std::strerror(errno)
                  << ". Remove what is there, or choose another path.\n";
        return 3;
    }
    std::cout << "listening on " << path << std::endl;
    for (;;) {
        const int client = ::accept(listener, nullptr, nullptr);
        if (client < 0) continue;
        std::thread([client, file] {
            try {
                Serve(client, client, file);
            } catch (const Fault& fault) {
                std::cerr << "krn-standin: " << fault.description << '\n';
            }
            ::close(client);
        }).detach();
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::string first = argc > 1 ? argv[1] : "";
    if (first == "--help") {
        std::cout << kHelp;
        return 0;
    }
    const bool listens = argc == 4 && std::string_view(argv[2]) == "--socket";
    if (first.empty() || (argc != 2 && !listens)) {
        std::cerr << kHelp;
        return 2;
    }
    ::signal(SIGPIPE, SIG_IGN);
    try {
        const standin::Reports check{first};
        if (listens) return Listen(first, argv[3]);
        Serve(STDIN_FILENO, STDOUT_FILENO, first);
    } catch (const Fault& fault) {
        std::cerr << "krn-standin: " << fault.place.file
                  << (fault.place.line > 0 ? ", line " + std::to_string(fault.place.line) : "") << ": "
                  << fault.description << '\n';
        return 3;
    }
    return 0;
}
