#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>

#include "cli/command.h"
#include "cli/console_desktop.h"
#include "cli/failure.h"
#include "cli/values.h"

namespace zenvora::cli {

namespace {

constexpr const char* kName = "zenvora-cli";

/// The options that every command takes.
struct CommonOptions {
    std::string format = "text";
    std::string date;
    std::string today;
    bool quiet = false;
};

std::vector<std::unique_ptr<Command>> AllCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(MakeNewCommand());
    commands.push_back(MakeImportCommand());
    commands.push_back(MakeCheckCommand());
    commands.push_back(MakeCalcCommand());
    commands.push_back(MakeRecordsCommand());
    commands.push_back(MakePrintCommand());
    commands.push_back(MakeSelectCommand());
    commands.push_back(MakeSqlCommand());
    commands.push_back(MakeAddendumCommand());
    commands.push_back(MakeTransferCommand());
    commands.push_back(MakeUpgradeCommand());
    commands.push_back(MakeMergeCommand());
    commands.push_back(MakeCompactCommand());
    commands.push_back(MakeConvertCommand());
    commands.push_back(MakeRepairCommand());
    commands.push_back(MakeVerifyCommand());
    return commands;
}

/// What CLI11 prints behind the option's name, or nothing when the text is a date.
std::string RefuseNoDate(const std::string& text) {
    if (ParseDate(text)) return "";
    return "\"" + text + "\" is no date. Give it as MM/DD/YYYY or YYYY-MM-DD.";
}

std::string RefuseNoEffectiveDate(const std::string& text) {
    if (auto refusal = RefuseNoDate(text); !refusal.empty()) return refusal;
    // Earlier days are how the Databook writes that a date is missing.
    if (*ParseDate(text) < *text::DayNumber(1901, 1, 1))
        return "\"" + text + "\" lies before 1/1/1901. Give a later date.";
    return "";
}

CLI::App* Declare(CLI::App& program, Command& command, CommonOptions& options) {
    const auto& verb = command.GetVerb();
    auto* arguments = program.add_subcommand(verb.name, verb.summary)->group("Commands");
    command.Declare(*arguments);
    const std::string common = "Common options";
    arguments->add_option("--format", options.format, "How the result is written: text, json or csv")
        ->type_name("FORMAT")
        ->capture_default_str()
        ->check(CLI::IsMember({"text", "json", "csv"}).description(""))
        ->group(common);
    arguments->add_option("--date", options.date, "The Effective Appraisal Date (default: today)")
        ->type_name("DATE")
        ->check(CLI::Validator(RefuseNoEffectiveDate, ""))
        ->group(verb.usesDate ? common : "");
    arguments
        ->add_option("--today", options.today,
                     "The date that the clock shows (default: the real one); makes a run repeatable")
        ->type_name("DATE")
        ->check(CLI::Validator(RefuseNoDate, ""))
        ->group(common);
    arguments->add_flag("--quiet", options.quiet, "Print results and failures only")->group(common);
    arguments->set_help_flag("--help", "Print this help");
    arguments->get_option("--help")->group(common);
    arguments->footer("Example:\n  " + std::string(kName) + " " + verb.name + " " + verb.example);
    return arguments;
}

OutputFormat FormatOf(const std::string& name) {
    if (name == "json") return OutputFormat::Json;
    return name == "csv" ? OutputFormat::Csv : OutputFormat::Text;
}

/// One line on `err`, whatever the text holds.
void PrintLine(std::ostream& err, const std::string& command, std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    err << kName << (command.empty() ? "" : " ") << command << ": " << text << std::endl;
}

Exit RunCommand(Command& command, const CommonOptions& options, const Environment& environment) {
    std::optional<shell::FixedClock> fixed;
    if (!options.today.empty()) fixed.emplace(*ParseDate(options.today));
    const shell::Clock& clock = fixed ? *fixed : environment.clock;

    ConsoleDesktop desktop(environment.io.err,
                           {.drawProgress = environment.errIsTerminal, .quiet = options.quiet});
    common::Session session{desktop, clock, environment.databooks, "", "COMPS", 0};
    Call call{.io = environment.io,
              .session = session,
              .format = FormatOf(options.format),
              .quiet = options.quiet,
              .link = environment.link,
              .makePdf = environment.makePdf};
    call.effectiveDate = options.date.empty() ? clock.Today() : *ParseDate(options.date);

    struct Unlisten {
        ado::DatabasePool& databooks;
        ~Unlisten() { databooks.SetListener({}); }
    };
    const Unlisten unlisten{environment.databooks};
    environment.databooks.SetListener([&](const std::filesystem::path& path, const std::string& notice) {
        desktop.EndProgress();
        PrintLine(environment.io.err, command.GetVerb().name, Shown(path) + ": " + notice + ".");
    });
    const auto fail = [&](Exit status, const std::string& line) {
        desktop.EndProgress();
        PrintLine(environment.io.err, command.GetVerb().name, line);
        return status;
    };
    try {
        const Exit status = command.Run(call);
        desktop.EndProgress();
        environment.io.out.flush();
        if (!environment.io.out) {
            return fail(Exit::FileTrouble,
                        "standard output could not be written. Check the disk that it goes to.");
        }
        return status;
    } catch (const Failure& failure) {
        return fail(failure.status, failure.line);
    } catch (const Fault& fault) {
        return fail(Exit::FileTrouble, FaultLine(fault, ""));
    } catch (const std::bad_alloc&) {
        return fail(Exit::FileTrouble, "there is not enough memory for this file. Nothing was finished.");
    } catch (const std::exception& error) {
        return fail(Exit::FileTrouble, error.what());
    }
}

}  // namespace

