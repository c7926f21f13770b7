#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Little-endian integers in page bytes; index entries are big-endian.
namespace zenvora::jet::detail {

static_assert(std::endian::native == std::endian::little, "page access copies native integers");

template <class T>
[[nodiscard]] inline T LoadAs(const std::byte* at) noexcept {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}
template <class T>
inline void StoreAs(std::byte* at, T value) noexcept {
    std::memcpy(at, &value, sizeof value);
}

[[nodiscard]] inline std::uint8_t U8(const std::byte* at) noexcept {
    return static_cast<std::uint8_t>(*at);
}
[[nodiscard]] inline std::uint16_t U16(const std::byte* at) noexcept {
    return LoadAs<std::uint16_t>(at);
}
[[nodiscard]] inline std::uint32_t U32(const std::byte* at) noexcept {
    return LoadAs<std::uint32_t>(at);
}
inline void PutU8(std::byte* at, unsigned value) noexcept {
    *at = static_cast<std::byte>(value);
}
inline void PutU16(std::byte* at, std::size_t value) noexcept {
    StoreAs(at, static_cast<std::uint16_t>(value));
}
inline void PutU32(std::byte* at, std::size_t value) noexcept {
    StoreAs(at, static_cast<std::uint32_t>(value));
}

[[nodiscard]] inline std::uint32_t U24BigEndian(const std::byte* at) noexcept {
    return static_cast<std::uint32_t>(U8(at)) << 16 | static_cast<std::uint32_t>(U8(at + 1)) << 8 |
           U8(at + 2);
}
[[nodiscard]] inline std::uint32_t U32BigEndian(const std::byte* at) noexcept {
    return static_cast<std::uint32_t>(U8(at)) << 24 | U24BigEndian(at + 1);
}

}  // namespace zenvora::jet::detail
