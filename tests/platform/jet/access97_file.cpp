#include "access97_file.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "hex.h"

namespace zenvora::jet::testing_support {

namespace {
constexpr std::size_t kPage = 2048;

/// XORed over the header from byte 24.
constexpr std::string_view kMask =
    "B5 6F 03 62 61 08 C2 55 EB A9 67 72 43 3F 00 9C 7A 9F 90 FF 80 9A 31 C5 79 BA ED 30 BC DF CC 9D"
    "63 D9 E4 C3 7B 42 FB 8A BC 4E 86 FB EC 37 5D 44 9C FA C6 5E 28 E6 13 B6 8A 60 54 94 7B 36 F5 72"
    "DF B1 77 F4 13 43 CF AF B1 33 34 61 79 5B 92 B5 7C 2A 05 F1 7C 99 01 1B 98 FD 12 4F 4A 94 6C 3E"
    "60 26 5F 95 F8 D0 89 24 85 67 C6 1F 27 44 D2 EE CF 65 ED FF 07 C7 46 A1 78 16 0C ED E9 2D";

void Put16(std::byte* at, std::size_t value) {
    at[0] = static_cast<std::byte>(value & 0xFF);
    at[1] = static_cast<std::byte>(value >> 8 & 0xFF);
}
void Put32(std::byte* at, std::size_t value) {
    Put16(at, value);
    Put16(at + 2, value >> 16);
}

FileBytes Chars(std::string_view text) {
    return ByteWriter().Text(text);
}
}  // namespace

ByteWriter& ByteWriter::U8(unsigned value) {
    bytes_.push_back(static_cast<std::byte>(value));
    return *this;
}
ByteWriter& ByteWriter::U16(unsigned value) {
    return U8(value & 0xFF).U8(value >> 8 & 0xFF);
}
ByteWriter& ByteWriter::U32(std::uint32_t value) {
    return U16(value & 0xFFFF).U16(value >> 16);
}
ByteWriter& ByteWriter::F64(double value) {
    std::array<std::byte, 8> raw{};
    std::memcpy(raw.data(), &value, raw.size());
    bytes_.insert(bytes_.end(), raw.begin(), raw.end());
    return *this;
}
ByteWriter& ByteWriter::Text(std::string_view bytes) {
    for (const char c : bytes)
        bytes_.push_back(static_cast<std::byte>(c));
    return *this;
}
ByteWriter& ByteWriter::Hex(std::string_view hex) {
    return Text(FromHex(hex));
}
ByteWriter& ByteWriter::Fill(std::size_t count, unsigned value) {
    bytes_.insert(bytes_.end(), count, static_cast<std::byte>(value));
    return *this;
}

FileBytes Definition97(const Table97& table) {
    ByteWriter out;
    out.Hex("02 01 56 43").U32(0).U32(0);  // length: below
    out.U32(table.rows).U32(0);            // rows, auto-number
    out.U8(static_cast<unsigned char>(table.type));
    out.U16(table.maxColumns).U16(table.variableCount).U16(static_cast<unsigned>(table.columns.size()));
    const auto indexes = static_cast<std::uint32_t>(table.indexes.size());
    out.U32(indexes).U32(indexes).U32(table.ownedMap).U32(table.freeMap);
    out.Fill(8 * table.indexes.size(), 0);
    for (const Column97& column : table.columns) {
        out.U8(column.type).U16(column.number).U16(column.variableIndex).U16(column.number).U16(0);
        out.U16(0x0409).U16(column.codePage).U8(column.flags).U16(column.fixedOffset).U16(column.length);
    }
    for (const Column97& column : table.columns)
        out.U8(static_cast<unsigned>(column.name.size())).Text(column.name);
    for (const Index97& index : table.indexes) {
        out.U16(index.column).U8(index.ascending ? 1 : 0);
        for (int unused = 1; unused < 10; ++unused)
            out.U16(0xFFFF).U8(0xAA);
        out.U32(index.ownedMap).U32(index.root).U8(index.flags);
    }
    for (std::uint32_t i = 0; i < indexes; ++i) {
        out.U32(i).U32(i).U8(0).U32(0xFFFFFFFF).U32(0).U8(4).U8(4).U8(table.indexes[i].type);
    }
    for (const Index97& index : table.indexes)
        out.U8(static_cast<unsigned>(index.name.size())).Text(index.name);
    for (const Long97& each : table.longColumns)
        out.U16(each.column).U32(each.ownedMap).U32(each.freeMap);
    out.U16(0xFFFF);
    FileBytes bytes = out;
    Put32(bytes.data() + 8, bytes.size());
    return bytes;
}

FileBytes Row97(unsigned columns, const FileBytes& fixed,
                const std::vector<std::optional<FileBytes>>& variable, std::uint32_t mask) {
    FileBytes row = ByteWriter().U8(columns);
    row.insert(row.end(), fixed.begin(), fixed.end());
    std::vector<std::size_t> offsets;
    for (const auto& value : variable) {
        offsets.push_back(row.size());
        if (value) row.insert(row.end(), value->begin(), value->end());
    }
    offsets.push_back(row.size());
    const std::size_t maskSize = (columns + 7) / 8;
    std::size_t jumps = 0;
    while (jumps != (row.size() + offsets.size() + jumps + 1 + maskSize - 1) / 256)
        ++jumps;
    ByteWriter tail;
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset)
        tail.U8(static_cast<unsigned>(*offset & 0xFF));
    for (std::size_t jump = jumps; jump-- > 0;) {
        const auto first = std::find_if(offsets.begin(), offsets.end(),
                                        [&](std::size_t offset) { return offset >= 256 * (jump + 1); });
        tail.U8(first == offsets.end() ? 0xFF : static_cast<unsigned>(first - offsets.begin()));
    }
    tail.U8(static_cast<unsigned>(variable.size()));
    for (std::size_t i = 0; i < maskSize; ++i)
        tail.U8(i < sizeof mask ? mask >> (8 * i) & 0xFF : 0U);
    row.insert(row.end(), tail.Bytes().begin(), tail.Bytes().end());
    return row;
}

