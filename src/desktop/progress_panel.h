#pragma once

#include <QFrame>
#include <QPointer>
#include <QProgressBar>

namespace zenvora::desktop {

/// How far long work is: a small panel in the middle of a window, or one of its own when there is no window
/// yet.
class ProgressPanel final {
  public:
    ProgressPanel() = default;
    ~ProgressPanel() { delete frame_; }
    ProgressPanel(const ProgressPanel&) = delete;
    ProgressPanel& operator=(const ProgressPanel&) = delete;

    /// `total` 0: how much there is to do is not known. `window` may be null.
    void Tell(QWidget* window, long done, long total);

  private:
    void Make(QWidget* window);

    QPointer<QFrame> frame_;
    QPointer<QProgressBar> bar_;
};

}  // namespace zenvora::desktop
