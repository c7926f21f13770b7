#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/table.h"
#include "platform/ado/recordset.h"

/// A Recordset as a table and as JSON.
namespace zenvora::cli {

/// One column per field; numbers align right.
[[nodiscard]] std::vector<Column> ColumnsOf(const ado::Recordset& records);
/// Walks the records from the first one, each time it is asked. The Recordset must outlive it.
[[nodiscard]] RowSource RowsOf(ado::Recordset& records, std::function<std::string(const jet::Value&)> text);

/// {"records":[{"NAME":value, ...}, ...]}, one record a line.
void WriteRecordsJson(std::ostream& out, ado::Recordset& records);
/// {"columns":["NAME", ...],"rows":[[value, ...], ...]}, one row a line.
void WriteRowsJson(std::ostream& out, ado::Recordset& records);

}  // namespace zenvora::cli
