#include "platform/jet/detail/header.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/fault.h"
#include "platform/jet/detail/bytes.h"
#include "platform/jet/detail/layout.h"

namespace zenvora::jet::detail {

namespace {
constexpr char kName[] = "Standard Jet DB";
constexpr char kNewerName[] = "Standard ACE DB";
constexpr std::size_t kNameAt = 4;
constexpr std::size_t kVersionAt = 0x14;
constexpr std::size_t kMaskedAt = 0x18;
constexpr std::size_t kCodePageAt = 0x3C;
constexpr std::size_t kEncryptionKeyAt = 0x3E;
constexpr std::size_t kPasswordAt = 0x42;
constexpr std::size_t kDateAt = 0x72;
constexpr std::size_t kCommitBytesAt = 0xE00;

/// XORed over the bytes from 0x18: applying it twice gives the original.
constexpr std::array<std::uint8_t, 128> kMask{
    0xB5, 0x6F, 0x03, 0x62, 0x61, 0x08, 0xC2, 0x55, 0xEB, 0xA9, 0x67, 0x72, 0x43, 0x3F, 0x00, 0x9C,
    0x7A, 0x9F, 0x90, 0xFF, 0x80, 0x9A, 0x31, 0xC5, 0x79, 0xBA, 0xED, 0x30, 0xBC, 0xDF, 0xCC, 0x9D,
    0x63, 0xD9, 0xE4, 0xC3, 0x7B, 0x42, 0xFB, 0x8A, 0xBC, 0x4E, 0x86, 0xFB, 0xEC, 0x37, 0x5D, 0x44,
    0x9C, 0xFA, 0xC6, 0x5E, 0x28, 0xE6, 0x13, 0xB6, 0x8A, 0x60, 0x54, 0x94, 0x7B, 0x36, 0xF5, 0x72,
    0xDF, 0xB1, 0x77, 0xF4, 0x13, 0x43, 0xCF, 0xAF, 0xB1, 0x33, 0x34, 0x61, 0x79, 0x5B, 0x92, 0xB5,
    0x7C, 0x2A, 0x05, 0xF1, 0x7C, 0x99, 0x01, 0x1B, 0x98, 0xFD, 0x12, 0x4F, 0x4A, 0x94, 0x6C, 0x3E,
    0x60, 0x26, 0x5F, 0x95, 0xF8, 0xD0, 0x89, 0x24, 0x85, 0x67, 0xC6, 0x1F, 0x27, 0x44, 0xD2, 0xEE,
    0xCF, 0x65, 0xED, 0xFF, 0x07, 0xC7, 0x46, 0xA1, 0x78, 0x16, 0x0C, 0xED, 0xE9, 0x2D, 0x62, 0xD4};

/// The masked area of a new file, unmasked: map pointers, system tables, code page 1252, no password, build
/// 0x261C, General order, creation date.
constexpr std::array<std::uint8_t, 8> kCreationDate{0x3E, 0x85, 0xD3, 0x3B, 0x3E, 0xAB, 0xE4, 0x40};

void ApplyMask(std::byte* page, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        page[kMaskedAt + i] ^= static_cast<std::byte>(kMask[i]);
}
}  // namespace

Layout CheckHeader(files::HostFile& file, const std::filesystem::path& path, bool forWriting) {
    Place place;
    place.file = path.string();
    const auto refuse = [&](int number, const std::string& text) { throw Fault{number, text, place}; };
    const std::uint64_t size = file.Size();
    if (size == 0)
        refuse(fault::kNotADatabook,
               "the file is empty: it is no Databook. Choose another file, or make a new Databook");
    std::array<std::byte, kHeaderSize> page{};
    file.ReadAt(0, std::span(page).first(std::min<std::uint64_t>(size, page.size())));
    const auto named = [&](const char* name) {
        return std::memcmp(page.data() + kNameAt, name, sizeof kName) == 0;
    };
    if (size > kVersionAt && U32(page.data()) == 0x100 && named(kNewerName)) {
        refuse(fault::kUnsupported,
               "this is a database of Access 2007 or later (.accdb): save it in Access as an .mdb file of "
               "Access 2002-2003");
    }
    if (size <= kVersionAt || U32(page.data()) != 0x100 || !named(kName)) {
        refuse(fault::kNotADatabook, "this is no Access database, so no Databook: choose an .mdb file");
    }
    const unsigned version = U8(page.data() + kVersionAt);
    if (version == kJet3.version && forWriting) {
        refuse(fault::kUnsupported,
               "this is a database of Access 97: convert it first (zenvora-cli convert)");
    }
    if (version > kJet4.version) {
        refuse(fault::kUnsupported,
               "this is a database of a newer version of Access: save it in the format of Access 2002-2003");
    }
    Layout layout = version == kJet3.version ? kJet3 : kJet4;
    if (size < 3 * layout.pageSize)
        refuse(fault::kDamaged, "the Databook is cut off: restore it from a backup copy");
    if (size % layout.pageSize != 0 && forWriting) {
        refuse(
            fault::kDamaged,
            "the Databook is damaged or cut off (its size is no whole number of pages): go on with a backup "
            "copy, or save what can be read of it (zenvora-cli repair)");
    }
    ApplyMask(page.data(), layout.maskedSize);
    if (U32(page.data() + kEncryptionKeyAt) != 0) {
        refuse(fault::kUnsupported, "this database is encoded (encrypted): decode it in Access first");
    }
    const auto date = static_cast<std::int32_t>(
        std::clamp(LoadAs<double>(page.data() + kDateAt), -2147483000.0, 2147483000.0));
    const auto* const dateMask = reinterpret_cast<const std::byte*>(&date);
    for (std::size_t i = 0; i < layout.passwordSize; ++i) {
        const std::byte hidden = layout.passwordHidesInDate ? dateMask[i % 4] : std::byte{0};
        if (page[kPasswordAt + i] != hidden) {
            refuse(fault::kPassword, "this database has a password: remove the password in Access first");
        }
    }
    if (const std::uint16_t codePage = U16(page.data() + kCodePageAt); layout.codePage != 0 && codePage != 0)
        layout.codePage = codePage;
    return layout;
}

std::vector<std::byte> UnmaskedHeader(std::span<const std::byte> page, std::size_t maskedSize) {
    std::vector<std::byte> header(page.begin(), page.end());
    ApplyMask(header.data(), maskedSize);
    return header;
}

void MakeHeader(std::span<std::byte> page) {
    std::byte* const at = page.data();
    PutU32(at, 0x100);
    std::memcpy(at + kNameAt, kName, sizeof kName);
    PutU32(at + kVersionAt, 1);
    PutU32(at + 0x18, RowPointer::Of(1, 0).value);
    PutU32(at + 0x1C, RowPointer::Of(1, 1).value);
    for (PageNumber table = 2; table <= 5; ++table)
        PutU32(at + 0x20 + 4 * (table - 2), table);
    PutU16(at + kCodePageAt, kWindows1252);
    std::memcpy(at + kDateAt, kCreationDate.data(), kCreationDate.size());
    const auto date = static_cast<std::int32_t>(LoadAs<double>(at + kDateAt));
    for (std::size_t i = 0; i < kJet4.passwordSize; i += 4)
        StoreAs(at + kPasswordAt + i, date);
    PutU32(at + 0x6A, 0x261C);
    PutU32(at + 0x6E, kGeneralOrder);
    ApplyMask(at, kJet4.maskedSize);
    PutU32(at + 0x98, 1620);
    std::memcpy(at + 0x9C, "4.0", 4);
    for (std::size_t i = 0; i < 256; ++i) {
        PutU8(at + kCommitBytesAt + 2 * i, i == 0 ? 1U : 0U);
        PutU8(at + kCommitBytesAt + 2 * i + 1, 1);
    }
}

}  // namespace zenvora::jet::detail
