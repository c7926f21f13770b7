#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "import/load_log.h"
#include "platform/controls/list_box.h"

namespace zenvora::importing {

/// The load log as a list that a view shows. Views are told of new lines by Changed alone: a load adds tens
/// of lines for each record.
class LoadLogBox final : public controls::ListControl {
  public:
    using ListControl::ListControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "LISTBOX"; }

    [[nodiscard]] int ListCount() const noexcept override { return static_cast<int>(log_.ListCount()); }
    [[nodiscard]] std::string List(int index) const override {
        return std::string(log_.List(static_cast<std::size_t>(index)));
    }
    void Clear() {
        log_.Clear();
        Changed();
    }
    void Changed() { TellViews(controls::Property::Items); }

    [[nodiscard]] LoadLog& Log() noexcept { return log_; }
    [[nodiscard]] const LoadLog& Log() const noexcept { return log_; }

  private:
    LoadLog log_;
};

}  // namespace zenvora::importing
