#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "import/load_target.h"

namespace zenvora::testing_support {

/// A store that notes what it is sent, and refuses what its test tells it to.
class RecordingTarget final : public importing::LoadTarget {
  public:
    std::string connectionString;
    std::vector<std::string> statements;
    int timesClosed = 0;
    std::function<void(std::string_view)> onExecute = [](std::string_view) {};  ///< throws to refuse

    void Open(std::string_view text) override { connectionString = text; }
    void Execute(std::string_view statement) override {
        statements.emplace_back(statement);
        onExecute(statement);
    }
    void Close() override { ++timesClosed; }
    void BeginTrial(std::string_view text) override { Open(text); }
    void EndTrial() noexcept override { ++timesClosed; }
    std::vector<importing::StoredField> FindRecord(std::string_view) override { return {}; }
};

}  // namespace zenvora::testing_support
