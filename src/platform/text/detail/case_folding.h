#pragma once

/// One-to-one case partners of Latin-1, Latin Extended-A, Greek and Cyrillic.
///
/// Letters whose partner is more than one character or lies outside these blocks stay as they are (sharp s,
/// the micro sign, the long s, dotless and dotted i), so that a folded text keeps its number of characters
/// and of bytes and a Windows-1252 text stays one.
namespace zenvora::text::detail {

[[nodiscard]] constexpr char32_t UpperOf(char32_t c) noexcept {
    const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
    const bool odd = (c & 1U) != 0;
    if (c < 0x80) return within('a', 'z') ? c - 0x20 : c;
    if (c < 0x100) {
        if (c == 0xFF) return 0x178;
        return within(0xE0, 0xFE) && c != 0xF7 ? c - 0x20 : c;
    }
    if (c < 0x180) {
        if (within(0x100, 0x12F) || within(0x132, 0x137) || within(0x14A, 0x177)) return odd ? c - 1 : c;
        if (within(0x139, 0x148) || within(0x179, 0x17E)) return odd ? c : c - 1;
        return c;
    }
    if (c < 0x386) return c;
    if (c < 0x400) {
        if (c == 0x3AC) return 0x386;
        if (within(0x3AD, 0x3AF)) return c - 0x25;
        if (c == 0x3C2) return 0x3A3;  // final sigma
        if (within(0x3B1, 0x3CB)) return c - 0x20;
        if (c == 0x3CC) return 0x38C;
        if (within(0x3CD, 0x3CE)) return c - 0x3F;
        return c;
    }
    if (c < 0x530) {
        if (within(0x430, 0x44F)) return c - 0x20;
        if (within(0x450, 0x45F)) return c - 0x50;
        if (within(0x460, 0x481) || within(0x48A, 0x4BF) || within(0x4D0, 0x52F)) return odd ? c - 1 : c;
        if (c == 0x4CF) return 0x4C0;
        if (within(0x4C1, 0x4CE)) return odd ? c : c - 1;
    }
    return c;
}

[[nodiscard]] constexpr char32_t LowerOf(char32_t c) noexcept {
    const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
    const bool odd = (c & 1U) != 0;
    if (c < 0x80) return within('A', 'Z') ? c + 0x20 : c;
    if (c < 0x100) return within(0xC0, 0xDE) && c != 0xD7 ? c + 0x20 : c;
    if (c < 0x180) {
        if (within(0x100, 0x12F) || within(0x132, 0x137) || within(0x14A, 0x177)) return odd ? c : c + 1;
        if (c == 0x178) return 0xFF;
        if (within(0x139, 0x148) || within(0x179, 0x17E)) return odd ? c + 1 : c;
        return c;
    }
    if (c < 0x386) return c;
    if (c < 0x400) {
        if (c == 0x386) return 0x3AC;
        if (within(0x388, 0x38A)) return c + 0x25;
        if (c == 0x38C) return 0x3CC;
        if (within(0x38E, 0x38F)) return c + 0x3F;
        if (within(0x391, 0x3AB) && c != 0x3A2) return c + 0x20;
        return c;
    }
    if (c < 0x530) {
        if (within(0x400, 0x40F)) return c + 0x50;
        if (within(0x410, 0x42F)) return c + 0x20;
        if (within(0x460, 0x481) || within(0x48A, 0x4BF) || within(0x4D0, 0x52F)) return odd ? c : c + 1;
        if (c == 0x4C0) return 0x4CF;
        if (within(0x4C1, 0x4CE)) return odd ? c + 1 : c;
    }
    return c;
}

}  // namespace zenvora::text::detail
