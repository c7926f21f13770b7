#include "cli/judged_databook.h"

#include "analysis/calculation.h"
#include "analysis/validity.h"
#include "cli/failure.h"
#include "cli/open_databook.h"
#include "platform/text/date.h"

namespace zenvora::cli {

void JudgedDatabook::Declare(CLI::App& arguments, const std::string& work) {
    arguments
        .add_option("DATABOOK", path,
                    "The Databook; the check before " + work + " writes its verdicts into it")
        ->required();
    arguments.add_flag("--no-check", noCheck,
                       "Trust the verdicts of the last check; nothing is written into the Databook");
}

std::unique_ptr<ado::Adodc> JudgedDatabook::Open(const Call& call,
                                                 std::string_view whatWorksWithoutCheck) const {
    try {
        auto opened = OpenDatabook(call.session, path, noCheck ? Access::Read : Access::Write);
        if (!noCheck) analysis::CheckRecordValidity(call.session, *opened, call.effectiveDate, "M", true);
        return opened;
    } catch (const Fault& fault) {
        if (fault.number != fault::kInUse && fault.number != fault::kReadOnly) throw;
        throw Failure{Exit::FileTrouble, FaultLine(fault, path) + " With --no-check " +
                                             std::string(whatWorksWithoutCheck) +
                                             " from the verdicts that it holds, and nothing is written."};
    }
}

void WorkOutFigures(const Call& call, ado::Adodc& control, analysis::frmDataViewer& viewer) {
    const std::string dateText = text::DateText(call.effectiveDate);
    analysis::DoCalculations({.session = call.session,
                              .adoDatabook = control,
                              .txtBaseDate = dateText,
                              .effectiveDate = call.effectiveDate},
                             viewer);
}

}  // namespace zenvora::cli
