#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zenvora::jet::testing_support {

/// "7F 4A" to bytes in a string, for comparison with keys.
inline std::string FromHex(std::string_view hex) {
    std::string bytes;
    int high = -1;
    for (char c : hex) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : -1;
        if (digit < 0) continue;
        if (high < 0) {
            high = digit;
        } else {
            bytes.push_back(static_cast<char>(high * 16 + digit));
            high = -1;
        }
    }
    return bytes;
}

inline std::vector<std::byte> BytesFromHex(std::string_view hex) {
    std::vector<std::byte> bytes;
    for (char c : FromHex(hex))
        bytes.push_back(static_cast<std::byte>(c));
    return bytes;
}

}  // namespace zenvora::jet::testing_support
