#pragma once

#include <string_view>
#include <utility>

#include "common/session.h"
#include "platform/fault.h"

/// The error rule of the common modules: what a procedure does when one of its statements fails.
namespace zenvora::common {

/// What ReportFileError tells the procedure that failed to do.
enum class ErrorAnswer {
    Retry = 0,           ///< run the failed statement again
    NextStatement = 1,   ///< go on behind it
    LeaveProcedure = 2,  ///< leave the procedure without a fault
    Raise = 3,           ///< raise the same fault to the caller
};

/// How a statement under the rule ended.
enum class StatementEnd { Done, Skipped, LeaveProcedure };

/// Ends the program from wherever it stands. Only main() catches it; it is no std::exception, so that no
/// handler of ordinary failures keeps the program alive.
struct ProgramEnds {
    int faultNumber = 0;
};

/// Answers a fault by its number: 57, 61, 68 and 71 ask the user, naming the procedure entered last; 3218
/// says that the Databooks may be corrupt and raises ProgramEnds; all others are raised to the caller without
/// a message.
[[nodiscard]] ErrorAnswer ReportFileError(Session& session, int number);

/// Runs one statement of the procedure `name` under the rule. The name becomes the procedure entered last. A
/// Fault out of `statement` goes to ReportFileError and is retried, skipped or raised again as that answers.
/// A procedure of several statements wraps each one and leaves when it gets LeaveProcedure.
template <class Statement>
StatementEnd WithErrorRule(Session& session, std::string_view name, Statement&& statement) {
    session.lastProcedure = name;
    for (;;) {
        try {
            statement();
            return StatementEnd::Done;
        } catch (const Fault& fault) {
            switch (ReportFileError(session, fault.number)) {
                case ErrorAnswer::Retry:
                    break;
                case ErrorAnswer::NextStatement:
                    return StatementEnd::Skipped;
                case ErrorAnswer::LeaveProcedure:
                    return StatementEnd::LeaveProcedure;
                case ErrorAnswer::Raise:
                    throw;
            }
        }
    }
}

}  // namespace zenvora::common
