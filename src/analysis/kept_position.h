#pragma once

#include <optional>

#include "platform/ado/recordset.h"

namespace zenvora::analysis {

/// Brings a Recordset back to its current record at the end of a walk, also when the walk ends in a fault,
/// because the grid shows the same Recordset. Without a current record the position stays where the walk
/// ended.
class KeptPosition {
  public:
    explicit KeptPosition(ado::Recordset& records);
    ~KeptPosition();
    KeptPosition(const KeptPosition&) = delete;
    KeptPosition& operator=(const KeptPosition&) = delete;

  private:
    ado::Recordset& records_;
    std::optional<ado::Bookmark> bookmark_;
};

}  // namespace zenvora::analysis
