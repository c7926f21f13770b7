#include "cli/command.h"
#include "cli/failure.h"
#include "cli/judged_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "transfer/field_transfer.h"

namespace zenvora::cli {

namespace {

/// What was sent, in order, and how it fared.
struct SentValue {
    std::string item;
    std::string value;
    std::string result;  ///< "arrived", "refused", "unknown"; empty on paper
};

/// Writes down what goes to KRN. Without KRN it is a report on paper, which takes everything.
class SendingLog final : public link::Carrier {
  public:
    SendingLog(link::Carrier* krn, std::string paperReport)
        : krn_(krn), paperReport_(std::move(paperReport)) {}

    void Open(const std::string& service, const std::string& topic) override {
        if (krn_ != nullptr) krn_->Open(service, topic);
        topic_ = service + "|" + topic;
    }
    std::string Request(const std::string& item) override {
        if (krn_ != nullptr) return krn_->Request(item);
        if (item == "ActiveReports") return paperReport_ + ",";
        return item == "ListForms" ? std::string(transfer::k1004MC) : std::string();
    }
    void Poke(const std::string& item, const std::string& text) override {
        sent.push_back({item, text, {}});
        topic = topic_;
        if (krn_ == nullptr) return;
        sent.back().result = "refused";
        try {
            krn_->Poke(item, text);
        } catch (const Fault& fault) {
            if (fault.number != fault::kInvalidProperty) sent.back().result = "unknown";
            throw;
        }
        sent.back().result = "arrived";
    }
    void Close() noexcept override {
        if (krn_ != nullptr) krn_->Close();
    }
    bool Fits(const std::string& text) override { return krn_ == nullptr || krn_->Fits(text); }

    std::string topic;  ///< that the values went to
    std::vector<SentValue> sent;

  private:
    link::Carrier* krn_;
    std::string paperReport_;
    std::string topic_;
};

bool IsLinkFault(int number) {
    return number == fault::kNoAnswer || number == fault::kLinkFailed || number == fault::kLinkTimeOut ||
           number == fault::kNoConversation;
}

class TransferCommand final : public Command {
  public:
    TransferCommand()
        : Command({"transfer", "Send the figures into Form 1004MC of the report that is open in KRN",
                   "LISTINGS.mdb --date 06/30/2010 --dry-run --report Smith", true}) {}

    void Declare(CLI::App& arguments) override {
        databook_.Declare(arguments, "the calculation");
        arguments.add_flag("--condo", condo_,
                           "Send the section on condominium and cooperative projects instead");
        auto* dryRun = arguments.add_flag("--dry-run", dryRun_, "Send nothing; list what would be sent");
        auto* report = arguments.add_option("--report", report_, "With --dry-run: the report to name")
                           ->type_name("NAME");
        dryRun->needs(report);
        report->needs(dryRun);
    }

    Exit Run(Call& call) override {
        SendingLog log(dryRun_ ? nullptr : &call.link, report_);
        link::Endpoint TxtDde(log);
        try {
            // First of all, so that a run without a report leaves the Databook as it was.
            if (!dryRun_) RequireReport(call, TxtDde);
            const auto outcome = Send(call, TxtDde);
            return Tell(call, log, outcome);
        } catch (const Fault& fault) {
            if (!IsLinkFault(fault.number)) throw;
            throw Failure{Exit::NoPeer, FaultLine(fault, "")};
        }
    }

  private:
    void RequireReport(Call& call, link::Endpoint& TxtDde) const {
        if (!transfer::IsKrnReportOpen(TxtDde, call.session)) {
            const std::string why =
                TxtDde.LastFault().empty() ? "No report is open in it." : TxtDde.LastFault();
            throw Failure{Exit::NoPeer,
                          "the appraisal program cannot be reached: " + why +
                              " Nothing was sent. Open a report in it, save it, and try again."};
        }
        if (!condo_) return;
        transfer::OpenFirstReport(TxtDde, call.session);
        if (!transfer::IsCondoForm(TxtDde.Text())) {
            throw Failure{
                Exit::SomethingRefused,
                "the open report holds no form for a condominium or cooperative project. Nothing was "
                "sent. Add the form to the report, or leave --condo out."};
        }
    }

    transfer::TransferOutcome Send(Call& call, link::Endpoint& TxtDde) const {
        const auto opened = databook_.Open(call, "the figures are worked out");
        analysis::Results1004MC results;
        analysis::frmDataViewer viewer(call.session, results);
        WorkOutFigures(call, *opened, viewer);
        transfer::TransferOutcome outcome;
        transfer::TransferFields(TxtDde, call.session, results,
                                 condo_ ? transfer::CondoFields() : transfer::MarketFields(), outcome);
        return outcome;
    }

    Exit Tell(Call& call, const SendingLog& log, const transfer::TransferOutcome& outcome) const {
        using End = transfer::TransferOutcome::End;
        const std::string status = transfer::StatusText(outcome);
        if (outcome.end == End::NoReport)
            throw Failure{Exit::NoPeer, status + " Open a report in it, save it, and try again."};
        if (outcome.end == End::NoForm)
            throw Failure{Exit::SomethingRefused, status + " Add the form to the report and try again."};

        auto& out = call.io.out;
        std::vector<Column> columns{{"item"}, {"value"}};
        if (!dryRun_) columns.push_back({"result"});
        const RowSource rows = [&](const auto& visit) {
            for (const SentValue& sent : log.sent) {
                std::vector<std::string> row{sent.item, sent.value};
                if (!dryRun_) row.push_back(sent.result);
                visit(row);
            }
        };
        switch (call.format) {
            case OutputFormat::Text:
                out << log.topic << "\n\n";
                WriteText(out, columns, rows);
                out << '\n' << (dryRun_ ? "Nothing was sent." : status) << '\n';
                break;
            case OutputFormat::Csv:
                WriteCsv(out, columns, rows);
                break;
            case OutputFormat::Json: {
                Json json = Json::object();
                json["topic"] = log.topic;
                json["pokes"] = Json::array();
                for (const SentValue& sent : log.sent) {
                    Json poke = Json::object();
                    poke["item"] = sent.item;
                    poke["value"] = sent.value;
                    if (!dryRun_) poke["result"] = sent.result;
                    json["pokes"].push_back(std::move(poke));
                }
                out << Compact(json) << '\n';
                break;
            }
        }
        if (outcome.AllArrived()) return Exit::Done;
        throw Failure{Exit::SomethingRefused, status + " Enter what is missing by hand."};
    }

    JudgedDatabook databook_;
    std::string report_;
    bool condo_ = false;
    bool dryRun_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeTransferCommand() {
    return std::make_unique<TransferCommand>();
}

}  // namespace zenvora::cli
