#ifdef _WIN32

#include "platform/link/ddeml_carrier.h"

// The order matters: the others need the first.
// clang-format off
#include <windows.h>
#include <dde.h>
#include <ddeml.h>
// clang-format on

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "platform/fault.h"
#include "platform/text/utf8.h"

namespace zenvora::link {
namespace {

HDDEDATA CALLBACK NothingToAnswer(UINT, UINT, HCONV, HSZ, HSZ, HDDEDATA, ULONG_PTR, ULONG_PTR) {
    return nullptr;
}

bool RunsUnderWine() {
    static const bool answer = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    return answer;
}

std::wstring Wide(const std::string& text) {
    const std::u16string utf16 = text::ToUtf16(text);
    return {utf16.begin(), utf16.end()};
}

std::string Narrow(const std::wstring& wide) {
    return text::FromUtf16(std::u16string(wide.begin(), wide.end()));
}

/// A name of the exchange, known to the library while this lives.
class Name {
  public:
    Name(DWORD instance, const std::string& text)
        : instance_(instance), handle_(DdeCreateStringHandleW(instance, Wide(text).c_str(), CP_WINUNICODE)) {}
    ~Name() {
        if (handle_ != nullptr) DdeFreeStringHandle(instance_, handle_);
    }
    Name(const Name&) = delete;
    Name& operator=(const Name&) = delete;
    [[nodiscard]] HSZ Handle() const noexcept { return handle_; }

  private:
    DWORD instance_;
    HSZ handle_;
};

Fault FaultOf(UINT error, bool isPoke) {
    std::array<char, 32> code{};
    std::snprintf(code.data(), code.size(), " (0x%04x)", error);
    const std::string detail = code.data();
    switch (error) {
        case DMLERR_NOTPROCESSED:
            return isPoke
                       ? Fault(fault::kInvalidProperty,
                               "The appraisal program refused the value" + detail + ".")
                       : Fault(fault::kLinkFailed, "The appraisal program refused the item" + detail + ".");
        case DMLERR_BUSY:
            return {fault::kLinkFailed, "The appraisal program is busy" + detail + "."};
        case DMLERR_DATAACKTIMEOUT:
        case DMLERR_POKEACKTIMEOUT:
        case DMLERR_EXECACKTIMEOUT:
            return {fault::kLinkTimeOut, "The appraisal program did not answer in time" + detail + "."};
        case DMLERR_POSTMSG_FAILED:
        case DMLERR_SERVER_DIED:
        case DMLERR_NO_CONV_ESTABLISHED:
            return {fault::kNoConversation,
                    "The conversation with the appraisal program broke off" + detail + "."};
        default:
            return {fault::kLinkFailed, "The exchange with the appraisal program failed" + detail + "."};
    }
}

/// Under Wine an acknowledgement that nobody asked for stays in the queue behind each request, and the next
/// poke would take it for its own: a refused value then looks accepted.
void TakeStrayAcknowledgement() {
    constexpr ULONGLONG kPatience = 250;  // milliseconds; it is there at once unless the machine is busy
    const ULONGLONG start = GetTickCount64();
    for (;;) {
        MSG message;
        if (PeekMessageW(&message, nullptr, WM_DDE_ACK, WM_DDE_ACK, PM_REMOVE) != 0) {
            FreeDDElParam(WM_DDE_ACK, message.lParam);
            return;
        }
        const ULONGLONG passed = GetTickCount64() - start;
        if (passed >= kPatience) return;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(kPatience - passed), QS_POSTMESSAGE);
    }
}

}  // namespace

struct DdemlCarrier::State {
    DWORD limit = 0;
    UINT codePage = CP_ACP;
    DWORD instance = 0;
    HCONV conversation = nullptr;

    /// Bytes of a text, with the zero that ends it. `fits`: none was replaced by "?".
    [[nodiscard]] std::string Bytes(const std::string& text, bool& fits) const {
        const std::wstring wide = Wide(text);
        fits = true;
        std::string bytes;
        if (!wide.empty()) {
            BOOL replaced = FALSE;
            const bool canTell = codePage != CP_UTF8;
            const auto convert = [&](char* to, int size) {
                return WideCharToMultiByte(codePage, canTell ? WC_NO_BEST_FIT_CHARS : 0, wide.data(),
                                           static_cast<int>(wide.size()), to, size, canTell ? "?" : nullptr,
                                           canTell ? &replaced : nullptr);
            };
            const int size = convert(nullptr, 0);
            if (size <= 0)
                throw Fault(fault::kLinkFailed, "Code page " + std::to_string(codePage) + " is not there.");
            bytes.resize(static_cast<std::size_t>(size));
            convert(bytes.data(), size);
            fits = replaced == FALSE;
        }
        bytes.push_back('\0');
        return bytes;
    }

