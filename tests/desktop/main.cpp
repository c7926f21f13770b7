#include <gtest/gtest.h>
#include <iostream>

#include "desktop/application.h"

namespace {

/// What the toolkit has to say, but for what the platform without a screen lacks.
void Message(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text.startsWith(QStringLiteral("This plugin does not support"))) return;
    std::cerr << qFormatLogMessage(type, context, text).toStdString() << std::endl;
}

}  // namespace

// The tests draw nowhere unless they are told where: QT_QPA_PLATFORM=xcb shows them.
int main(int argc, char** argv) {
    qInstallMessageHandler(Message);
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("QT_QPA_PLATFORM", "offscreen").toUtf8());
    testing::InitGoogleTest(&argc, argv);
    zenvora::desktop::Application application(argc, argv);
    return RUN_ALL_TESTS();
}
