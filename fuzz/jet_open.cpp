// Opening a damaged .mdb file and reading all of it: every outcome is rows or a Fault.

#include "databook_bytes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zenvora;
    auto disk = fuzz::DiskWith(data, size);
    fuzz::Tolerate([&] {
        const auto databook = jet::Database::Open(fuzz::kDatabook, jet::Database::Access::ReadOnly, disk);
        fuzz::ReadAll(*databook);
    });
    return 0;
}