    [[nodiscard]] std::string Text(std::string bytes) const {
        bytes.resize(std::min(bytes.find('\0'), bytes.size()));
        if (bytes.empty()) return {};
        const int size =
            MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
        if (size <= 0)
            throw Fault(fault::kLinkFailed, "Code page " + std::to_string(codePage) + " is not there.");
        std::wstring wide(static_cast<std::size_t>(size), L'\0');
        MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()), wide.data(), size);
        return Narrow(wide);
    }

    void RequireConversation() const {
        if (conversation == nullptr) throw Fault(fault::kNoConversation, "No conversation is open.");
    }
};

DdemlCarrier::DdemlCarrier(std::chrono::milliseconds limit, int codePage)
    : state_(std::make_unique<State>()) {
    state_->limit = static_cast<DWORD>(limit.count());
    state_->codePage = static_cast<UINT>(codePage);
    if (DdeInitializeW(&state_->instance, NothingToAnswer,
                       APPCLASS_STANDARD | APPCMD_CLIENTONLY | CBF_SKIP_ALLNOTIFICATIONS,
                       0) != DMLERR_NO_ERROR) {
        throw Fault(fault::kLinkFailed, "The system's library for the exchange cannot be used.");
    }
}

DdemlCarrier::~DdemlCarrier() {
    Close();
    DdeUninitialize(state_->instance);
}

void DdemlCarrier::Open(const std::string& service, const std::string& topic) {
    Close();
    // An empty name would mean any.
    if (!service.empty() && !topic.empty()) {
        const Name serviceName(state_->instance, service);
        const Name topicName(state_->instance, topic);
        state_->conversation =
            DdeConnect(state_->instance, serviceName.Handle(), topicName.Handle(), nullptr);
    }
    if (state_->conversation == nullptr)
        throw Fault(fault::kNoAnswer, "Nobody answers to " + service + "|" + topic + ".");
}

std::string DdemlCarrier::Request(const std::string& item) {
    state_->RequireConversation();
    const Name name(state_->instance, item);
    DWORD result = 0;
    const HDDEDATA data = DdeClientTransaction(nullptr, 0, state_->conversation, name.Handle(), CF_TEXT,
                                               XTYP_REQUEST, state_->limit, &result);
    if (data == nullptr) throw FaultOf(DdeGetLastError(state_->instance), false);
    DWORD size = 0;
    const BYTE* const bytes = DdeAccessData(data, &size);
    std::string text(reinterpret_cast<const char*>(bytes), bytes == nullptr ? 0 : size);
    DdeUnaccessData(data);
    DdeFreeDataHandle(data);
    if (RunsUnderWine()) TakeStrayAcknowledgement();
    return state_->Text(std::move(text));
}

void DdemlCarrier::Poke(const std::string& item, const std::string& text) {
    state_->RequireConversation();
    const Name name(state_->instance, item);
    bool fits = true;
    std::string bytes = state_->Bytes(text, fits);
    DWORD result = 0;
    const HDDEDATA done =
        DdeClientTransaction(reinterpret_cast<BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size()),
                             state_->conversation, name.Handle(), CF_TEXT, XTYP_POKE, state_->limit, &result);
    if (done == nullptr) throw FaultOf(DdeGetLastError(state_->instance), true);
    // Wine calls a refused poke a success: only its acknowledgement tells.
    if ((result & DDE_FACK) == 0)
        throw FaultOf((result & DDE_FBUSY) != 0 ? DMLERR_BUSY : DMLERR_NOTPROCESSED, true);
}

void DdemlCarrier::Close() noexcept {
    if (state_->conversation == nullptr) return;
    DdeDisconnect(state_->conversation);
    state_->conversation = nullptr;
}

bool DdemlCarrier::Fits(const std::string& text) {
    bool fits = true;
    static_cast<void>(state_->Bytes(text, fits));
    return fits;
}

}  // namespace zenvora::link

#endif
