#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "analysis/frm_data_viewer.h"
#include "cli/command.h"
#include "platform/ado/adodc.h"

namespace zenvora::cli {

/// The Databook of a command that works on judged records, and the option that leaves the verdicts as they
/// are.
struct JudgedDatabook {
    std::string path;
    bool noCheck = false;

    /// `work` is what the check comes before: "the calculation".
    void Declare(CLI::App& arguments, const std::string& work);
    /// As OpenDatabook, judged as of the effective date by a run of the validity rules; with `noCheck` as the
    /// last run left it, and open for reading. Where the verdicts cannot be written, the Failure says what
    /// `--no-check` would do: "the figures are worked out".
    [[nodiscard]] std::unique_ptr<ado::Adodc> Open(const Call& call,
                                                   std::string_view whatWorksWithoutCheck) const;
};

/// The calculation over the records of an opened Databook: fills the lists and the results of `viewer`.
void WorkOutFigures(const Call& call, ado::Adodc& control, analysis::frmDataViewer& viewer);

}  // namespace zenvora::cli
