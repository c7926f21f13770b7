#include <algorithm>
#include <fstream>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/finished_file.h"
#include "cli/open_databook.h"
#include "cli/table.h"
#include "cli/values.h"
#include "databook/template.h"
#include "import/mapping.h"
#include "import/unattended_import.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::cli {

namespace fs = std::filesystem;

namespace {

/// The map beside the source: the same base name, its extension in any case.
std::string MapBeside(const fs::path& source) {
    fs::path exact = source;
    exact.replace_extension(".map");
    std::error_code error;
    if (fs::exists(exact, error)) return Shown(exact);
    const fs::path folder = source.has_parent_path() ? source.parent_path() : fs::path(".");
    std::vector<fs::path> others;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (text::EqualsNoCase(Shown(entry.path().filename()), Shown(exact.filename())))
            others.push_back(entry.path());
    }
    // The first by name, so that the choice does not hang on the order of the folder.
    const auto first = std::min_element(others.begin(), others.end());
    return Shown(first == others.end() ? exact : source.parent_path() / first->filename());
}

bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code ignored;
    return fs::equivalent(HostPath(a), HostPath(b), ignored);
}

Fault NoMap(const std::string& path) {
    Place place;
    place.file = path;
    return {fault::kFileNotFound,
            "There is no such map file, which says what field of the source goes where. Write one, with a "
            "line \"source field "
            "<-> destination\" for each field, or name another with --map.",
            place};
}

class ImportCommand final : public Command {
  public:
    ImportCommand()
        : Command({"import", "Load a source file into a new Databook by a map",
                   "LISTINGS.CSV --into LISTINGS.mdb"}) {}

    void Declare(CLI::App& arguments) override {
        arguments.add_option("SOURCE", source_, "Delimited text (.csv, .txt) or XML (.xml)")->required();
        arguments
            .add_option(
                "--into", databook_,
                "The Databook to make (default: the source's base name + .mdb in the working directory)")
            ->type_name("DATABOOK");
        arguments
            .add_option("--map", map_,
                        "The map file (default: the source's base name + .map beside the source)")
            ->type_name("MAP");
        arguments.add_flag("--no-header", noHeader_,
                           "The first line of a delimited source holds data and no field names");
        arguments.add_option("--log", log_, "Write the load log to FILE (- for standard output)")
            ->type_name("FILE");
        arguments.add_flag("--force", force_, "Replace an existing Databook; it is kept as DATABOOK.bak");
        auto* suggest = arguments.add_flag(
            "--suggest", suggest_, "Print the map that the source's field names propose, and import nothing");
        arguments
            .add_option("--save", save_, "With --suggest: write the map to MAP (--force replaces a file)")
            ->type_name("MAP")
            ->needs(suggest);
    }

    Exit Run(Call& call) override {
        if (suggest_) return Suggest(call);
        const fs::path source = HostPath(source_);
        if (map_.empty()) map_ = MapBeside(source);
        if (databook_.empty()) databook_ = Shown(source.stem()) + ".mdb";
        CheckNames();

        importing::ImportJob job;
        job.source = source_;
        job.map = map_;
        job.headerRow = !noHeader_;
        job.sourceDate = importing::SourceFileDate(source_);
        job.logWanted = !log_.empty();
        std::error_code ignored;
        if (!fs::exists(HostPath(map_), ignored)) throw NoMap(map_);

        FinishedFile file(HostPath(databook_), force_);
        job.databook = Shown(file.Path());
        importing::ImportResult result;
        file.Make([&](const fs::path& path) {
            const auto makeDatabook = [&] { databook::CreateTemplate(path, call.session.clock.Now()); };
            result = importing::ImportFile(call.session, job, makeDatabook, AlwaysTo(job.databook));
        });
        WriteLog(result.log, call.io.out);
        file.Finish();

        WriteOutcome(call, result.outcome);
        return NameRefused(call, result.outcome);
    }

  private:
    Exit Suggest(Call& call) const {
        if (!save_.empty() && IsSameFile(save_, source_)) {
            throw Failure{Exit::BadCommandLine, "--save " + save_ +
                                                    " is the source itself. Name another file (see "
                                                    "zenvora-cli import --help)."};
        }
        const importing::SuggestedMap map = importing::SuggestFor(call.session, source_, !noHeader_);
        if (map.mappings.empty()) {
            throw Failure{Exit::SomethingRefused,
                          source_ +
                              ": no field of the source is known by its name. Write a map file, with a "
                              "line \"source field <-> destination\" for each field."};
        }
        std::error_code ignored;
        if (!save_.empty()) {
            if (!force_ && fs::exists(HostPath(save_), ignored)) {
                Place place;
                place.file = save_;
                throw Fault{fault::kFileExists,
                            "The file exists already. Name another one, or give --force to replace it; it is "
                            "then kept beside the new one as " +
                                Shown(HostPath(save_).filename()) + ".bak.",
                            place};
            }
            importing::SaveSuggestion(map, Shown(HostPath(save_)));
        }
        WriteSuggestion(call, map);
        return Exit::Done;
    }

