#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "common/session.h"
#include "platform/link/endpoint.h"

/// The conversation with the appraisal program KRN: which report is open, which forms it holds, what stands
/// in a field; and texts sent into fields. Every operation is a short conversation of its own, and each sets
/// the link mode 0 first, so that a failed one leaves nothing behind.
///
/// Failures by number: 282 (nobody answers) and 380 (invalid value) end an operation without a word, where
/// its description says so; the endpoint's Text then stays as it was. All others take the error rule, and so
/// reach the caller unless the user is asked about them: 285 (refused, busy), 286 (no answer in time), 293
/// (KRN went away).
namespace zenvora::transfer {

using link::Endpoint;

/// Asks which reports are open; the answer is in Text. Quiet: 282.
void KrnQueryActiveReports(Endpoint& endpoint, common::Session& session);
/// Asks for the forms of a report; the answer, names with commas, is in Text. Quiet: 282, 380.
void KrnListForms(Endpoint& endpoint, common::Session& session, std::string_view report);
/// Brings a report to use. Quiet: 282, 380.
void KrnOpenReport(Endpoint& endpoint, common::Session& session, std::string_view report);
/// The text of a field, "OFFSCRN|11|2"; empty when the report does not give it, and without any conversation
/// for an item that names no form. Quiet: 282, 285, 380.
[[nodiscard]] std::string KrnGetFieldInfo(Endpoint& endpoint, common::Session& session,
                                          std::string_view report, std::string_view item);

/// How a value fared that was sent.
enum class PokeEnd {
    Arrived,  ///< KRN has accepted it
    Changed,  ///< KRN has accepted it with "?" for characters that it lacks
    Refused,
    Unknown,  ///< the user passed a failure over
};
/// Sends a value, without leading and trailing blanks, to an item of a topic, "KRN|" and the report. The link
/// stays up. Quiet: 380, which is PokeEnd::Refused.
PokeEnd KrnPokeText(Endpoint& endpoint, common::Session& session, std::string_view topic,
                    std::string_view item, std::string_view value);

/// The text before the first comma, empty without one: a list of reports without a comma names no report.
[[nodiscard]] std::string FirstCommaField(std::string_view text);
/// "KRN|" and the report.
[[nodiscard]] std::string TopicOf(std::string_view report);

/// Brings the first of the open reports to use; its form list is in Text.
void OpenFirstReport(Endpoint& endpoint, common::Session& session);
/// False when nobody answers, and when the answer is empty or "none".
[[nodiscard]] bool IsKrnReportOpen(Endpoint& endpoint, common::Session& session);
/// True when a report is open. Else, with AskKrnAtStart set, asks the user whether to launch KRN, clears it,
/// and is false all the same: KRN does not come up at once, and the user is asked once in a run.
[[nodiscard]] bool EnsureKrnRunning(Endpoint& endpoint, common::Session& session, bool& AskKrnAtStart,
                                    const std::function<void()>& launchKrn);

/// True when the form list of a report holds one of the condominium and cooperative forms.
[[nodiscard]] bool IsCondoForm(std::string_view formList);

}  // namespace zenvora::transfer
