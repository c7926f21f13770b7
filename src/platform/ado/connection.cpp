#include "platform/ado/connection.h"

#include <vector>

#include "platform/ado/connection_string.h"
#include "platform/ado/detail/column_defaults.h"
#include "platform/ado/detail/conversion.h"
#include "platform/ado/detail/open_file.h"
#include "platform/ado/detail/select.h"
#include "platform/ado/detail/source_path.h"
#include "platform/ado/detail/statement.h"
#include "platform/fault.h"

namespace zenvora::ado {
namespace {

using detail::Literal;

/// What was worked out for the last INSERT. A load sends thousands that differ only in their values.
struct InsertPlan {
    std::string head;  ///< the statement up to its first value
    jet::Table* table = nullptr;
    std::vector<std::size_t> columns;  ///< the columns named, as positions in the definition
    std::vector<jet::Value> row;       ///< columns not named keep their default here
    std::uint64_t schema = 0;          ///< OpenFile::SchemaChanges then
};

std::vector<std::size_t> ColumnsOf(const detail::InsertStatement& insert,
                                   const jet::TableDefinition& definition) {
    std::vector<std::size_t> columns;
    if (insert.columns.empty()) {
        for (std::size_t i = 0; i < definition.columns.size(); ++i)
            columns.push_back(i);
        return columns;
    }
    std::vector<bool> named(definition.columns.size());
    for (const std::string_view name : insert.columns) {
        const std::size_t column = detail::ColumnPosition(definition, name);
        if (named[column]) {
            detail::RefuseStatement("The statement names the column " + definition.columns[column].name +
                                    " twice.");
        }
        named[column] = true;
        columns.push_back(column);
    }
    return columns;
}

}  // namespace

struct Connection::State {
    DatabasePool& pool;
    const shell::Clock& clock;
    PathMapper mapper;
    std::unique_ptr<detail::BatchUser> user;
    std::optional<InsertPlan> plan;
    std::vector<Literal> values;

    [[nodiscard]] detail::OpenFile& File() const {
        if (!user) throw Fault{fault::kObjectNotSet, "The connection is not open."};
        return user->File();
    }

    [[nodiscard]] bool PlanSuits(std::string_view statement) const {
        return plan && plan->schema == File().SchemaChanges() && statement.starts_with(plan->head);
    }

    void Plan(std::string_view statement, const detail::InsertStatement& insert) {
        plan.reset();
        InsertPlan made;
        made.table = &File().Database().OpenTable(insert.table);
        made.columns = ColumnsOf(insert, made.table->Definition());
        made.row = detail::DefaultsOf(*made.table, clock);
        made.head = statement.substr(0, insert.valuesAt);
        made.schema = File().SchemaChanges();
        plan = std::move(made);
    }

    long InsertPlanned() {
        if (values.size() != plan->columns.size()) {
            detail::RefuseStatement("The statement has " + std::to_string(values.size()) + " values for " +
                                    std::to_string(plan->columns.size()) + " columns.");
        }
        const jet::TableDefinition& definition = plan->table->Definition();
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::size_t column = plan->columns[i];
            detail::ConvertLiteral(values[i], definition.columns[column], clock, plan->row[column]);
        }
        plan->table->Insert(plan->row);
        File().RowsChanged();
        return 1;
    }

    long Run(std::string_view statement, const detail::InsertStatement& insert) {
        values = insert.values;
        Plan(statement, insert);
        return InsertPlanned();
    }

    long Run(std::string_view, const detail::AddColumnStatement& add) {
        File().Database().OpenTable(add.table).AddColumn(add.column);
        File().SchemaChanged();
        return 0;
    }

    long Run(std::string_view, const detail::SetDefaultStatement& set) {
        jet::Table& table = File().Database().OpenTable(set.table);
        const jet::TableDefinition& definition = table.Definition();
        const jet::ColumnDefinition& column =
            definition.columns[detail::ColumnPosition(definition, set.column)];
        const std::string expression =
            set.literal.kind == Literal::Kind::Null
                ? "Null"
                : detail::DefaultExpression(detail::ConvertLiteral(set.literal, column, clock));
        table.SetDefault(set.column, expression);
        File().SchemaChanged();
        return 0;
    }
};

Connection::Connection(DatabasePool& pool, const shell::Clock& clock, PathMapper mapper)
    : state_(new State{pool, clock, std::move(mapper), nullptr, std::nullopt, {}}) {}
Connection::~Connection() = default;

void Connection::Open(std::string_view connectionString) {
    Close();
    const ConnectionString parsed = ParseConnectionString(connectionString);
    state_->user = std::make_unique<detail::BatchUser>(state_->pool.OpenShared(
        detail::SourcePath(parsed, state_->mapper),
        parsed.readWrite ? jet::Database::Access::ReadWrite : jet::Database::Access::ReadOnly));
}

long Connection::Execute(std::string_view statement) {
    static_cast<void>(Database());  // before a plan names a table of it
    if (state_->PlanSuits(statement)) {
        detail::ParseValues(statement, state_->plan->head.size(), state_->values);
        return state_->InsertPlanned();
    }
    const detail::ChangeStatement change = detail::ParseChange(statement);
    return std::visit([&](const auto& form) { return state_->Run(statement, form); }, change);
}

void Connection::BeginBatch() {
    static_cast<void>(state_->File());
    state_->user->Begin();
}

void Connection::EndBatch() {
    static_cast<void>(state_->File());
    state_->user->End();
}

void Connection::Close() {
    if (!state_->user) return;
    state_->plan.reset();
    // Let go first: also when the last batch cannot be made durable, the connection is closed.
    const std::unique_ptr<detail::BatchUser> user = std::move(state_->user);
    user->EndAll();
}

bool Connection::IsOpen() const {
    return state_->user != nullptr;
}
jet::Database& Connection::Database() {
    return state_->File().Database();
}

}  // namespace zenvora::ado
