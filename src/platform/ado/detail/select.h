#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ado/detail/record_rows.h"
#include "platform/ado/detail/statement.h"
#include "platform/jet/database.h"
#include "platform/shell/clock.h"

namespace zenvora::ado::detail {

/// What a SELECT gives.
struct Selection {
    jet::Table* table = nullptr;
    std::size_t fieldCount = 0;  ///< of the rows' fields; the sort column may follow behind them
    RecordRows rows;
};

/// Reads the records of a SELECT, in its order. Faults: 3078, 3265, 13 (a condition that does not suit its
/// column), 20001 (sorting by a Memo, OLE, Binary, GUID or Decimal column), and those of the engine.
[[nodiscard]] Selection ReadSelection(jet::Database& database, const SelectStatement& statement,
                                      const shell::Clock& clock);

/// Position of a column of the table. Fault 3265.
[[nodiscard]] std::size_t ColumnPosition(const jet::TableDefinition& definition, std::string_view name);

}  // namespace zenvora::ado::detail
