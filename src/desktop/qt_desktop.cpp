#include "desktop/qt_desktop.h"

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QEvent>
#include <algorithm>

#include "desktop/progress_panel.h"
#include "platform/fault.h"

namespace zenvora::desktop {

using controls::Form;
using controls::Modality;

QtDesktop::QtDesktop() = default;

QtDesktop::~QtDesktop() {
    for (Entry& entry : entries_) {
        if (entry.binder != nullptr) entry.binder->Detach();
        delete entry.window;
    }
    for (const QPointer<QWidget>& window : leaving_)
        delete window;
    SetHourglass(false);
}

// ---- forms on the screen ----

QtDesktop::Entry* QtDesktop::Find(const Form& form) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& entry) { return entry.form == &form; });
    return found == entries_.end() ? nullptr : &*found;
}

QWidget* QtDesktop::WindowOf(const Form& form) const {
    for (const Entry& entry : entries_) {
        if (entry.form == &form) return entry.window;
    }
    return nullptr;
}

QWidget* QtDesktop::Front() const {
    // A modal form is in front of all; else the window that the user works in.
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
        if (entry->modal && entry->window != nullptr) return entry->window;
    }
    for (const Entry& entry : entries_) {
        if (entry.form == active_) return entry.window;
    }
    return entries_.empty() ? nullptr : entries_.back().window.data();
}

void QtDesktop::ShowWaiting() {
    if (waiting_ == nullptr) return;
    QWidget* const window = waiting_;
    waiting_ = nullptr;
    window->show();
}

void QtDesktop::ShowForm(Form& form, Modality modality) {
    if (ended_) return;
    ShowWaiting();
    EndProgress();
    const bool modal = modality == Modality::Modal;
    if (Entry* const shown = Find(form); shown != nullptr) {
        shown->window->raise();
        shown->window->activateWindow();
        return;
    }
    const auto view = views_.find(form.Name());
    if (view == views_.end())
        throw Fault{fault::kInvalidCall, "The dialog " + form.Name() + " cannot be shown by this program."};

    auto binder = std::make_unique<Binder>(*this, form);
    QWidget* const window = view->second(form, *binder, Front());
    binder->setParent(window);
    entries_.push_back({&form, window, binder.get(), active_, modal});
    binder->SetWindow(*window);
    // A modal form closes off all windows, those without a parent too.
    if (modal) window->setWindowModality(Qt::ApplicationModal);
    active_ = &form;
    waiting_ = window;
    const QPointer<Binder> bound = binder.release();

    // First the rule and then the window: a form that closes itself again does not flash up, and a message
    // of the rule brings the window out behind it.
    User(form.Program(), [&] { form.Activate(); });
    if (bound == nullptr || Find(form) == nullptr) return;
    bound->GiveFocus();
    if (Find(form) == nullptr) return;
    ShowWaiting();
    window->activateWindow();
    if (!modal || ended_) return;

    QEventLoop loop;
    Find(form)->loop = &loop;
    // Rules that begin in the loop of this form are the user's, whichever rule has shown it.
    const int depth = std::exchange(depth_, 0);
    loop.exec();
    depth_ = depth;
    if (Entry* const left = Find(form); left != nullptr) left->loop = nullptr;
}

void QtDesktop::HideForm(Form& form) {
    Entry* const entry = Find(form);
    if (entry == nullptr) return;
    const Entry left = *entry;
    entries_.erase(entries_.begin() + (entry - entries_.data()));
    if (left.binder != nullptr) left.binder->Detach();
    if (active_ == &form) {
        // Below a modal form the program itself says what is activated; a window that comes to the front
        // because a modeless one has gone is activated by coming to the front.
        active_ = left.modal ? left.before : nullptr;
    }
    for (Entry& other : entries_) {
        if (other.before == &form) other.before = left.before;
    }
    if (waiting_ == left.window) waiting_ = nullptr;
    if (closing_ == &form) closing_ = nullptr;
    if (left.window != nullptr) {
        left.window->hide();
        // Later: the form may be leaving because of one of its own buttons.
        left.window->deleteLater();
        std::erase_if(leaving_, [](const QPointer<QWidget>& window) { return window == nullptr; });
        leaving_.push_back(left.window);
    }
    if (left.loop != nullptr) left.loop->quit();
}

void QtDesktop::WindowActivated(Form& form) {
    // A moment later: windows that come one after the other pass the front on to the last of them.
    const Entry* const entry = Find(form);
    if (active_ == &form || entry == nullptr) return;
    const auto settled = [this, &form] {
        const Entry* const now = Find(form);
        if (active_ == &form || now == nullptr || QApplication::activeWindow() != now->window) return;
        active_ = &form;
        User(form.Program(), [&] { form.Activate(); });
    };
    QMetaObject::invokeMethod(entry->binder, settled, Qt::QueuedConnection);
}

void QtDesktop::Quit() {
    ended_ = true;
    // Only these loops: a message of what still runs is shown to its end.
    for (const Entry& entry : entries_) {
        if (entry.loop != nullptr) entry.loop->quit();
    }
    if (loop_ != nullptr) loop_->quit();
}

void QtDesktop::Run() {
    if (ended_) return;
    // What the application's own loop does besides, and that loop ends by closing windows that are not asked.
    QAccessible::setRootObject(qApp);
    QEventLoop loop;
    loop_ = &loop;
    loop.exec();
    loop_ = nullptr;
}

// ---- events ----

void QtDesktop::User(controls::Forms& program, const std::function<void()>& rule) {
    if (repainting_) return;
    ++depth_;
    program.Event(rule);
    if (--depth_ > 0) return;
    EndProgress();
    if (Form* const form = std::exchange(closing_, nullptr); form != nullptr && Find(*form) != nullptr)
        CloseWhenIdle(*form);
    if (controls::Forms* const ending = std::exchange(endingSession_, nullptr); ending != nullptr)
        EndSession(*ending);
}

void QtDesktop::CloseWhenIdle(Form& form) {
    if (repainting_) {
        closing_ = &form;
        return;
    }
    User(form.Program(), [&] { form.Close(); });
}

void QtDesktop::EndSession(controls::Forms& program) {
    if (depth_ == 0 && questions_ == 0 && !repainting_)
        return User(program, [&] { program.UnloadAllForms(); });
    endingSession_ = &program;
    // What is running waits for an answer: it gets the quiet one, and ends.
    if (auto* const question = qobject_cast<QDialog*>(QApplication::activeModalWidget())) question->reject();
}

// ---- long work ----

void QtDesktop::SetHourglass(bool on) {
    if (!on) EndProgress();
    if (std::exchange(hourglass_, on) == on) return;
    if (on) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

void QtDesktop::Progress(long done, long total) {
    using std::chrono::milliseconds;
    constexpr milliseconds kBetweenRepaints{50};
    constexpr milliseconds kBeforePanel{300};
    if (total > 0 && done >= total) return EndProgress();
    const auto now = std::chrono::steady_clock::now();
    if (!progressing_) {
        progressing_ = true;
        progressBegan_ = now;
        lastRepaint_ = now;
        return;
    }
    if (now - lastRepaint_ < kBetweenRepaints || repainting_) return;
    if (now - progressBegan_ >= kBeforePanel) {
        if (panel_ == nullptr) panel_ = std::make_unique<ProgressPanel>();
        panel_->Tell(Front(), done, total);
    }
    repainting_ = true;
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    repainting_ = false;
    lastRepaint_ = std::chrono::steady_clock::now();
}

void QtDesktop::EndProgress() {
    progressing_ = false;
    panel_.reset();
}

}  // namespace zenvora::desktop
