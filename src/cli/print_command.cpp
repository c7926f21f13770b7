#include "cli/command.h"
#include "cli/failure.h"
#include "cli/judged_databook.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "platform/text/date.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"
#include "printing/pdf_files.h"

namespace zenvora::cli {

namespace {

std::string Counted(long count, const char* one, const char* many) {
    return text::IntegerText(count) + " " + (count == 1 ? one : many);
}

class PrintCommand final : public Command {
  public:
    PrintCommand()
        : Command({"print", "Write the Market Conditions Audit Report",
                   "LISTINGS.mdb --date 06/30/2010 --pdf AUDIT.pdf", true}) {}

    void Declare(CLI::App& arguments) override {
        databook_.Declare(arguments, "the report");
        arguments
            .add_option("--pdf", pdf_, "The PDF file to write; an older one is kept beside it as FILE.bak")
            ->type_name("FILE")
            ->required();
        arguments.add_flag(
            "--fit", fit_,
            "Set a text that is too long for its column smaller, instead of running over the next");
    }

    Exit Run(Call& call) override {
        if (!call.makePdf) {
            throw Failure{
                Exit::FileTrouble,
                pdf_ +
                    ": not written, for this build of zenvora-cli has no printing. Use one that was "
                    "built with Qt (-DZENVORA_DESKTOP=ON)."};
        }
        const auto opened = databook_.Open(call, "the report is made");
        const printing::AuditReport report{
            .session = call.session,
            .adoDatabook = *opened,
            .effectiveDate = call.effectiveDate,
            .databookName = text::Upper(Shown(HostPath(databook_.path).filename())),
            .longText = fit_ ? printing::LongText::Shrinks : printing::LongText::RunsOn,
        };
        const auto counts = printing::WriteAuditPdf(report, call.makePdf, HostPath(pdf_));
        WriteOutcome(call, counts);
        return Exit::Done;
    }

  private:
    void WriteOutcome(Call& call, const printing::AuditCounts& counts) const {
        auto& out = call.io.out;
        switch (call.format) {
            case OutputFormat::Text:
                out << pdf_ << ": " << Counted(counts.listings, "listing", "listings") << " and "
                    << Counted(counts.comps, "comp", "comps") << " as of "
                    << text::DateText(call.effectiveDate) << " on " << Counted(counts.pages, "page", "pages")
                    << '\n';
                break;
            case OutputFormat::Json: {
                Json json = Json::object();
                json["pdf"] = pdf_;
                json["effectiveDate"] = IsoDate(call.effectiveDate);
                json["listings"] = counts.listings;
                json["comps"] = counts.comps;
                json["pages"] = counts.pages;
                out << Compact(json) << '\n';
                break;
            }
            case OutputFormat::Csv:
                WriteCsv(out, {{"pdf"}, {"effectiveDate"}, {"listings"}, {"comps"}, {"pages"}},
                         Rows({{pdf_, IsoDate(call.effectiveDate), text::IntegerText(counts.listings),
                                text::IntegerText(counts.comps), text::IntegerText(counts.pages)}}));
                break;
        }
    }

    JudgedDatabook databook_;
    std::string pdf_;
    bool fit_ = false;
};

}  // namespace

std::unique_ptr<Command> MakePrintCommand() {
    return std::make_unique<PrintCommand>();
}

}  // namespace zenvora::cli
