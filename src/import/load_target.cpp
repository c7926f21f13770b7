#include "import/load_target.h"

#include <utility>

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

}  // namespace zenvora::importing
