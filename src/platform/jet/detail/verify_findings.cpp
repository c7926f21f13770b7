#include "platform/jet/detail/verify_findings.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kErrorsPerTable = 200;
constexpr std::size_t kNotesPerTable = 50;
constexpr std::size_t kMostFindings = 20000;  // tables may be many, too
}  // namespace

void Findings::Add(VerifyFinding::Severity severity, const Spot& spot, std::string sentence,
                   std::size_t limit, std::map<std::string, std::size_t>& kept) {
    if (report_.findings.size() >= kMostFindings) return;
    if (std::size_t& count = kept[spot.table]; count < limit) {
        ++count;
        report_.findings.push_back(
            {severity, spot.page, spot.table, spot.index, spot.row, std::move(sentence)});
    }
}

void Findings::Error(const Spot& spot, std::string sentence) {
    ++report_.errors;
    Add(VerifyFinding::Severity::Error, spot, std::move(sentence), kErrorsPerTable, errorsOf_);
}

void Findings::Note(const Spot& spot, std::string sentence) {
    ++report_.notes;
    Add(VerifyFinding::Severity::Note, spot, std::move(sentence), kNotesPerTable, notesOf_);
}

}  // namespace zenvora::jet::detail