File97::File97() {
    std::byte* const header = Page(0);
    Put32(header, 0x100);
    std::memcpy(header + 4, "Standard Jet DB", 16);
    const std::string mask = FromHex(kMask);
    for (std::size_t i = 0; i < mask.size(); ++i)
        header[0x18 + i] = static_cast<std::byte>(mask[i]);
    PutMasked(0x38, "01 00 09 04 E4 04");  // sort order and code page
}

std::byte* File97::Page(std::uint32_t page) {
    bytes_.resize(std::max(bytes_.size(), (std::size_t{page} + 1) * kPage));
    return bytes_.data() + page * kPage;
}

void File97::PutMasked(std::size_t at, std::string_view hex) {
    const std::string mask = FromHex(kMask);
    for (const char c : FromHex(hex)) {
        Page(0)[at] = static_cast<std::byte>(c ^ mask[at - 0x18]);
        ++at;
    }
}

void File97::PutRows(std::uint32_t page, std::uint32_t owner, const std::vector<Row>& rows) {
    std::byte* const at = Page(page);
    std::fill(at, at + kPage, std::byte{0});
    Put16(at, 0x0101);
    Put32(at + 4, owner);
    Put16(at + 8, rows.size());
    std::size_t low = kPage;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        low -= rows[i].bytes.size();
        std::copy(rows[i].bytes.begin(), rows[i].bytes.end(), at + low);
        Put16(at + 10 + 2 * i, low | rows[i].flags);
    }
    Put16(at + 2, low - 10 - 2 * rows.size());
}

void File97::PutDefinition(const std::vector<std::uint32_t>& pages, const Table97& table) {
    const FileBytes bytes = Definition97(table);
    std::size_t done = 0;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        std::byte* const at = Page(pages[i]);
        // A page that goes on begins with a header of its own.
        const std::size_t head = i == 0 ? 0 : 8;
        const std::size_t count = std::min(kPage - head, bytes.size() - done);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(done), count, at + head);
        Put16(at, 0x0102);
        std::memcpy(at + 2, "VC", 2);
        Put32(at + 4, i + 1 < pages.size() ? pages[i + 1] : 0);
        done += count;
    }
}

