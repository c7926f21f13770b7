#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/shell/shell.h"

namespace zenvora::testing_support {

/// A desktop of one test: keeps what it is asked to open, and answers what the test has put into it.
class RecordingShell final : public shell::Shell {
  public:
    std::vector<shell::OpenRequest> requests;  ///< everything that was opened, in order
    int answer = shell::opened::kOpened;       ///< of Open
    bool reader = true;                        ///< of HasReader
    std::vector<std::string> processes;
    bool earlierInstance = false;
    std::vector<std::string> otherWindows;  ///< titles of other copies' windows
    std::optional<shell::OsVersion> version = shell::OsVersion{10, 0, 2, {}};
    std::string systemName = "Test";
    std::string windowsDirectory = "C:\\WINDOWS";
    std::string systemDirectory = "C:\\WINDOWS\\SYSTEM32";

    int Open(const shell::OpenRequest& request) override {
        requests.push_back(request);
        return answer;
    }
    bool HasReader(const std::string& /*file*/) override { return reader; }
    std::vector<std::string> ProcessNames() override { return processes; }
    bool EarlierInstance() override { return earlierInstance; }
    shell::WindowNotice AnnounceWindow(std::string_view title) override {
        const auto count = counts_;
        const std::string name(title);
        ++(*count)[name];
        return {count.get(), [count, name](const void*) { --(*count)[name]; }};
    }
    bool FindWindow(std::string_view title) override {
        for (const std::string& other : otherWindows) {
            if (other == title) return true;
        }
        return Announced(title);
    }
    /// True while this program has a window of that title announced.
    [[nodiscard]] bool Announced(std::string_view title) const {
        const auto found = counts_->find(std::string(title));
        return found != counts_->end() && found->second > 0;
    }
    std::optional<shell::OsVersion> Version() override { return version; }
    std::string SystemName() override { return systemName; }
    std::string WindowsDirectory() override { return windowsDirectory; }
    std::string SystemDirectory() override { return systemDirectory; }

  private:
    std::shared_ptr<std::map<std::string, int>> counts_ = std::make_shared<std::map<std::string, int>>();
};

}  // namespace zenvora::testing_support
