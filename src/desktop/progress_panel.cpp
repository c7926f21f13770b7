#include "desktop/progress_panel.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace zenvora::desktop {

void ProgressPanel::Make(QWidget* window) {
    frame_ = new QFrame(window, window == nullptr ? Qt::SplashScreen : Qt::WindowFlags());
    frame_->setObjectName(QStringLiteral("progress"));
    frame_->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    frame_->setAutoFillBackground(true);
    auto* const layout = new QVBoxLayout(frame_);
    layout->setContentsMargins(20, 16, 20, 18);
    layout->setSpacing(10);
    auto* const label = new QLabel(QStringLiteral("Working..."));
    layout->addWidget(label);
    bar_ = new QProgressBar;
    bar_->setMinimumWidth(280);
    bar_->setAccessibleName(label->text());
    layout->addWidget(bar_);
    frame_->adjustSize();
    const QRect area =
        window == nullptr ? QGuiApplication::primaryScreen()->availableGeometry() : window->rect();
    QRect place(QPoint(), frame_->size());
    place.moveCenter(area.center());
    frame_->move(place.topLeft());
    frame_->show();
}

void ProgressPanel::Tell(QWidget* window, long done, long total) {
    if (frame_ == nullptr) Make(window);
    // In thousandths: a count of records may not fit the bar's integers.
    constexpr int kWhole = 1000;
    bar_->setRange(0, total > 0 ? kWhole : 0);
    if (total > 0) {
        bar_->setValue(static_cast<int>(static_cast<double>(done) / static_cast<double>(total) * kWhole));
        bar_->setFormat(QStringLiteral("%1%").arg(100 * done / total));
    }
}

}  // namespace zenvora::desktop
