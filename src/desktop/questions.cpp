// The questions of the screen: messages and file dialogs.

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>

#include "desktop/qt_desktop.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Answer;
using controls::Buttons;

namespace {

struct Choice {
    QMessageBox::StandardButton button;
    Answer answer;
};

std::vector<Choice> ChoicesOf(Buttons buttons) {
    constexpr Choice kOk{QMessageBox::Ok, Answer::Ok};
    constexpr Choice kCancel{QMessageBox::Cancel, Answer::Cancel};
    constexpr Choice kYes{QMessageBox::Yes, Answer::Yes};
    constexpr Choice kNo{QMessageBox::No, Answer::No};
    constexpr Choice kRetry{QMessageBox::Retry, Answer::Retry};
    switch (buttons) {
        case Buttons::Ok:
            return {kOk};
        case Buttons::OkCancel:
            return {kOk, kCancel};
        case Buttons::AbortRetryIgnore:
            return {{QMessageBox::Abort, Answer::Abort}, kRetry, {QMessageBox::Ignore, Answer::Ignore}};
        case Buttons::YesNoCancel:
            return {kYes, kNo, kCancel};
        case Buttons::YesNo:
            return {kYes, kNo};
        case Buttons::RetryCancel:
            return {kRetry, kCancel};
    }
    return {kOk};
}

QMessageBox::Icon IconOf(controls::Icon icon) {
    switch (icon) {
        case controls::Icon::None:
            return QMessageBox::NoIcon;
        case controls::Icon::Information:
            return QMessageBox::Information;
        case controls::Icon::Question:
            return QMessageBox::Question;
        case controls::Icon::Exclamation:
            return QMessageBox::Warning;
        case controls::Icon::Critical:
            return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

/// "Map Files (*.map)|*.map|All|*.*" as the toolkit wants it: captions without patterns of their own, each
/// pattern in small letters and in capitals too.
QStringList NameFilters(const std::string& filter) {
    const QStringList parts = Shown(filter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype at = 0; at + 1 < parts.size(); at += 2) {
        QStringList patterns;
        for (const QString& part : parts[at + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            const QString pattern = part.trimmed();
            for (const QString& form : {pattern, pattern.toLower(), pattern.toUpper()}) {
                if (!patterns.contains(form)) patterns << form;
            }
        }
        const QString caption = parts[at].left(parts[at].indexOf(QLatin1Char('('))).trimmed();
        filters << QStringLiteral("%1 (%2)").arg(caption, patterns.join(QLatin1Char(' ')));
    }
    return filters;
}

}  // namespace

int QtDesktop::Ask(QDialog& question) {
    if (endingSession_ != nullptr) return QDialog::Rejected;
    // The pointer of a long run would say that the question cannot be answered.
    if (hourglass_) QApplication::changeOverrideCursor(Qt::ArrowCursor);
    ++questions_;
    const int answer = question.exec();
    --questions_;
    if (hourglass_) QApplication::changeOverrideCursor(Qt::WaitCursor);
    return answer;
}

Answer QtDesktop::Show(const controls::MessageBox& message) {
    ShowWaiting();
    EndProgress();
    QMessageBox box(Front());
    box.setObjectName(QStringLiteral("message"));
    box.setWindowTitle(Shown(message.title));
    box.setTextFormat(Qt::PlainText);
    box.setText(Shown(message.text));
    box.setIcon(IconOf(message.icon));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const std::vector<Choice> choices = ChoicesOf(message.buttons);
    for (const Choice& choice : choices)
        box.addButton(choice.button);
    box.setDefaultButton(choices.front().button);
    const int pressed = Ask(box);
    for (const Choice& choice : choices) {
        if (choice.button == pressed) return choice.answer;
    }
    // Taken away without an answer, because the session ends: the answer that does least.
    switch (message.buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::AbortRetryIgnore:
            return Answer::Abort;
        case Buttons::YesNo:
            return Answer::No;
        default:
            return Answer::Cancel;
    }
}

std::string QtDesktop::Choose(const controls::FileDialog& dialog) {
    ShowWaiting();
    EndProgress();
    QFileDialog box(Front(), Shown(dialog.title), Shown(dialog.directory));
    box.setObjectName(QStringLiteral("file"));
    box.setAcceptMode(dialog.forSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    // Some rules ask here for the name of a file that is still to be made.
    box.setFileMode(QFileDialog::AnyFile);
#if !defined(Q_OS_WIN) && !defined(Q_OS_MACOS)
    // The native dialogs of free desktops open files that are there already, and no others.
    box.setOption(QFileDialog::DontUseNativeDialog, !dialog.forSaving);
#endif
    const QStringList filters = NameFilters(dialog.filter);
    if (!filters.isEmpty()) {
        box.setOption(QFileDialog::HideNameFilterDetails);
        box.setNameFilters(filters);
    }
    box.setDefaultSuffix(Shown(dialog.defaultExtension));
    if (!dialog.fileName.empty()) box.selectFile(Shown(dialog.fileName));
    box.resize(box.sizeHint().expandedTo(QSize(820, 520)));
    const bool chosen = Ask(box) == QDialog::Accepted && !box.selectedFiles().isEmpty();
    return chosen ? Stored(box.selectedFiles().constFirst()) : std::string();
}

}  // namespace zenvora::desktop