Exit RunProgram(const std::vector<std::string>& arguments, const Environment& environment) {
    CLI::App program("Works out the figures of Form 1004MC from a Databook of comparable sales and listings.",
                     kName);
    program.set_help_flag("--help", "Print this help");
    program.set_version_flag("--version", std::string(kName) + " " ZENVORA_VERSION);
    program.footer(
        std::string("Each command has its own help: ") + kName +
        " COMMAND --help\nExit status: 0 done; 1 done, but something was refused or not found; 2 the command "
        "line is wrong;\n3 a file cannot be opened, read or written, or is no Databook;\n4 the appraisal "
        "program cannot be reached.");
    program.require_subcommand(1);
    const auto formatter = program.get_formatter();
    formatter->label("SUBCOMMAND", "COMMAND");
    formatter->label("Positionals", "Arguments");
    formatter->label("REQUIRED", "");
    formatter->label("TEXT", "");
    formatter->column_width(24);

    CommonOptions options;
    const auto commands = AllCommands();
    std::vector<CLI::App*> declared;
    declared.reserve(commands.size());
    for (const auto& command : commands)
        declared.push_back(Declare(program, *command, options));

    // CLI11 would only say that a command is required. The program itself takes no option with a value.
    const auto verb = std::find_if(arguments.begin(), arguments.end(), [](const std::string& argument) {
        return argument.empty() || argument[0] != '-';
    });
    const bool isKnown = verb != arguments.end() &&
                         std::any_of(commands.begin(), commands.end(),
                                     [&](const auto& command) { return command->GetVerb().name == *verb; });
    if (arguments.empty()) {
        PrintLine(environment.io.err, "", std::string("name a command (see ") + kName + " --help)");
        return Exit::BadCommandLine;
    }
    if (verb != arguments.end() && !isKnown) {
        PrintLine(environment.io.err, "", "there is no command \"" + *verb + "\" (see " + kName + " --help)");
        return Exit::BadCommandLine;
    }

    const auto chosen = [&] {
        return static_cast<std::size_t>(std::find_if(declared.begin(), declared.end(),
                                                     [](const CLI::App* app) { return app->parsed(); }) -
                                        declared.begin());
    };
    try {
        // The parser takes its arguments from the back.
        std::vector<std::string> backwards(arguments.rbegin(), arguments.rend());
        program.parse(backwards);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            if (dynamic_cast<const CLI::CallForVersion*>(&error) != nullptr) {
                environment.io.out << error.what() << '\n';
            } else {
                program.exit(error, environment.io.out, environment.io.err);
            }
            return Exit::Done;
        }
        const auto at = chosen();
        const std::string verb = at < commands.size() ? commands[at]->GetVerb().name : "";
        // CLI11 does not name an option that help does not show. There is one: the date, where it has no
        // meaning.
        std::string what = error.what();
        if (what.starts_with(": ")) what.insert(0, "--date");
        PrintLine(environment.io.err, verb,
                  what + " (see " + kName + (verb.empty() ? "" : " ") + verb + " --help)");
        return Exit::BadCommandLine;
    }
    return RunCommand(*commands[chosen()], options, environment);
}

}  // namespace zenvora::cli
