#pragma once

#include <QEventLoop>
#include <QPointer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "desktop/binder.h"
#include "platform/controls/desktop.h"
#include "platform/controls/forms.h"

namespace zenvora::desktop {

class ProgressPanel;

/// The screen: shows the forms of a program by their views, asks the user, and hands what he does to the
/// program as events.
class QtDesktop final : public controls::Desktop {
  public:
    /// Lays out the window of a form, unparented or of that parent, with all of its controls bound.
    using View = std::function<QWidget*(controls::Form& form, Binder& bind, QWidget* parent)>;

    QtDesktop();
    ~QtDesktop() override;
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;

    /// The view of the forms of that name.
    void Register(std::string formName, View view) { views_[std::move(formName)] = std::move(view); }
    template <class Form>
    void Register(std::string formName, QWidget* (*view)(Form&, Binder&, QWidget*)) {
        Register(std::move(formName), [view](controls::Form& form, Binder& bind, QWidget* parent) {
            return view(dynamic_cast<Form&>(form), bind, parent);
        });
    }

    controls::Answer Show(const controls::MessageBox& message) override;
    std::string Choose(const controls::FileDialog& dialog) override;
    /// Fault 5: the form has no view.
    void ShowForm(controls::Form& form, controls::Modality modality) override;
    void HideForm(controls::Form& form) override;
    void Quit() override;
    void SetHourglass(bool on) override;
    void Progress(long done, long total) override;

    /// The window of a form on the screen, else null.
    [[nodiscard]] QWidget* WindowOf(const controls::Form& form) const;
    /// Runs what the user did; nothing is thrown. While long work repaints the screen, nothing runs.
    void User(controls::Forms& program, const std::function<void()>& rule);
    /// The user's close box: at once, or behind the rule that is running.
    void CloseWhenIdle(controls::Form& form);
    /// A window came to the front.
    void WindowActivated(controls::Form& form);
    /// The loop of the program, unless it has ended already.
    void Run();
    [[nodiscard]] bool Ended() const noexcept { return ended_; }
    /// The session of the machine ends: closes every form, as far as the rules that are running let it.
    void EndSession(controls::Forms& program);

  private:
    struct Entry {
        controls::Form* form;
        QPointer<QWidget> window;
        QPointer<Binder> binder;
        controls::Form* before;  ///< the form that was in front when this one came
        bool modal;
        QEventLoop* loop = nullptr;
    };
    [[nodiscard]] Entry* Find(const controls::Form& form);
    [[nodiscard]] QWidget* Front() const;
    /// A window that waits for its Activate to end comes to the screen now, because something stands in front
    /// of it.
    void ShowWaiting();
    void EndProgress();
    /// Shows a question and waits for its answer; not while the session ends, when it stays unanswered.
    int Ask(QDialog& question);

    std::map<std::string, View> views_;
    std::vector<Entry> entries_;  ///< the forms on the screen, the latest last
    std::vector<QPointer<QWidget>> leaving_;
    QPointer<QWidget> waiting_;
    controls::Form* active_ = nullptr;
    controls::Form* closing_ = nullptr;
    std::unique_ptr<ProgressPanel> panel_;
    QEventLoop* loop_ = nullptr;  ///< that of the program
    bool ended_ = false;
    bool hourglass_ = false;
    bool repainting_ = false;
    controls::Forms* endingSession_ = nullptr;
    int depth_ = 0;      ///< rules that are running
    int questions_ = 0;  ///< messages and file dialogs that wait for an answer
    bool progressing_ = false;
    std::chrono::steady_clock::time_point progressBegan_;
    std::chrono::steady_clock::time_point lastRepaint_;
};

}  // namespace zenvora::desktop