void File97::PutIndex(std::uint32_t page, bool leaf, std::uint32_t owner, std::uint32_t previous,
                      std::uint32_t next, std::uint32_t tail, unsigned prefix,
                      const std::vector<std::string>& entries) {
    std::byte* const at = Page(page);
    Put16(at, leaf ? 0x0104 : 0x0103);
    Put32(at + 4, owner);
    Put32(at + 8, previous);
    Put32(at + 12, next);
    Put32(at + 16, tail);
    at[20] = static_cast<std::byte>(prefix);
    at[21] = static_cast<std::byte>(leaf ? 0 : 1);  // not a part of the prefix length
    std::size_t end = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string part = entries[i].substr(i == 0 ? 0 : prefix);
        std::memcpy(at + 248 + end, part.data(), part.size());
        end += part.size();
        at[22 + end / 8] |= static_cast<std::byte>(1U << (end % 8));
    }
    Put16(at + 2, 1800 - end);
}

FileBytes Map97(const std::vector<std::uint32_t>& pages) {
    FileBytes row(133);
    for (const std::uint32_t page : pages)
        row[5 + page / 8] |= static_cast<std::byte>(1U << (page % 8));
    return row;
}

File97 SampleFile97() {
    constexpr std::uint32_t kMaps = 3;
    constexpr std::uint32_t kCatalogRows = 4;
    constexpr std::uint32_t kMore = 6;  // the rest of the definition of Sales
    constexpr std::uint32_t kRows = 7;
    constexpr std::uint32_t kMovedRows = 8;
    constexpr std::uint32_t kRoot = 9;
    constexpr std::uint32_t kFirstLeaf = 10;
    constexpr std::uint32_t kLastLeaf = 11;
    constexpr std::uint32_t kLong = 12;
    constexpr std::uint32_t kLongEnd = 13;
    constexpr std::uint32_t kLongOwner = 0x4C41564C;
    const auto map = [](std::uint32_t row) { return Pointer97(kMaps, row); };

    File97 file;
    file.PutRows(1, 1, {{Map97({})}, {Map97({})}});
    file.PutRows(kMaps, 0,
                 {{Map97({kCatalogRows})},
                  {Map97({kCatalogRows})},
                  {Map97({kRows, kMovedRows})},
                  {Map97({})},
                  {Map97({kRoot, kFirstLeaf, kLastLeaf})},
                  {Map97({kLong, kLongEnd})},
                  {Map97({})}});

    Table97 catalog;
    catalog.type = 'S';
    catalog.rows = 2;
    catalog.maxColumns = 6;
    catalog.variableCount = 2;
    catalog.ownedMap = map(0);
    catalog.freeMap = map(1);
    catalog.columns = {{"Id", 4, 0, 0, 0x13, 0, 4},      {"ParentId", 4, 1, 0, 0x13, 4, 4},
                       {"Name", 10, 2, 0, 0x12, 0, 255}, {"Type", 3, 3, 1, 0x13, 8, 2},
                       {"Flags", 4, 4, 1, 0x13, 10, 4},  {"LvProp", 11, 5, 1, 0x12, 0, 0}};
    file.PutDefinition({2}, catalog);
    const auto object = [](std::uint32_t id, unsigned flags, std::string_view name,
                           const std::optional<FileBytes>& properties) {
        const FileBytes fixed = ByteWriter().U32(id).U32(0x0F000001).U16(1).U32(flags << 24);
        return Row97(6, fixed, {Chars(name), properties}, properties ? 0x3F : 0x1F);
    };
    // Property Required of column Pri(e with acute), inline.
    const FileBytes properties = ByteWriter()
                                     .Hex("2D 00 00 80 00 00 00 00 00 00 00 00")
                                     .Text(std::string_view("KKD\0", 4))
                                     .Hex("10 00 00 00 80 00 08 00")
                                     .Text("Required")
                                     .Hex("19 00 00 00 01 00 0A 00 00 00 04 00")
                                     .Text("Pri\xE9")
                                     .Hex("09 00 01 01 00 00 01 00 01");
    file.PutRows(
        kCatalogRows, 2,
        {{object(2, 0x80, "MSysObjects", std::nullopt)}, {object(kSales97, 0, "Sales", properties)}});

    Table97 sales;
    sales.rows = 4;
    sales.maxColumns = 90;
    sales.variableCount = 2;
    sales.ownedMap = map(2);
    sales.freeMap = map(3);
    sales.columns = {{"Street", 10, 0, 0, 2, 0, 50},
                     {"Story", 12, 1, 1, 2, 0, 0},
                     {"Pri\xE9", 7, 2, 2, 3, 0, 8},
                     {"Sold", 1, 3, 2, 3, 0, 1},
                     {"Code", 10, 4, 2, 3, 8, 4}};
    // Many more, so that the definition runs over its page.
    for (unsigned number = 5; number < sales.maxColumns; ++number)
        sales.columns.push_back({"Flag" + std::to_string(number), 1, number, 2, 3, 0, 1});
    sales.indexes = {{"PrimaryKey", 0, true, map(4), kRoot, 0x09, 1}};
    sales.longColumns = {{1, map(5), map(6)}};
    file.PutDefinition({kSales97, kMore}, sales);

    const auto fixed = [](double price, std::string_view code) {
        return ByteWriter().F64(price).Text(code).Bytes();
    };
    const FileBytes inlineStory = ByteWriter().Hex("05 00 00 80 00 00 00 00 00 00 00 00").Text("Caf\xE9!");
    const FileBytes chained =
        ByteWriter().U32(3000).U32(Pointer97(kLong, 0)).U32(0);  // over two pages, the kind being 0
    const FileBytes onePage = ByteWriter().U32(0x40000000 | 700).U32(Pointer97(kLongEnd, 1)).U32(0);
    file.PutRows(kRows, kSales97,
                 {{Row97(90, fixed(259900.5, "AB  "), {Chars("12 Oak St"), inlineStory}, 0x1F)},
                  {{}, 0xC000},
                  {ByteWriter().U32(Pointer97(kMovedRows, 0)), 0x4000},
                  // Of before "Sold" and "Code": three columns, eight bytes of fixed values.
                  {Row97(3, ByteWriter().F64(-1.5), {Chars("7 Elm \xC4ve"), std::nullopt}, 0x05)},
                  {Row97(90, fixed(0, "    "), {Chars("9 Ash Ct"), onePage}, 0x13)}});
    file.PutRows(kMovedRows, kSales97,
                 {{Row97(90, fixed(100000, "WXYZ"), {Chars(std::string(50, 'M')), chained}, 0x17), 0x8000}});
    file.PutRows(kLong, kLongOwner, {{ByteWriter().U32(Pointer97(kLongEnd, 0)).Fill(2032, 'a')}});
    file.PutRows(kLongEnd, kLongOwner, {{ByteWriter().U32(0).Fill(968, 'b')}, {ByteWriter().Fill(700, 'c')}});

    // 12 Oak St | 7 Elm Ave with a diaeresis, 9 Ash Ct | MMM...: digits before letters.
    const std::string rows = FromHex("00 00 07");
    const auto entry = [&](std::string_view key, unsigned slot) {
        return FromHex(key) + rows + static_cast<char>(slot);
    };
    const std::string oak = entry("7F 57 58 11 72 60 6C 11 76 77 00", 0);
    const std::string elm = entry("7F 5D 11 66 6D 6F 11 60 7A 66 02 60", 3);
    const std::string ash = entry("7F 5F 11 60 76 69 11 62 77 00", 4);
    std::string longKey = FromHex("7F");
    longKey.append(50, '\x6F');
    const std::string moved = longKey + std::string(1, '\0') + rows + '\x02';
    file.PutIndex(kRoot, false, kSales97, 0, 0, kLastLeaf, 0, {elm + FromHex("00 00 00 0A")});
    file.PutIndex(kFirstLeaf, true, kSales97, 0, kLastLeaf, 0, 1, {oak, elm});
    file.PutIndex(kLastLeaf, true, kSales97, kFirstLeaf, 0, 0, 0, {ash, moved});
    return file;
}

}  // namespace zenvora::jet::testing_support
