#include "transfer/transfer_outcome.h"

#include "common/text_helpers.h"
#include "transfer/audit_text.h"

namespace zenvora::transfer {
namespace {

using common::IntToText;

std::string Count(int count, std::string_view one, std::string_view many) {
    return IntToText(count) + " " + std::string(count == 1 ? one : many);
}

std::string Listed(const std::vector<std::string>& items) {
    constexpr std::size_t kNamed = 5;
    std::string list;
    for (std::size_t i = 0; i < items.size() && i < kNamed; ++i)
        list += (i == 0 ? "" : ", ") + items[i];
    if (items.size() > kNamed) list += " and " + IntToText(static_cast<int>(items.size() - kNamed)) + " more";
    return list;
}

}  // namespace

std::string StatusText(const TransferOutcome& outcome) {
    switch (outcome.end) {
        case TransferOutcome::End::NotBegun:
            return {};
        case TransferOutcome::End::NoReport:
            return "No report is open in the appraisal program. Nothing was sent.";
        case TransferOutcome::End::NoForm:
            return "The report \"" + outcome.report + "\" has no form " + outcome.form +
                   ". Nothing was sent.";
        case TransferOutcome::End::Sent:
        case TransferOutcome::End::BrokeOff:
            break;
    }
    std::string text;
    if (outcome.AllArrived()) {
        text = outcome.values == 1 ? "The value" : "All " + IntToText(outcome.values) + " values";
    } else {
        text = IntToText(outcome.arrived) + " of " + Count(outcome.values, "value", "values");
    }
    text += " arrived in the report \"" + outcome.report + "\".";
    if (!outcome.refused.empty()) {
        text += " " + Count(static_cast<int>(outcome.refused.size()), "was", "were") +
                " refused: " + Listed(outcome.refused) + ".";
    }
    if (outcome.unknown > 0) {
        text += " Of " + IntToText(outcome.unknown) +
                " it is not known whether it arrived, or will yet: look at the report.";
    }
    if (outcome.NotSent() > 0) text += " " + Count(outcome.NotSent(), "was", "were") + " not sent.";
    if (outcome.changed > 0) {
        text += " In " + IntToText(outcome.changed) +
                " of them characters that the appraisal program lacks were sent as \"?\".";
    }
    if (outcome.leftOut > 0) text += " " + LeftOutText(outcome.leftOut);
    return text;
}

void SendCounted(Endpoint& endpoint, common::Session& session, std::string_view topic, std::string_view item,
                 std::string_view value, TransferOutcome& outcome) {
    try {
        switch (KrnPokeText(endpoint, session, topic, item, value)) {
            case PokeEnd::Changed:
                ++outcome.changed;
                [[fallthrough]];
            case PokeEnd::Arrived:
                ++outcome.arrived;
                break;
            case PokeEnd::Refused:
                outcome.refused.emplace_back(item);
                break;
            case PokeEnd::Unknown:
                ++outcome.unknown;
                break;
        }
    } catch (const Fault& fault) {
        outcome.end = TransferOutcome::End::BrokeOff;
        // A conversation that never began has sent nothing; behind its begin the value may be on its way.
        if (endpoint.LinkMode() == Endpoint::kManual &&
            (fault.number == fault::kLinkTimeOut || fault.number == fault::kNoConversation)) {
            ++outcome.unknown;
        }
        throw Fault(fault.number, fault.description + " " + StatusText(outcome), fault.place);
    }
}

}  // namespace zenvora::transfer
