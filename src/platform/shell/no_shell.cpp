#include "platform/shell/shell.h"

namespace zenvora::shell {
namespace {

class Nothing final : public Shell {
  public:
    int Open(const OpenRequest& /*request*/) override { return opened::kNoAssociation; }
    bool HasReader(const std::string& /*file*/) override { return false; }
    std::vector<std::string> ProcessNames() override { return {}; }
    bool EarlierInstance() override { return false; }
    WindowNotice AnnounceWindow(std::string_view /*title*/) override { return {}; }
    bool FindWindow(std::string_view /*title*/) override { return false; }
    std::optional<OsVersion> Version() override { return std::nullopt; }
    std::string SystemName() override { return {}; }
};

}  // namespace

Shell& NoShell() {
    static Nothing shell;
    return shell;
}

}  // namespace zenvora::shell
