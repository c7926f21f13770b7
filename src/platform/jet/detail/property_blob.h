#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/table_definition.h"

namespace zenvora::jet::detail {

/// The properties of an object and its columns (LvProp of the catalog). What it does not know it keeps byte
/// for byte.
class PropertyBlob {
  public:
    /// An empty blob.
    PropertyBlob() = default;
    /// Reads a blob. An unknown or broken one is kept as it is and has no properties; Broken tells.
    /// `codePage`: that of a file of Access 97, whose names and texts have one byte a character; 0: UTF-16.
    /// Fault 20001: a text of an unknown code page.
    explicit PropertyBlob(std::span<const std::byte> bytes, std::uint16_t codePage = 0);

    [[nodiscard]] bool Broken() const noexcept { return broken_; }
    [[nodiscard]] bool Empty() const noexcept { return chunks_.empty(); }
    /// The properties of a column, by its name without regard to case.
    [[nodiscard]] ColumnProperties Of(std::string_view column) const;
    /// Sets what the engine keeps of a column, as data definition statements would.
    void SetDefault(std::string_view column, std::string_view expression);
    void SetRequired(std::string_view column, bool required);
    void SetAllowZeroLength(std::string_view column, bool allowed);

    /// The same properties in the form of Access 2000 and later, whatever the file they come from.
    [[nodiscard]] PropertyBlob InUtf16() const;

    /// The blob for the file. Of one of Access 97 that was not changed (see InUtf16) the bytes as found.
    [[nodiscard]] std::vector<std::byte> Bytes() const;

  private:
    struct Property {
        std::uint16_t name = 0;
        std::uint8_t flag = 0, type = 0;
        std::vector<std::byte> value;
    };
    struct Chunk {
        std::uint16_t type = 0;
        std::string owner;
        std::vector<Property> properties;
        std::vector<std::byte> raw;  ///< the content as found; used when the chunk was not changed
        bool changed = false;
    };

    [[nodiscard]] std::string Text(std::span<const std::byte> bytes) const;
    [[nodiscard]] std::optional<std::uint16_t> NamePosition(std::string_view name) const;
    void Set(std::string_view column, std::string_view name, std::uint8_t type, std::vector<std::byte> value);

    bool broken_ = false;
    std::vector<std::byte> original_;
    std::uint16_t codePage_ = 0;
    std::vector<std::string> names_;
    std::vector<Chunk> chunks_;
};

}  // namespace zenvora::jet::detail
