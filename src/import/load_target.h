#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/jet/value.h"

namespace zenvora::importing {

struct StoredField {
    std::string column;
    jet::Value value;
};

/// What a load needs of the store: a connection of its own that takes statements.
class LoadTarget {
  public:
    virtual ~LoadTarget() = default;
    /// Faults: the Databook cannot be opened.
    virtual void Open(std::string_view connectionString) = 0;
    /// Faults: the store refuses the statement; what it refused left no trace.
    virtual void Execute(std::string_view statement) = 0;
    /// What was executed is on the device when this returns. Faults: it could not be made so.
    virtual void Close() = 0;

    /// As Open, but what is executed from here on is undone by EndTrial, and no trace of it reaches the disk.
    virtual void BeginTrial(std::string_view connectionString) = 0;
    virtual void EndTrial() noexcept = 0;
    /// The record of that key as COMPS holds it now, column names beside values; nothing when there is none.
    [[nodiscard]] virtual std::vector<StoredField> FindRecord(std::string_view key) = 0;
};

/// The Databooks of the program. The statements of a load are made durable in batches.
class AdoLoadTarget final : public LoadTarget {
  public:
    AdoLoadTarget(ado::DatabasePool& pool, const shell::Clock& clock, ado::PathMapper mapper = {});
    void Open(std::string_view connectionString) override;
    void Execute(std::string_view statement) override;
    void Close() override;
    /// Faults also: 5 while somebody else changes the Databook.
    void BeginTrial(std::string_view connectionString) override;
    void EndTrial() noexcept override;
    [[nodiscard]] std::vector<StoredField> FindRecord(std::string_view key) override;

  private:
    ado::Connection connection_;
};

}  // namespace zenvora::importing
