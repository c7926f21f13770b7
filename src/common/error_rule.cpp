#include "common/error_rule.h"

#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

constexpr std::string_view kCorruptText =
    "The databases may be corrupt.  Please run the rebuild programs. (Double Click on the icons) and restart "
    "Quillet "
    "Album.";

/// The old platform's texts of the faults that the user is asked about; empty for all others.
std::string_view DiskFaultText(int number) {
    switch (number) {
        case fault::kDeviceIo:
            return "Device I/O error";
        case fault::kDiskFull:
            return "Disk full";
        case fault::kDeviceUnavailable:
            return "Device unavailable";
        case fault::kDiskNotReady:
            return "Disk not ready";
        default:
            return {};
    }
}

}  // namespace

ErrorAnswer ReportFileError(Session& session, int number) {
    if (number == fault::kRecordLocked) {
        session.desktop.Show(
            {std::string(kCorruptText), "Zenvora", controls::Icon::Critical, controls::Buttons::Ok});
        throw ProgramEnds{number};
    }
    const std::string_view cause = DiskFaultText(number);
    if (cause.empty()) return ErrorAnswer::Raise;

    controls::MessageBox message;
    message.text = std::string(cause) + ".\nError # " + text::IntegerText(number) + " in module " +
                   text::Trim(session.lastProcedure) + ".";
    message.title = "Error";
    message.icon = controls::Icon::Critical;
    message.buttons = controls::Buttons::AbortRetryIgnore;
    switch (session.desktop.Show(message)) {
        case controls::Answer::Ok:
        case controls::Answer::Retry:
            return ErrorAnswer::Retry;
        case controls::Answer::Ignore:
            return ErrorAnswer::NextStatement;
        case controls::Answer::Abort:
        case controls::Answer::Cancel:
            return ErrorAnswer::LeaveProcedure;
        case controls::Answer::Yes:
        case controls::Answer::No:
            break;
    }
    return ErrorAnswer::Raise;
}

}  // namespace zenvora::common
