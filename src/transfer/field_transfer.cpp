#include "transfer/field_transfer.h"

#include <array>

#include "common/primitives.h"
#include "common/text_helpers.h"

namespace zenvora::transfer {
namespace {

// Field 20 of the form is worked out there.
constexpr std::array<FieldRow, 9> kMarketFields{{{16, "txtTotalC"},
                                                 {17, "txtAveCPrice"},
                                                 {18, "txtTotalL"},
                                                 {19, "txtTotalPerAveCPrice"},
                                                 {21, "txtMedianCPrice"},
                                                 {22, "txtMedianCDOM"},
                                                 {23, "txtMedianLPrice"},
                                                 {24, "txtMedianLDOM"},
                                                 {25, "txtMedianLPDivSP"}}};

constexpr std::array<FieldRow, 4> kCondoFields{
    {{54, "txtTotalC"}, {55, "txtAveCPrice"}, {56, "txtTotalL"}, {57, "txtTotalPerAveCPrice"}}};

}  // namespace

std::span<const FieldRow> MarketFields() {
    return kMarketFields;
}

std::span<const FieldRow> CondoFields() {
    return kCondoFields;
}

void TransferFields(Endpoint& endpoint, common::Session& session, const analysis::Results1004MC& results,
                    std::span<const FieldRow> fields, TransferOutcome& outcome) {
    outcome = {};
    outcome.end = TransferOutcome::End::NoReport;
    outcome.form = k1004MC;
    // Without an answer Text stays as it was, and what an earlier conversation left there names no report.
    endpoint.SetText("");
    KrnQueryActiveReports(endpoint, session);
    if (endpoint.Text().empty()) return;
    outcome.report = FirstCommaField(endpoint.Text());
    const std::string topic = TopicOf(outcome.report);
    KrnOpenReport(endpoint, session, outcome.report);
    KrnListForms(endpoint, session, outcome.report);
    if (common::UpTrim(endpoint.Text()).find(k1004MC) == std::string::npos) {
        if (!outcome.report.empty()) outcome.end = TransferOutcome::End::NoForm;
        return;
    }

    outcome.end = TransferOutcome::End::Sent;
    for (const FieldRow& row : fields)
        outcome.values += results.Row(row.control).Count();
    for (const FieldRow& row : fields) {
        const auto& cells = results.Row(row.control);
        for (int index = 0; index < cells.Count(); ++index) {
            const std::string item = std::string(k1004MC) + "|" + common::IntToText(row.field) + "|" +
                                     common::IntToText(index + 1);
            SendCounted(endpoint, session, topic, item, cells[index].Text(), outcome);
        }
    }
}

void ShowDataSent(const TransferOutcome& outcome, controls::Label& lblDataSentMsg,
                  controls::Image& imgDataSentMsg) {
    if (outcome.end != TransferOutcome::End::Sent) return;
    const std::string status = StatusText(outcome);
    lblDataSentMsg.SetCaption("Data sent to report");
    lblDataSentMsg.SetToolTipText(status);
    imgDataSentMsg.SetToolTipText(status);
    lblDataSentMsg.SetVisible(true);
    imgDataSentMsg.SetVisible(true);
}

}  // namespace zenvora::transfer
