#include "transfer/conversation.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "common/error_rule.h"
#include "common/text_helpers.h"
#include "platform/text/utf8.h"

namespace zenvora::transfer {
namespace {

/// The statements of one operation. Once one of them has left the operation, the others are passed over.
class Statements {
  public:
    Statements(common::Session& session, std::string_view name, std::initializer_list<int> quiet)
        : session_(session), name_(name), quiet_(quiet) {
        session_.lastProcedure = name;
    }

    /// Runs a statement; false once the operation is left.
    template <class Statement>
    bool Run(Statement statement) {
        if (quietFault_ != 0 || left_) return false;
        const auto end = common::WithErrorRule(session_, name_, [&] {
            try {
                statement();
            } catch (const Fault& fault) {
                if (std::find(quiet_.begin(), quiet_.end(), fault.number) == quiet_.end()) throw;
                quietFault_ = fault.number;
            }
        });
        left_ = end == common::StatementEnd::LeaveProcedure;
        skipped_ = skipped_ || end == common::StatementEnd::Skipped;
        return quietFault_ == 0 && !left_;
    }

    /// The fault that ended the operation without a word, 0 for none.
    [[nodiscard]] int QuietFault() const noexcept { return quietFault_; }
    /// Every statement was done.
    [[nodiscard]] bool AllDone() const noexcept { return quietFault_ == 0 && !left_ && !skipped_; }

