#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fault.h"

namespace zenvora::importing {

/// The load log: a list of lines that is only added to and emptied. A load of 32,000 rows adds more than a
/// million and a half, so they lie in one piece of memory.
class LoadLog {
  public:
    void AddItem(std::string_view line) {
        texts_.append(line);
        ends_.push_back(texts_.size());
    }
    void Clear() {
        texts_.clear();
        ends_.clear();
    }
    [[nodiscard]] std::size_t ListCount() const noexcept { return ends_.size(); }
    /// A line from 0, valid until the log changes. Fault 9: there is no such line.
    [[nodiscard]] std::string_view List(std::size_t index) const {
        if (index >= ends_.size())
            throw Fault{fault::kSubscript, "The load log has no line " + std::to_string(index) + "."};
        const std::size_t start = index == 0 ? 0 : ends_[index - 1];
        return std::string_view(texts_).substr(start, ends_[index] - start);
    }

  private:
    std::string texts_;
    std::vector<std::size_t> ends_;
};

}  // namespace zenvora::importing
