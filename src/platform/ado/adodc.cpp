#include "platform/ado/adodc.h"

#include "platform/ado/connection_string.h"
#include "platform/ado/detail/recordset_store.h"
#include "platform/ado/detail/source_path.h"
#include "platform/fault.h"

namespace zenvora::ado {

struct Adodc::State {
    DatabasePool& pool;
    const shell::Clock& clock;
    PathMapper mapper;
    std::unique_ptr<ado::Recordset> recordset;
    unsigned generation = 0;
};

Adodc::Adodc(DatabasePool& pool, const shell::Clock& clock, PathMapper mapper)
    : state_(new State{pool, clock, std::move(mapper), nullptr, 0}) {}
Adodc::~Adodc() = default;

void Adodc::Refresh() {
    const detail::SelectStatement statement = detail::ParseSelect(RecordSource);
    const ConnectionString connection = ParseConnectionString(Connectionstring);
    const std::shared_ptr<detail::OpenFile> file = state_->pool.OpenShared(
        detail::SourcePath(connection, state_->mapper),
        connection.readWrite ? jet::Database::Access::ReadWrite : jet::Database::Access::ReadOnly);
    auto recordset = std::make_unique<ado::Recordset>(
        std::make_unique<detail::RecordsetStore>(file, statement, state_->clock));
    state_->recordset = std::move(recordset);
    ++state_->generation;
}

ado::Recordset& Adodc::Recordset() {
    if (!state_->recordset) {
        throw Fault{fault::kObjectNotSet, "No records are selected yet: the data control was not refreshed."};
    }
    return *state_->recordset;
}

bool Adodc::HasRecordset() const {
    return state_->recordset != nullptr;
}

void Adodc::Close() {
    if (!state_->recordset) return;
    state_->recordset.reset();
    ++state_->generation;
}

unsigned Adodc::Generation() const {
    return state_->generation;
}
std::filesystem::path Adodc::HostPath() const {
    return detail::SourcePath(ParseConnectionString(Connectionstring), state_->mapper);
}
const PathMapper& Adodc::Mapper() const {
    return state_->mapper;
}
const shell::Clock& Adodc::Clock() const {
    return state_->clock;
}

}  // namespace zenvora::ado
