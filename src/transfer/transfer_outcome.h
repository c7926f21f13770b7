#pragma once

#include <string>
#include <vector>

#include "transfer/conversation.h"

namespace zenvora::transfer {

/// What became of a transfer, for the user: the conversation itself tells nobody.
struct TransferOutcome {
    enum class End {
        NotBegun,
        NoReport,  ///< no report is open, or KRN does not answer
        NoForm,    ///< the report lacks the form
        Sent,      ///< the sequence came to its end
        BrokeOff,  ///< a failure ended it
    };
    End end = End::NotBegun;
    std::string report{};
    std::string form{};                  ///< that the values go to
    int values = 0;                      ///< of the whole sequence
    int arrived = 0;                     ///< accepted by KRN
    int changed = 0;                     ///< of those: with "?" for characters that KRN lacks
    int unknown = 0;                     ///< whether they arrived, or will yet
    int leftOut = 0;                     ///< records that the audit text has no room for
    std::vector<std::string> refused{};  ///< items

    [[nodiscard]] int NotSent() const noexcept {
        return values - arrived - unknown - static_cast<int>(refused.size());
    }
    [[nodiscard]] bool AllArrived() const noexcept { return end == End::Sent && arrived == values; }
};

/// The outcome as one or two sentences: for a status line, a tool tip, the command line.
[[nodiscard]] std::string StatusText(const TransferOutcome& outcome);

/// Sends one value of a sequence and counts it. A failure that ends the sequence is raised again with the
/// outcome's text behind its own. Faults: those of KrnPokeText.
void SendCounted(Endpoint& endpoint, common::Session& session, std::string_view topic, std::string_view item,
                 std::string_view value, TransferOutcome& outcome);

}  // namespace zenvora::transfer
