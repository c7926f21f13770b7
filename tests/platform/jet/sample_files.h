#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/jet/database.h"
#include "support/run_command.h"

/// The folder of real databases that ZENVORA_JET_SAMPLES names: NAME.mdb or NAME.mdb.gz, and beside each
/// NAME.json with what another reader finds in it.
namespace zenvora::jet::testing_support {

/// The names of the samples, sorted; none without the variable.
[[nodiscard]] std::vector<std::string> SampleNames();
/// Writes a copy of a sample, unpacked, that a test may change.
void CopySample(const std::string& name, const std::filesystem::path& to);
/// The tables that the other reader finds: "name", "columns", "rowCount", "rows" (at most 200).
[[nodiscard]] nlohmann::json SampleTables(const std::string& name);

/// Type and size of a column as the other reader tells them.
[[nodiscard]] std::string TypeName(ColumnType type);
/// A value in a form that both readers can be brought to.
[[nodiscard]] std::string Rendered(const ColumnDefinition& column, const Value& value);
[[nodiscard]] std::string Rendered(const ColumnDefinition& column, const nlohmann::json& value);

using zenvora::testing_support::CommandResult;
using zenvora::testing_support::RunCommand;

}  // namespace zenvora::jet::testing_support
