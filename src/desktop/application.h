#pragma once

#include <QApplication>
#include <exception>
#include <functional>

namespace zenvora::desktop {

/// The toolkit's application with the look of the program, in US English whatever the machine's locale is.
class Application final : public QApplication {
  public:
    Application(int& argc, char** argv);

    /// Told of whatever reaches the toolkit's loop, which nothing may cross: not a rule's fault, those go
    /// another way, but memory that runs out while a window is drawn.
    void OnStray(std::function<void(std::exception_ptr)> rule) { stray_ = std::move(rule); }
    /// What runs when the session of the machine ends; every change is on the disk already.
    void OnSessionEnd(const std::function<void()>& rule);
    bool notify(QObject* receiver, QEvent* event) override;

  private:
    std::function<void(std::exception_ptr)> stray_;
};

}  // namespace zenvora::desktop