    void WriteSuggestion(Call& call, const importing::SuggestedMap& map) const {
        auto& out = call.io.out;
        if (!call.quiet) {
            for (const std::string& note : map.notes)
                call.io.err << source_ << ": " << note << '\n';
        }
        switch (call.format) {
            case OutputFormat::Text:
                for (const auto& mapping : map.mappings)
                    out << importing::MappingText(mapping.source, mapping.destination) << '\n';
                break;
            case OutputFormat::Csv: {
                std::vector<std::vector<std::string>> rows;
                for (const auto& mapping : map.mappings)
                    rows.push_back({mapping.source, mapping.destination});
                WriteCsv(out, {{"source"}, {"destination"}}, Rows(std::move(rows)));
                break;
            }
            case OutputFormat::Json: {
                Json json = Json::object();
                json["source"] = source_;
                json["mappings"] = Json::array();
                for (const auto& mapping : map.mappings)
                    json["mappings"].push_back(
                        {{"source", mapping.source}, {"destination", mapping.destination}});
                json["notes"] = map.notes;
                out << Compact(json) << '\n';
                break;
            }
        }
    }

    /// A slip of the hand must not cost the user the source.
    void CheckNames() const {
        const auto refuse = [](const std::string& option, const std::string& path, const std::string& what) {
            throw Failure{Exit::BadCommandLine,
                          option + " " + path + " is the " + what +
                              " itself. Name another file (see zenvora-cli import --help)."};
        };
        if (IsSameFile(databook_, source_)) refuse("--into", databook_, "source");
        if (IsSameFile(databook_, map_)) refuse("--into", databook_, "map");
        if (log_.empty() || log_ == "-") return;
        if (IsSameFile(log_, source_)) refuse("--log", log_, "source");
        if (IsSameFile(log_, map_)) refuse("--log", log_, "map");
        if (IsSameFile(log_, databook_) ||
            HostPath(log_).lexically_normal() == HostPath(databook_).lexically_normal()) {
            refuse("--log", log_, "Databook");
        }
    }

    void WriteLog(const importing::LoadLog& log, std::ostream& standardOutput) const {
        if (log_.empty()) return;
        const auto write = [&log](std::ostream& out) {
            for (std::size_t i = 0; i < log.ListCount(); ++i)
                out << log.List(i) << '\n';
        };
        if (log_ == "-") {
            write(standardOutput);
            return;
        }
        std::ofstream file(HostPath(log_), std::ios::binary);
        const bool opened = file.is_open();
        write(file);
        file.close();
        if (!file) {
            std::error_code ignored;
            if (opened) fs::remove(HostPath(log_), ignored);
            Place place;
            place.file = log_;
            throw Fault{
                fault::kPathAccess,
                "The log cannot be written there, and nothing was imported. Name another file with --log.",
                place};
        }
    }

    void WriteOutcome(Call& call, const importing::LoadOutcome& outcome) const {
        auto& out = call.io.out;
        switch (call.format) {
            case OutputFormat::Text:
                out << source_ << ": " << text::IntegerText(outcome.rows)
                    << (outcome.rows == 1 ? " row, " : " rows, ") << text::IntegerText(outcome.written)
                    << " written into " << databook_ << ", "
                    << text::IntegerText(outcome.rows - outcome.written) << " refused\n";
                break;
            case OutputFormat::Csv: {
                std::vector<std::vector<std::string>> rows;
                for (const auto& refused : outcome.refused)
                    rows.push_back({text::IntegerText(refused.row), refused.reason});
                WriteCsv(out, {{"row"}, {"reason"}}, Rows(std::move(rows)));
                break;
            }
            case OutputFormat::Json: {
                Json json = Json::object();
                json["source"] = source_;
                json["databook"] = databook_;
                json["map"] = map_;
                json["rows"] = outcome.rows;
                json["written"] = outcome.written;
                json["refused"] = Json::array();
                for (const auto& refused : outcome.refused) {
                    Json row = Json::object();
                    row["row"] = refused.row;
                    row["reason"] = refused.reason;
                    json["refused"].push_back(std::move(row));
                }
                out << Compact(json) << '\n';
                break;
            }
        }
    }

    /// Refused rows on standard error; blank ones are no trouble, and are only mentioned.
    Exit NameRefused(Call& call, const importing::LoadOutcome& outcome) const {
        for (const auto& refused : outcome.refused) {
            if (refused.isBlank && call.quiet) continue;
            call.io.err << source_ << ": row " << text::IntegerText(refused.row);
            if (refused.line > 0) call.io.err << " (line " << text::IntegerText(refused.line) << ")";
            call.io.err << " was not written: " << refused.reason << '\n';
        }
        if (!outcome.HasErrors()) return Exit::Done;
        const auto trouble = std::count_if(outcome.refused.begin(), outcome.refused.end(),
                                           [](const auto& refused) { return !refused.isBlank; });
        throw Failure{Exit::SomethingRefused,
                      source_ + ": " + text::IntegerText(trouble) + " of " + text::IntegerText(outcome.rows) +
                          " rows were refused and named above; the others are in " + databook_ +
                          ". Mend the source or its map and import it again with --force."};
    }

    std::string source_;
    std::string databook_;
    std::string map_;
    std::string log_;
    bool noHeader_ = false;
    bool force_ = false;
    bool suggest_ = false;
    std::string save_;
};

}  // namespace

std::unique_ptr<Command> MakeImportCommand() {
    return std::make_unique<ImportCommand>();
}

}  // namespace zenvora::cli
