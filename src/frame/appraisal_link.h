#pragma once

#include <string>

namespace zenvora::frame {

/// The conversation with the appraisal program KRN, as the main window needs it. A program without one has no
/// link: no report is ever reachable.
class AppraisalLink {
  public:
    virtual ~AppraisalLink() = default;
    /// True when a report is reachable. With `mayAskToLaunch` the user may be asked, once, whether to launch
    /// KRN; it is cleared then.
    virtual bool EnsureKrnRunning(bool& mayAskToLaunch) = 0;
    /// The name of the report that is open in KRN, empty when it has none.
    [[nodiscard]] virtual std::string ActiveReport() = 0;
    /// The names of a report's forms, each with a comma behind it but the last.
    [[nodiscard]] virtual std::string FormList(const std::string& report) = 0;
    /// The text of a field, "OFFSCRN|11|2"; empty when the report does not give it.
    [[nodiscard]] virtual std::string FieldInfo(const std::string& report, const std::string& item) = 0;
};

}  // namespace zenvora::frame
