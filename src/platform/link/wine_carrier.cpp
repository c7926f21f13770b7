#ifndef _WIN32

#include "platform/link/wine_carrier.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/fault.h"
#include "platform/link/krn_process.h"

namespace zenvora::link {
namespace {

class Helpers {
  public:
    explicit Helpers(WineSettings settings) : settings_(std::move(settings)) {}

    /// Null: KRN.EXE does not run.
    std::unique_ptr<Channel> Start() {
        krn_ = FindKrn(settings_.procRoot, settings_.home);
        if (!krn_) return nullptr;
        const auto helper =
            settings_.helperFolder / (krn_->is32Bit ? "zenvora-dde32.exe" : "zenvora-dde.exe");
        std::error_code fault;
        if (!std::filesystem::is_regular_file(helper, fault))
            throw Fault(fault::kLinkFailed,
                        "The appraisal program runs, but the helper that speaks to it is missing: install " +
                            helper.string() + ".",
                        {.file = helper.string()});
        return StartProgram({krn_->loader.string(), helper.string(), "--limit",
                             std::to_string(settings_.limits.answer.count()), "--codepage",
                             std::to_string(settings_.codePage)},
                            krn_->environment);
    }
    [[nodiscard]] bool AreOfUse() const { return krn_ && IsStillThere(*krn_, settings_.procRoot); }
    [[nodiscard]] const TimeLimits& Limits() const { return settings_.limits; }

  private:
    WineSettings settings_;
    std::optional<KrnProcess> krn_;
};

}  // namespace

std::unique_ptr<Carrier> MakeWineCarrier(WineSettings settings) {
    auto helpers = std::make_shared<Helpers>(std::move(settings));
    return std::make_unique<ProtocolCarrier>([helpers] { return helpers->Start(); }, helpers->Limits(),
                                             [helpers] { return helpers->AreOfUse(); });
}

}  // namespace zenvora::link

#endif
