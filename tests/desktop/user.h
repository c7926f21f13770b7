#pragma once

#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zenvora::testing_support {

/// Somebody at the screen: waits for a window to come to the front and then does something with it, one thing
/// after the other. A window that does not come in time fails the test, and whatever is modal is sent away so
/// that the program goes on.
class User final {
  public:
    using Action = std::function<void(QWidget&)>;

    User() {
        timer_.setInterval(2);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
        timer_.start();
    }
    ~User() {
        for (const Step& step : steps_)
            ADD_FAILURE() << "never came: " << step.window.toStdString();
    }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    /// `window` is the objectName of the window that is in front: a form's name, "message" or "file".
    void When(const char* window, Action action) {
        steps_.push_back({QString::fromLatin1(window), std::move(action)});
    }

    /// Presses a button by its objectName.
    static void Press(QWidget& window, const char* name) {
        auto* const button = window.findChild<QAbstractButton*>(QString::fromLatin1(name));
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    }
    /// Chooses a file in the file dialog that is in front.
    void ChooseFile(const std::string& path) {
        When("file", [path](QWidget& window) {
            auto* const edit = window.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            ASSERT_NE(edit, nullptr);
            edit->setText(QString::fromStdString(path));
            QTest::keyClick(edit, Qt::Key_Return);
        });
    }
    /// Answers the message that is in front, and keeps its text.
    void Answer(QMessageBox::StandardButton button) {
        When("message", [this, button](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            messages.push_back(box.text().toStdString());
            QTest::mouseClick(box.button(button), Qt::LeftButton);
        });
    }
    [[nodiscard]] bool Done() const { return steps_.empty(); }

    std::vector<std::string> messages;

  private:
    struct Step {
        QString window;
        Action action;
    };

    void Look() {
        if (steps_.empty()) return;
        QWidget* front = QApplication::activeModalWidget();
        if (front == nullptr) front = QApplication::activeWindow();
        if (front == nullptr || front->objectName() != steps_.front().window || !front->isVisible()) {
            constexpr int kPatience = 10000;
            if (++waits_ * timer_.interval() < kPatience) return;
            waits_ = 0;
            ADD_FAILURE() << "waited for " << steps_.front().window.toStdString() << ", in front is "
                          << (front == nullptr ? "nothing" : front->objectName().toStdString());
            steps_.clear();
            if (auto* const dialog = qobject_cast<QDialog*>(front)) dialog->close();
            return;
        }
        waits_ = 0;
        const Step step = steps_.front();
        steps_.pop_front();
        step.action(*front);
    }

    QTimer timer_;
    std::deque<Step> steps_;
    int waits_ = 0;
};

}  // namespace zenvora::testing_support
