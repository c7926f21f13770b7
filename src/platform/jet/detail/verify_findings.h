#pragma once

#include <map>
#include <string>

#include "platform/jet/detail/layout.h"
#include "platform/jet/verify.h"

namespace zenvora::jet::detail {

/// Where something was found. Names that do not apply stay empty.
struct Spot {
    std::string table, index;
    long page = -1;
    int row = -1;

    [[nodiscard]] Spot On(PageNumber number, int slot = -1) const {
        return {table, index, static_cast<long>(number), slot};
    }
};

/// Gathers findings. Keeps a bounded number of each table, so that a ruined one neither fills the memory nor
/// crowds out the others.
class Findings {
  public:
    void Error(const Spot& spot, std::string sentence);
    void Note(const Spot& spot, std::string sentence);
    [[nodiscard]] VerifyReport Take() { return std::move(report_); }

  private:
    void Add(VerifyFinding::Severity severity, const Spot& spot, std::string sentence, std::size_t limit,
             std::map<std::string, std::size_t>& kept);

    VerifyReport report_;
    std::map<std::string, std::size_t> errorsOf_, notesOf_;  // by table: how many were kept
};

}  // namespace zenvora::jet::detail
