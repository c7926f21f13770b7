#include "platform/jet/detail/verify_header.h"

#include <array>

#include "platform/jet/detail/bytes.h"
#include "platform/jet/detail/header.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kPointersAt = 0x18;
constexpr std::size_t kSortOrderAt = 0x6E;
constexpr std::size_t kCommitPairs = 256;
}  // namespace

void CheckHeaderDetails(Pager& pager, Findings& findings) {
    const Layout& layout = pager.Format();
    const Spot spot = Spot{}.On(0);
    const std::vector<std::byte> header = UnmaskedHeader({pager.Read(0), layout.pageSize}, layout.maskedSize);
    // The two maps of page 1, then the definitions of the four system tables.
    static constexpr std::array<std::uint32_t, 6> kPointers{0x100, 0x101, 2, 3, 4, 5};
    for (std::size_t i = 0; i < kPointers.size(); ++i) {
        if (U32(header.data() + kPointersAt + 4 * i) != kPointers[i]) {
            findings.Error(spot, "the header does not lead to the maps and system tables");
            break;
        }
    }
    if (layout.version == kJet4.version && U32(header.data() + kSortOrderAt) != kGeneralOrder) {
        findings.Note(spot, "the file has another sort order than General: keys of texts are not compared");
    }
    const std::size_t commitAt = layout.version == kJet3.version ? 0x600 : 0xE00;
    for (std::size_t i = 0; i < kCommitPairs; ++i) {
        if (U16(header.data() + commitAt + 2 * i) == 0) {
            findings.Note(spot, "another program may have died while it wrote to the file (commit bytes)");
            break;
        }
    }
}

}  // namespace zenvora::jet::detail
