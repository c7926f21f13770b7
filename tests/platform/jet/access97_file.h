#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Pages of a file of Access 97, laid out byte by byte with its own numbers: what the engine, which never
/// writes such a file, is to read.
namespace zenvora::jet::testing_support {

using FileBytes = std::vector<std::byte>;

/// Little-endian bytes, put behind one another.
class ByteWriter {
  public:
    ByteWriter& U8(unsigned value);
    ByteWriter& U16(unsigned value);
    ByteWriter& U32(std::uint32_t value);
    ByteWriter& F64(double value);
    ByteWriter& Text(std::string_view bytes);
    ByteWriter& Hex(std::string_view hex);
    ByteWriter& Fill(std::size_t count, unsigned value);
    [[nodiscard]] const FileBytes& Bytes() const { return bytes_; }
    operator FileBytes() const { return bytes_; }

  private:
    FileBytes bytes_;
};

struct Column97 {
    std::string name;
    unsigned type = 0, number = 0, variableIndex = 0, flags = 0, fixedOffset = 0, length = 0;
    unsigned codePage = 1252;
};
struct Index97 {
    std::string name;
    unsigned column = 0;
    bool ascending = true;
    std::uint32_t ownedMap = 0, root = 0;  ///< the map as row-page pointer
    unsigned flags = 0, type = 0;
};
struct Long97 {
    unsigned column = 0;
    std::uint32_t ownedMap = 0, freeMap = 0;
};
struct Table97 {
    char type = 'N';
    std::uint32_t rows = 0;
    unsigned maxColumns = 0, variableCount = 0;
    std::uint32_t ownedMap = 0, freeMap = 0;
    std::vector<Column97> columns;
    std::vector<Index97> indexes;
    std::vector<Long97> longColumns;
};

/// The joined definition, the page header of 8 bytes in front.
[[nodiscard]] FileBytes Definition97(const Table97& table);

/// A row: column count, fixed area, variable values (nothing: no value), their offsets with the jump table,
/// null mask. `mask` has one bit for each column, the first one lowest.
[[nodiscard]] FileBytes Row97(unsigned columns, const FileBytes& fixed,
                              const std::vector<std::optional<FileBytes>>& variable, std::uint32_t mask);

inline constexpr std::uint32_t Pointer97(std::uint32_t page, std::uint32_t row) {
    return page << 8 | row;
}

/// A file of as many pages as are put into it.
class File97 {
  public:
    File97();
    /// A page of rows; each with the flags of its slot.
    struct Row {
        FileBytes bytes;
        unsigned flags = 0;
    };
    void PutRows(std::uint32_t page, std::uint32_t owner, const std::vector<Row>& rows);
    void PutDefinition(const std::vector<std::uint32_t>& pages, const Table97& table);
    /// An index page; entries behind the first lack the `prefix` bytes that they share with it.
    void PutIndex(std::uint32_t page, bool leaf, std::uint32_t owner, std::uint32_t previous,
                  std::uint32_t next, std::uint32_t tail, unsigned prefix,
                  const std::vector<std::string>& entries);
    /// Changes bytes of the header that are stored masked.
    void PutMasked(std::size_t at, std::string_view hex);
    [[nodiscard]] FileBytes& Bytes() { return bytes_; }

  private:
    std::byte* Page(std::uint32_t page);
    FileBytes bytes_;
};

/// The row of a usage map with these pages.
[[nodiscard]] FileBytes Map97(const std::vector<std::uint32_t>& pages);

inline constexpr std::uint32_t kSales97 = 5;  ///< definition page of the table of SampleFile97

/// One table "Sales" with texts, a memo, numbers, a deleted row, a moved one, one of before a column was
/// added, an index of three pages, properties.
[[nodiscard]] File97 SampleFile97();

}  // namespace zenvora::jet::testing_support
