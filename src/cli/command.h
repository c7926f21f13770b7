#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "cli/streams.h"
#include "common/dates.h"
#include "common/session.h"
#include "platform/link/carrier.h"
#include "platform/page/pdf.h"

namespace zenvora::cli {

enum class OutputFormat { Text, Json, Csv };

/// What every command gets: the streams, the session, and the options that all commands share.
struct Call {
    Streams io;
    common::Session& session;
    OutputFormat format = OutputFormat::Text;
    common::Date effectiveDate = 0;
    bool quiet = false;
    link::Carrier& link;       ///< the way to the appraisal program
    page::PdfMaker makePdf{};  ///< empty in a build without printing
};

/// One verb of the program. Help is made from what it declares.
class Command {
  public:
    struct Verb {
        std::string name;
        std::string summary;
        std::string example;    ///< arguments only, as a user would type them
        bool usesDate = false;  ///< `--date` has a meaning here, and help shows it
    };

    explicit Command(Verb verb) : verb_(std::move(verb)) {}
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    [[nodiscard]] const Verb& GetVerb() const { return verb_; }
    /// Adds the arguments and options that are this command's own.
    virtual void Declare(CLI::App& arguments) = 0;
    /// Does it. What goes wrong is a Failure or a Fault.
    virtual Exit Run(Call& call) = 0;

  private:
    Verb verb_;
};

[[nodiscard]] std::unique_ptr<Command> MakeNewCommand();
[[nodiscard]] std::unique_ptr<Command> MakeImportCommand();
[[nodiscard]] std::unique_ptr<Command> MakeCheckCommand();
[[nodiscard]] std::unique_ptr<Command> MakeCalcCommand();
[[nodiscard]] std::unique_ptr<Command> MakePrintCommand();
[[nodiscard]] std::unique_ptr<Command> MakeRecordsCommand();
[[nodiscard]] std::unique_ptr<Command> MakeSelectCommand();
[[nodiscard]] std::unique_ptr<Command> MakeSqlCommand();
[[nodiscard]] std::unique_ptr<Command> MakeAddendumCommand();
[[nodiscard]] std::unique_ptr<Command> MakeTransferCommand();
[[nodiscard]] std::unique_ptr<Command> MakeUpgradeCommand();
[[nodiscard]] std::unique_ptr<Command> MakeMergeCommand();
[[nodiscard]] std::unique_ptr<Command> MakeCompactCommand();
[[nodiscard]] std::unique_ptr<Command> MakeConvertCommand();
[[nodiscard]] std::unique_ptr<Command> MakeRepairCommand();
[[nodiscard]] std::unique_ptr<Command> MakeVerifyCommand();

}  // namespace zenvora::cli
