#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/session.h"

namespace zenvora::frame {

/// The Databooks opened last, the latest first, kept in section RECENT of ZVR.INI. Faults: none; a list that
/// cannot be stored lasts as long as the program.
class RecentDatabooks {
  public:
    static constexpr std::size_t kMost = 10;

    explicit RecentDatabooks(common::Session& session) : session_(session) {}

    /// Reads the list; before that it is empty.
    void Read();
    /// Puts a Databook at the top, by its text path. The same path, whatever its case, stands once.
    void Opened(std::string_view path);
    /// Takes a Databook off the list.
    void Gone(std::string_view path);
    [[nodiscard]] const std::vector<std::string>& Paths() const noexcept { return paths_; }

  private:
    void Store();

    common::Session& session_;
    std::vector<std::string> paths_;
};

}  // namespace zenvora::frame
