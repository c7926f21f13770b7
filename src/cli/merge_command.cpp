#include <filesystem>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/finished_file.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "common/error_rule.h"
#include "databook/field_access.h"
#include "databook/schema_upgrade.h"
#include "databook/selection.h"
#include "databook/template.h"
#include "databook/upgrade_copy.h"
#include "import/merge.h"
#include "platform/files/host_path.h"
#include "platform/files/whole_file.h"

namespace zenvora::cli {

namespace fs = std::filesystem;

namespace {

/// An upgrade of the copy that is merged into leaves a copy of its own beside it, which nobody needs: the
/// destination as it was is kept anyway.
struct UpgradeTraces {
    fs::path databook;
    ~UpgradeTraces() {
        std::error_code ignored;
        const databook::UpgradeCopy copy(databook);
        fs::remove(copy.Path(), ignored);
        fs::remove(copy.NotePath(), ignored);
    }
};

class MergeCommand final : public Command {
  public:
    MergeCommand()
        : Command({"merge", "Copy the records of one or two Databooks into another",
                   "ALL.mdb SOLD.mdb ACTIVE.mdb --existing skip"}) {}

    void Declare(CLI::App& arguments) override {
        arguments
            .add_option("DESTINATION", destination_,
                        "The Databook that gets the records; made when it is missing, and else kept as "
                        "DESTINATION.bak")
            ->required();
        arguments.add_option("SOURCE", source_, "A Databook to copy from")->required();
        arguments.add_option("SOURCE2", source2_, "Another one, copied after it");
        arguments
            .add_option("--existing", existing_,
                        "Records whose key the destination holds already: overwrite or skip")
            ->type_name("WHAT")
            ->required()
            ->check(CLI::IsMember({"overwrite", "skip"}).description(""));
    }

    Exit Run(Call& call) override {
        std::vector<std::string> sources{source_};
        if (!source2_.empty()) sources.push_back(source2_);
        for (const std::string& source : sources)
            CheckSource(source);
        const fs::path destination = HostPath(destination_);
        const bool isNew = !files::FileExists(destination);

        // Merged in a copy, so that a merge that breaks off leaves the destination as it was.
        FinishedFile file(destination, true);
        const UpgradeTraces traces{file.Path()};
        importing::MergeCounts counts;
        file.Make([&](const fs::path& path) {
            if (isNew) {
                databook::CreateTemplate(path, call.session.clock.Now());
            } else {
                files::CopyWholeFile(destination, path);
            }
            const auto to = UpToDate(call.session, destination_, Shown(path));
            for (const std::string& source : sources)
                Copy(call.session, source, *to, counts);
            to->Close();
        });
        file.Finish();
        Write(call, counts);
        return Exit::Done;
    }

  private:
    [[nodiscard]] importing::ExistingRecords Existing() const {
        return existing_ == "overwrite" ? importing::ExistingRecords::Overwrite
                                        : importing::ExistingRecords::Skip;
    }

    void CheckSource(const std::string& source) const {
        std::error_code ignored;
        if (!files::FileExists(HostPath(source))) {
            Place place;
            place.file = source;
            throw Fault{fault::kFileNotFound, "There is no such Databook to copy from. Check its name.",
                        place};
        }
        if (fs::equivalent(HostPath(source), HostPath(destination_), ignored)) {
            throw Failure{Exit::BadCommandLine, source +
                                                    " is the destination itself. Name another source "
                                                    "(see zenvora-cli merge --help)."};
        }
    }

    void Copy(common::Session& session, const std::string& source, ado::Adodc& to,
              importing::MergeCounts& counts) const {
        const auto from = ToRead(session, source);
        try {
            importing::MergeRecords(session, from->Recordset(), to.Recordset(), Existing(), counts);
        } catch (Fault& fault) {
            if (IsFileFault(fault)) throw;
            fault.place.file = source;
            throw Failure{Exit::SomethingRefused, FaultLine(fault, source) + ". Nothing was merged, and " +
                                                      destination_ + " is as it was."};
        }
    }

    /// A source; one that is up to date is not opened for writing, for another program may be doing that.
    static std::unique_ptr<ado::Adodc> ToRead(common::Session& session, const std::string& source) {
        try {
            auto control = ControlOf(session, source, Access::Read);
            databook::AdoSelect(*control, session.table, "*", "");
            if (databook::AdoFieldexists2(*control, "ORIGLISTPRICE")) return control;
        } catch (const Fault& fault) {
            if (fault.number != fault::kNoSuchTable) throw;
        }
        return UpToDate(session, source, source);
    }

    /// All fields of the Databook at `path`; an old one is brought up to date first, as opening it does.
    static std::unique_ptr<ado::Adodc> UpToDate(common::Session& session, const std::string& name,
                                                const std::string& path) {
        auto control = ControlOf(session, path, Access::Write);
        try {
            databook::Check4NewListingFieldsMain(session, *control, name);
        } catch (const Fault& fault) {
            if (fault.number != fault::kNoSuchTable) throw;
            throw Failure{Exit::FileTrouble, name + " is no Databook: it has no table " + session.table +
                                                 ". Nothing was merged."};
        } catch (const common::ProgramEnds&) {
            throw Failure{Exit::FileTrouble, name + " is no Databook: its table " + session.table +
                                                 " has no column CENTRALKEY. Nothing was merged."};
        }
        return control;
    }

    void Write(Call& call, const importing::MergeCounts& counts) const {
        auto& out = call.io.out;
        switch (call.format) {
            case OutputFormat::Text:
                out << destination_ << ": " << importing::CountsText(counts) << '\n';
                break;
            case OutputFormat::Csv:
                WriteCsv(out, {{"added"}, {"overwritten"}, {"skipped"}},
                         Rows({{std::to_string(counts.added), std::to_string(counts.overwritten),
                                std::to_string(counts.skipped)}}));
                break;
            case OutputFormat::Json: {
                Json json = Json::object();
                json["destination"] = destination_;
                json["added"] = counts.added;
                json["overwritten"] = counts.overwritten;
                json["skipped"] = counts.skipped;
                out << Compact(json) << '\n';
                break;
            }
        }
    }

    std::string destination_;
    std::string source_;
    std::string source2_;
    std::string existing_;
};

}  // namespace

std::unique_ptr<Command> MakeMergeCommand() {
    return std::make_unique<MergeCommand>();
}

}  // namespace zenvora::cli
