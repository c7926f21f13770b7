#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "support/memory_disk.h"

namespace zenvora::testing_support {

/// A disk in memory whose files are texts.
class TextDisk : public MemoryDisk {
  public:
    void Set(const std::string& name, std::string_view text) {
        const auto bytes = std::as_bytes(std::span(text.data(), text.size()));
        Put(name, {bytes.begin(), bytes.end()});
    }
    [[nodiscard]] std::string Get(const std::string& name) {
        std::string text;
        for (const std::byte b : Content(name))
            text.push_back(static_cast<char>(b));
        return text;
    }
};

}  // namespace zenvora::testing_support
