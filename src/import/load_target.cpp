#include "import/load_target.h"

#include <optional>
#include <utility>

#include "platform/fault.h"

namespace zenvora::importing {

AdoLoadTarget::AdoLoadTarget(ado::DatabasePool& pool, const shell::Clock& clock, ado::PathMapper mapper)
    : connection_(pool, clock, std::move(mapper)) {}

void AdoLoadTarget::Open(std::string_view connectionString) {
    connection_.Open(connectionString);
    connection_.BeginBatch();
}

void AdoLoadTarget::Execute(std::string_view statement) {
    static_cast<void>(connection_.Execute(statement));
}

void AdoLoadTarget::Close() {
    if (!connection_.IsOpen()) return;
    connection_.EndBatch();
    connection_.Close();
}

void AdoLoadTarget::BeginTrial(std::string_view connectionString) {
    connection_.Open(connectionString);
    try {
        connection_.Database().Begin();
    } catch (...) {
        connection_.Close();
        throw;
    }
}

void AdoLoadTarget::EndTrial() noexcept {
    try {
        if (!connection_.IsOpen()) return;
        if (connection_.Database().InTransaction()) connection_.Database().Rollback();
        connection_.Close();
    } catch (const Fault&) {
        // Nothing was committed: what cannot be undone in memory goes with the file's closing.
        return;
    }
}

std::vector<StoredField> AdoLoadTarget::FindRecord(std::string_view key) {
    jet::Table& table = connection_.Database().OpenTable("COMPS");
    const jet::TableDefinition& definition = table.Definition();
    const std::optional<std::size_t> column = definition.FindColumn("CENTRALKEY");
    std::vector<StoredField> record;
    if (!column || !definition.PrimaryKey()) return record;
    const jet::Value wanted = std::string(key);
    const std::optional<jet::RowId> row = table.Find(*definition.PrimaryKey(), {&wanted, 1});
    if (!row) return record;
    const std::vector<jet::Value> values = table.Read(*row);
    for (std::size_t i = 0; i < values.size(); ++i)
        record.push_back({definition.columns[i].name, values[i]});
    return record;
}

}  // namespace zenvora::importing
