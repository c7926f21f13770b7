#pragma once

#include <ostream>

#include "cli/values.h"

namespace zenvora::cli {

/// The elements of a JSON array, one a line, and the end of the object that holds it. Written as they come,
/// for they may be a million.
class JsonLines {
  public:
    /// The object's text up to the array's opening bracket has been written.
    explicit JsonLines(std::ostream& out) : out_(out) {}
    void Add(const Json& element) {
        out_ << (first_ ? "\n" : ",\n") << Compact(element);
        first_ = false;
    }
    void End() const { out_ << (first_ ? "" : "\n") << "]}\n"; }

  private:
    std::ostream& out_;
    bool first_ = true;
};

}  // namespace zenvora::cli
