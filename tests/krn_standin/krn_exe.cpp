// KRN.EXE: the stand-in as a program that answers the exchange itself, for tests of the whole road under
// Wine.

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
#include "platform/text/encoding.h"
#include "standin.h"

namespace {

using namespace zenvora;

standin::Reports* reports = nullptr;
DWORD instance = 0;

std::string NameOf(HSZ handle) {
    std::array<char, 512> name{};
    DdeQueryStringA(instance, handle, name.data(), static_cast<DWORD>(name.size()), CP_WINANSI);
    return text::FromWindows1252(name.data());
}

/// Does what never answers; returns for all else.
void Misbehave(standin::Act act) {
    if (act == standin::Act::Hang || act == standin::Act::Die) reports->Save();
    if (act == standin::Act::Hang) Sleep(INFINITE);
    if (act == standin::Act::Die) TerminateProcess(GetCurrentProcess(), 9);
}

HDDEDATA Connect(HSZ topic) {
    reports->Read();
    return reports->HasTopic(NameOf(topic)) ? reinterpret_cast<HDDEDATA>(TRUE) : nullptr;
}

HDDEDATA Request(HSZ topic, HSZ item) {
    const standin::Outcome outcome = reports->Request(NameOf(topic), NameOf(item));
    Misbehave(outcome.act);
    if (outcome.act != standin::Act::Answer) return nullptr;
    std::string bytes = text::Encode(outcome.text, text::Encoding::Windows1252);
    return DdeCreateDataHandle(instance, reinterpret_cast<BYTE*>(bytes.data()),
                               static_cast<DWORD>(bytes.size() + 1), 0, item, CF_TEXT, 0);
}

HDDEDATA Poke(HSZ topic, HSZ item, HDDEDATA data) {
    DWORD size = 0;
    const BYTE* const bytes = DdeAccessData(data, &size);
    std::string text(reinterpret_cast<const char*>(bytes), bytes == nullptr ? 0 : size);
    DdeUnaccessData(data);
    text.resize(std::min(text.find('\0'), text.size()));
    const standin::Outcome outcome = reports->Poke(NameOf(topic), NameOf(item), text::FromWindows1252(text));
    Misbehave(outcome.act);
    switch (outcome.act) {
        case standin::Act::Answer:
            return reinterpret_cast<HDDEDATA>(DDE_FACK);
        case standin::Act::Busy:
            return reinterpret_cast<HDDEDATA>(DDE_FBUSY);
        default:
            return reinterpret_cast<HDDEDATA>(DDE_FNOTPROCESSED);
    }
}

HDDEDATA CALLBACK Answer(UINT type, UINT format, HCONV, HSZ topic, HSZ item, HDDEDATA data, ULONG_PTR,
                         ULONG_PTR) {
    try {
        switch (type) {
            case XTYP_CONNECT:
                return Connect(topic);
            case XTYP_REQUEST:
                return format == CF_TEXT ? Request(topic, item) : nullptr;
            case XTYP_POKE:
                return format == CF_TEXT ? Poke(topic, item, data) : nullptr;
            default:
                return nullptr;
        }
    } catch (const Fault& fault) {
        std::fprintf(stderr, "KRN: %s\n", fault.description.c_str());
        return nullptr;
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("KRN FILE: stands in for the appraisal program with the reports of FILE.\n", stderr);
        return 2;
    }
    try {
        standin::Reports open{argv[1]};
        reports = &open;
        if (DdeInitializeA(&instance, Answer, APPCLASS_STANDARD, 0) != DMLERR_NO_ERROR) return 1;
        const HSZ service = DdeCreateStringHandleA(instance, "KRN", CP_WINANSI);
        if (DdeNameService(instance, service, nullptr, DNS_REGISTER) == nullptr) return 1;
        std::puts("ready");
        std::fflush(stdout);
        // A program with an open report does not write its file at each keystroke either.
        SetTimer(nullptr, 0, 20, nullptr);
        MSG message;
        while (GetMessageA(&message, nullptr, 0, 0) > 0) {
            if (message.message == WM_TIMER) reports->Save();
            DispatchMessageA(&message);
        }
    } catch (const Fault& fault) {
        std::fprintf(stderr, "KRN: %s, line %ld: %s\n", fault.place.file.c_str(), fault.place.line,
                     fault.description.c_str());
        return 3;
    }
    return 0;
}
