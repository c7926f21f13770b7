#pragma once

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <string>
#include <vector>

#include "platform/controls/text_box.h"

namespace zenvora::desktop {

/// Shows for users who cannot tell colours apart, and for those without a mouse, what the fields of a dialog
/// show by their colour and tool tip: a sign in the field, and the tip of the field that has the focus in a
/// line of its own. A sign and a line say nothing that colour and tip do not.
class FieldNotes final : public QObject {
  public:
    explicit FieldNotes(QWidget& window);

    /// The line, to be laid out.
    [[nodiscard]] QWidget* Line() const noexcept { return line_; }
    /// Follows a field. `title` is what the line calls it, `hint` what it says when there is no tip.
    void Follow(controls::TextBox& control, QLineEdit& edit, const std::string& title,
                const std::string& hint = {});

  private:
    struct Field {
        QLineEdit* edit;
        QAction* sign;
        QString title;
        QString hint;
        QString note;     ///< empty: in order
        QString picture;  ///< empty: in order
        controls::Observation observation;
    };
    void Read(Field& field, const controls::TextBox& control);
    void ShowLine(const QWidget* focus);

    QWidget* line_;
    QLabel* sign_;
    QLabel* text_;
    std::vector<std::unique_ptr<Field>> fields_;
};

}  // namespace zenvora::desktop
