#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/files/host_file.h"
#include "platform/shell/shell.h"

namespace zenvora::shell {

/// The desktop of this machine, by the tools that free desktops share.
///
/// Documents go to xdg-open and Windows programs to Wine. Copies of the program know of each other by locks
/// on files in one folder, which end with their holders: a crash leaves no trace of a copy. The version is
/// told as 10.0 of the NT line, whatever the system: it is what Wine shows to the programs beside this one,
/// and no rule treats it in a way of its own.
class SystemShell final : public Shell {
  public:
    struct Tools {
        std::string opener = "xdg-open";
        std::string kinds = "xdg-mime";
        std::string windowsRunner = "wine";
        std::filesystem::path processes = "/proc";
        std::filesystem::path release = "/etc/os-release";
        int patience = 1500;  ///< milliseconds that a tool gets for its answer
    };

    /// `lockFolder` is made when it is not there; see LockFolder. One that cannot be made or used means that
    /// this copy knows of no other.
    explicit SystemShell(std::filesystem::path lockFolder);
    SystemShell(std::filesystem::path lockFolder, Tools tools);
    ~SystemShell() override;
    SystemShell(const SystemShell&) = delete;
    SystemShell& operator=(const SystemShell&) = delete;

    /// A tool that has not answered in time counts as successful: it is still showing the document.
    int Open(const OpenRequest& request) override;
    bool HasReader(const std::string& file) override;
    std::vector<std::string> ProcessNames() override;
    bool EarlierInstance() override;
    WindowNotice AnnounceWindow(std::string_view title) override;
    bool FindWindow(std::string_view title) override;
    std::optional<OsVersion> Version() override;
    std::string SystemName() override;

  private:
    [[nodiscard]] std::filesystem::path WindowLock(std::string_view title) const;
    int OpenDocument(const OpenRequest& request);
    int RunWindowsProgram(const OpenRequest& request);

    std::filesystem::path lockFolder_;
    Tools tools_;
    std::unique_ptr<files::HostFile> instanceLock_;
    bool earlier_ = false;
    std::vector<int> running_;  ///< processes that were started and have not been waited for
};

/// The folder of the locks of all copies on one C: a folder of the user's run-time directory, which is
/// cleared with the login; without one a folder on C: itself.
[[nodiscard]] std::filesystem::path LockFolder(const std::filesystem::path& driveC,
                                               std::string_view runtimeDirectory);
/// The same with the run-time directory from the environment of this process.
[[nodiscard]] std::filesystem::path LockFolder(const std::filesystem::path& driveC);

}  // namespace zenvora::shell
