// Repairing a damaged .mdb file: it ends, changes nothing in the damaged file, and what it makes is sound.

#include <cstring>

#include "databook_bytes.h"
#include "platform/fault.h"
#include "platform/jet/repair.h"
#include "platform/jet/verify.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    constexpr const char* kSaved = "saved.mdb";
    auto disk = fuzz::DiskWith(data, size);
    const bool saved = fuzz::Tolerate([&] {
        try {
            static_cast<void>(jet::Repair(fuzz::kDatabook, kSaved, 46000, disk));
        } catch (const Fault& fault) {
            // Damage is none: only what the file is may keep it from being saved.
            if (fault.number != fault::kNotADatabook && fault.number != fault::kPassword &&
                fault.number != fault::kUnsupported)
                __builtin_trap();
            throw;
        }
    });
    const auto& bytes = disk.Content(fuzz::kDatabook);
    if (bytes.size() != size || (size > 0 && std::memcmp(bytes.data(), data, size) != 0)) __builtin_trap();
    if (saved != disk.Exists(kSaved)) __builtin_trap();
    if (saved && !jet::Verify(kSaved, disk).Sound()) __builtin_trap();
    return 0;
}
