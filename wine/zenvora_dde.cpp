// zenvora-dde.exe: speaks the exchange beside KRN for a Zenvora that cannot. Its standard input and output
// are the link protocol (docs/link-protocol.md).

#include <array>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <windows.h>

#include "platform/fault.h"
#include "platform/link/ddeml_carrier.h"
#include "platform/link/line_protocol.h"
#include "platform/link/line_server.h"

namespace {

using namespace zenvora;

/// What has come in, filled by a thread of its own: this program's windows must always answer, or every other
/// program of the system waits when it looks for somebody to talk to.
class Input {
  public:
    Input() : arrived_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {
        std::thread([this] { ReadAll(); }).detach();
    }
    [[nodiscard]] HANDLE Arrived() const noexcept { return arrived_; }
    /// The bytes since the last call; false at the end of the input.
    bool Take(std::string& bytes) {
        const std::lock_guard lock(mutex_);
        bytes.swap(bytes_);
        bytes_.clear();
        return !bytes.empty() || !atEnd_;
    }

  private:
    void ReadAll() {
        const HANDLE in = GetStdHandle(STD_INPUT_HANDLE);
        std::array<char, 65536> block;
        for (;;) {
            DWORD got = 0;
            const bool more =
                ReadFile(in, block.data(), static_cast<DWORD>(block.size()), &got, nullptr) != 0 && got > 0;
            {
                const std::lock_guard lock(mutex_);
                bytes_.append(block.data(), more ? got : 0);
                atEnd_ = !more;
            }
            SetEvent(arrived_);
            if (!more) return;
        }
    }

    HANDLE arrived_;
    std::mutex mutex_;
    std::string bytes_;
    bool atEnd_ = false;
};

bool Write(std::string_view bytes) {
    const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
    while (!bytes.empty()) {
        DWORD put = 0;
        if (WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &put, nullptr) == 0 || put == 0)
            return false;
        bytes.remove_prefix(put);
    }
    return true;
}

void HandleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0)
        DispatchMessageW(&message);
}

int Serve(link::Carrier& carrier) {
    Input input;
    link::LineBuffer lines;
    std::string bytes;
    if (!Write(link::kReadyLine)) return 1;
    const HANDLE arrived = input.Arrived();
    for (;;) {
        MsgWaitForMultipleObjects(1, &arrived, FALSE, INFINITE, QS_ALLINPUT);
        HandleMessages();
        bytes.clear();
        if (!input.Take(bytes)) return 0;
        if (!lines.Append(bytes)) return 1;
        while (const auto line = lines.Next()) {
            if (!Write(link::AnswerLine(carrier, *line))) return 1;
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    long limit = 5000;
    long codePage = 1252;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        if (name == "--limit") limit = std::strtol(argv[i + 1], nullptr, 10);
        if (name == "--codepage") codePage = std::strtol(argv[i + 1], nullptr, 10);
    }
    int status = 1;
    try {
        link::DdemlCarrier carrier(std::chrono::milliseconds(limit), static_cast<int>(codePage));
        status = Serve(carrier);
    } catch (const Fault&) {
        // The client sees that no ready line comes.
    }
    // The thread that reads may wait for ever.
    ExitProcess(static_cast<UINT>(status));
}
