#pragma once

#include <memory>
#include <string_view>

#include "platform/ado/connection.h"

namespace zenvora::importing {

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
};

/// The Databooks of the program. The statements of a load are made durable in batches.
class AdoLoadTarget final : public LoadTarget {
  public:
    AdoLoadTarget(ado::DatabasePool& pool, const shell::Clock& clock, ado::PathMapper mapper = {});
    void Open(std::string_view connectionString) override;
    void Execute(std::string_view statement) override;
    void Close() override;

  private:
    ado::Connection connection_;
};

}  // namespace zenvora::importing
