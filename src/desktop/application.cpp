#include "desktop/application.h"

#include <QLocale>
#include <QSessionManager>
#include <cstdlib>

#include "desktop/look.h"
#include "desktop/pictures.h"

namespace zenvora::desktop {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName(QStringLiteral("zenvora"));
    setApplicationDisplayName(QString());
    setDesktopFileName(QStringLiteral("zenvora"));
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    // The start dialog goes before the main window comes; the program says itself when it ends.
    setQuitOnLastWindowClosed(false);
    setWindowIcon(Picture("zenvora"));
    SetLook(*this);
}

void Application::OnSessionEnd(const std::function<void()>& rule) {
    connect(
        this, &QGuiApplication::commitDataRequest, this,
        [rule](QSessionManager& manager) {
            manager.setRestartHint(QSessionManager::RestartNever);
            rule();
        },
        Qt::DirectConnection);
}

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        if (!stray_) std::abort();
        stray_(std::current_exception());
        return true;
    }
}

}  // namespace zenvora::desktop
