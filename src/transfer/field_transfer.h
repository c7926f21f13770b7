#pragma once

#include <span>
#include <string_view>

#include "analysis/results_1004mc.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"
#include "transfer/transfer_outcome.h"

/// The figures of Form 1004MC into the form of the report that is open in KRN.
namespace zenvora::transfer {

inline constexpr std::string_view k1004MC = "1004MC";

/// A field of the form and the row of the results that goes into it. Its three cells are the three periods.
struct FieldRow {
    int field;
    std::string_view control;
};

/// What the button cmdTransfer sends, in order: the Inventory Analysis and the medians.
[[nodiscard]] std::span<const FieldRow> MarketFields();
/// What cmdTransferCondoCoop sends: the section on condominium and cooperative projects.
[[nodiscard]] std::span<const FieldRow> CondoFields();

/// Sends the cells as they stand, all three of a row before the next one. The report is asked for anew; when
/// none is open or it has no such form nothing is sent and nobody is told but `outcome`. A value that KRN
/// refuses is passed over, and the next one goes out. Faults: those of the conversation; `outcome` then holds
/// what was sent until there.
void TransferFields(Endpoint& endpoint, common::Session& session, const analysis::Results1004MC& results,
                    std::span<const FieldRow> fields, TransferOutcome& outcome);

/// Shows the notice "Data sent to report" once a sequence has come to its end, whatever became of the single
/// values: its tool tip tells that.
void ShowDataSent(const TransferOutcome& outcome, controls::Label& lblDataSentMsg,
                  controls::Image& imgDataSentMsg);

}  // namespace zenvora::transfer