  private:
    common::Session& session_;
    std::string_view name_;
    std::initializer_list<int> quiet_;
    int quietFault_ = 0;
    bool left_ = false;
    bool skipped_ = false;
};

/// What most operations are: the topic and the item, then the mode, then the request. True when it came to
/// its end.
bool Fetch(Endpoint& endpoint, Statements& statements, std::string_view topic, std::string_view item) {
    statements.Run([&] { endpoint.SetLinkMode(Endpoint::kClosed); });
    statements.Run([&] { endpoint.SetLinkTopic(std::string(topic)); });
    statements.Run([&] { endpoint.SetLinkItem(std::string(item)); });
    statements.Run([&] { endpoint.SetLinkMode(Endpoint::kManual); });
    statements.Run([&] { endpoint.LinkRequest(); });
    return statements.Run([&] { endpoint.SetLinkMode(Endpoint::kClosed); });
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

constexpr std::initializer_list<int> kQuietQuery{fault::kNoAnswer};
constexpr std::initializer_list<int> kQuietReport{fault::kNoAnswer, fault::kInvalidProperty};
constexpr std::initializer_list<int> kQuietField{fault::kNoAnswer, fault::kLinkFailed,
                                                 fault::kInvalidProperty};
constexpr std::initializer_list<int> kQuietPoke{fault::kInvalidProperty};

constexpr std::array<std::string_view, 8> kCondoForms{"ECUFM,", "ICUFM,", "NCE,", "NCU,",
                                                      "ECI,",   "ICI,",   "ECU,", "ICU,"};

}  // namespace

void KrnQueryActiveReports(Endpoint& endpoint, common::Session& session) {
    Statements statements(session, "KrnQueryActiveReports", kQuietQuery);
    statements.Run([&] { endpoint.SetLinkMode(Endpoint::kClosed); });
    statements.Run([&] { endpoint.SetLinkTopic("KRN|Query"); });
    statements.Run([&] { endpoint.SetLinkMode(Endpoint::kManual); });
    statements.Run([&] { endpoint.SetLinkItem("ActiveReports"); });
    statements.Run([&] { endpoint.LinkRequest(); });
    statements.Run([&] { endpoint.SetLinkMode(Endpoint::kClosed); });
}

void KrnListForms(Endpoint& endpoint, common::Session& session, std::string_view report) {
    Statements statements(session, "KrnListForms", kQuietReport);
    Fetch(endpoint, statements, TopicOf(report), "ListForms");
}

void KrnOpenReport(Endpoint& endpoint, common::Session& session, std::string_view report) {
    Statements statements(session, "KrnOpenReport", kQuietReport);
    // Not written as the other topics are: that is how KRN knows it.
    Fetch(endpoint, statements, "Krn|" + std::string(report), "UserID");
}

std::string KrnGetFieldInfo(Endpoint& endpoint, common::Session& session, std::string_view report,
                            std::string_view item) {
    Statements statements(session, "KrnGetFieldInfo", kQuietField);
    const std::string_view trimmed = text::TrimView(item);
    if (trimmed.empty() || trimmed.front() == '|') return {};
    return Fetch(endpoint, statements, TopicOf(report), item) ? endpoint.Text() : std::string();
}

PokeEnd KrnPokeText(Endpoint& endpoint, common::Session& session, std::string_view topic,
                    std::string_view item, std::string_view value) {
    Statements statements(session, "KrnPokeText", kQuietPoke);
    statements.Run([&] { endpoint.SetLinkMode(Endpoint::kClosed); });
    statements.Run([&] { endpoint.SetLinkTopic(std::string(topic)); });
    statements.Run([&] { endpoint.SetLinkMode(Endpoint::kManual); });
    statements.Run([&] { endpoint.SetLinkItem(std::string(item)); });
    statements.Run([&] { endpoint.SetText(text::Trim(value)); });
    bool fits = true;
    statements.Run([&] { fits = IsAscii(endpoint.Text()) || endpoint.GetCarrier().Fits(endpoint.Text()); });
    statements.Run([&] { endpoint.LinkPoke(); });
    if (statements.QuietFault() != 0) return PokeEnd::Refused;
    if (!statements.AllDone()) return PokeEnd::Unknown;
    return fits ? PokeEnd::Arrived : PokeEnd::Changed;
}

std::string FirstCommaField(std::string_view text) {
    return common::SplitFirst(text, "L", ",");
}

std::string TopicOf(std::string_view report) {
    return "KRN|" + std::string(report);
}

void OpenFirstReport(Endpoint& endpoint, common::Session& session) {
    session.lastProcedure = "OpenFirstReport";
    KrnQueryActiveReports(endpoint, session);
    const std::string report = FirstCommaField(endpoint.Text());
    KrnOpenReport(endpoint, session, report);
    KrnListForms(endpoint, session, report);
}

bool IsKrnReportOpen(Endpoint& endpoint, common::Session& session) {
    session.lastProcedure = "IsKrnReportOpen";
    endpoint.SetText("");
    KrnQueryActiveReports(endpoint, session);
    const std::string answer = text::Trim(text::Lower(endpoint.Text()));
    return !answer.empty() && answer != "none";
}

bool EnsureKrnRunning(Endpoint& endpoint, common::Session& session, bool& AskKrnAtStart,
                      const std::function<void()>& launchKrn) {
    session.lastProcedure = "EnsureKrnRunning";
    if (IsKrnReportOpen(endpoint, session)) return true;
    OpenFirstReport(endpoint, session);
    if (IsKrnReportOpen(endpoint, session)) return true;
    if (!AskKrnAtStart) return false;
    controls::MessageBox question;
    question.title = "Appraisal Program Not Running";
    question.text =
        "Would you like to launch the program?\nIf yes, please open AND save an Appraisal report.";
    question.icon = controls::Icon::Question;
    question.buttons = controls::Buttons::YesNo;
    const bool launches = session.desktop.Show(question) == controls::Answer::Yes;
    // Cleared before the launch, which may fail: the question comes once in a run.
    AskKrnAtStart = false;
    if (launches) launchKrn();
    return false;
}

bool IsCondoForm(std::string_view formList) {
    return std::any_of(kCondoForms.begin(), kCondoForms.end(),
                       [&](std::string_view form) { return formList.find(form) != std::string_view::npos; });
}

}  // namespace zenvora::transfer
