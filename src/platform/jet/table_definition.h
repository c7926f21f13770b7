#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/value.h"

namespace zenvora::jet {

/// Properties of a column that the engine keeps to when it writes. Read from and written to the property
/// blob.
struct ColumnProperties {
    std::optional<std::string> defaultValue;  ///< the stored expression, e.g. `0`, `"3"`, `#1/1/1900#`
    bool required = false;                    ///< Null is refused
    bool allowZeroLength = true;              ///< false: the empty text is refused (Text and Memo)
};

struct ColumnDefinition {
    std::string name;
    ColumnType type = ColumnType::Text;
    std::uint16_t number = 0;         ///< bit in a row's null mask; unique, gaps where columns were deleted
    std::uint16_t variableIndex = 0;  ///< place among the variable values of a row
    std::uint16_t fixedOffset = 0;    ///< place in the fixed area of a row
    std::uint16_t byteLength = 0;     ///< declared length in bytes; 0 for Memo and OLE
    bool fixedLength = false;         ///< the value lies in the fixed area (true for CHAR(n) texts)
    bool autoNumber = false;
    bool compressed = false;     ///< Text may be stored one byte a character
    std::uint8_t precision = 0;  ///< Numeric
    std::uint8_t scale = 0;      ///< Numeric
    std::uint16_t sortOrder = 0x0409;
    std::uint8_t sortVersion = 0;
    std::uint16_t codePage = 0;  ///< of texts stored one byte a character (Access 97); 0: UTF-16
    std::uint8_t flags = 0;      ///< as in the file
    ColumnProperties properties;

    /// Most characters of a Text column; 0 for other types.
    [[nodiscard]] int CharacterLimit() const noexcept;
};

struct IndexColumn {
    std::uint16_t column = 0;  ///< column number (not position)
    bool ascending = true;
};

/// A real index, that is, one B-tree, with the names of the logical indexes that use it.
struct IndexDefinition {
    std::vector<std::string> names;
    std::vector<IndexColumn> columns;
    bool unique = false;
    bool ignoreNulls = false;
    bool required = false;
    bool primaryKey = false;
    bool foreignKey = false;  ///< a relationship uses it
};

struct TableDefinition {
    std::string name;
    std::vector<ColumnDefinition> columns;  ///< in the order of the file
    std::vector<IndexDefinition> indexes;
    bool systemTable = false;

    /// Position in `columns` of a name, compared without regard to case.
    [[nodiscard]] std::optional<std::size_t> FindColumn(std::string_view columnName) const;
    /// Position in `indexes` of the primary key.
    [[nodiscard]] std::optional<std::size_t> PrimaryKey() const;
};

/// A column to be created, in SQL's terms.
struct NewColumn {
    std::string name;
    ColumnType type = ColumnType::Text;
    int characters = 0;        ///< Text only, 1 to 255
    bool fixedLength = false;  ///< CHAR(n) instead of TEXT(n)
    bool autoNumber = false;
    std::uint8_t precision = 18;
    std::uint8_t scale = 0;
    ColumnProperties properties;
};

struct NewIndex {
    std::string name;
    std::vector<std::string> columns;
    std::vector<bool> descending;  ///< empty: all ascending
    bool unique = false;
    bool ignoreNulls = false;
    bool required = false;
    bool primaryKey = false;  ///< implies unique and required
};

struct NewTable {
    std::string name;
    std::vector<NewColumn> columns;
    std::vector<NewIndex> indexes;
};

}  // namespace zenvora::jet
