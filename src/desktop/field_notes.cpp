#include "desktop/field_notes.h"

#include <QApplication>
#include <QHBoxLayout>

#include "desktop/pictures.h"
#include "desktop/strings.h"
#include "records/field_advice.h"

namespace zenvora::desktop {
namespace {

constexpr int kSignSize = 16;

/// The sign of a back colour, empty for that of a field in order.
const char* SignOf(controls::Color color) {
    if (color == records::kError) return "error";
    return color == records::kCaution ? "caution" : "";
}

}  // namespace

FieldNotes::FieldNotes(QWidget& window)
    : QObject(&window), line_(new QWidget), sign_(new QLabel), text_(new QLabel) {
    auto* const row = new QHBoxLayout(line_);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(sign_);
    row->addWidget(text_, 1);
    text_->setObjectName(QStringLiteral("fieldNote"));
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    // Room for two lines, so that the window does not move under the user's hands.
    line_->setMinimumHeight(2 * line_->fontMetrics().lineSpacing());
    sign_->setFixedWidth(kSignSize);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*before*/, QWidget* now) { ShowLine(now); });
}

void FieldNotes::Follow(controls::TextBox& control, QLineEdit& edit, const std::string& title,
                        const std::string& hint) {
    auto& field = *fields_.emplace_back(std::make_unique<Field>());
    field.edit = &edit;
    field.title = Shown(title);
    field.hint = Shown(hint);
    field.sign = edit.addAction(QIcon(), QLineEdit::TrailingPosition);
    field.observation = control.Observe([this, &field, &control](controls::Property property) {
        if (property != controls::Property::BackColor && property != controls::Property::ToolTipText) return;
        Read(field, control);
        ShowLine(QApplication::focusWidget());
    });
    Read(field, control);
}

void FieldNotes::Read(Field& field, const controls::TextBox& control) {
    field.picture = QString::fromLatin1(SignOf(control.BackColor()));
    field.note = Shown(control.ToolTipText());
    if (!field.picture.isEmpty() && field.note.isEmpty()) field.note = tr("This entry is not in order.");
    field.sign->setVisible(!field.picture.isEmpty());
    if (!field.picture.isEmpty()) field.sign->setIcon(Picture(Stored(field.picture)));
    field.sign->setToolTip(field.note);
    field.edit->setAccessibleDescription(field.note.isEmpty() ? field.hint : field.note);
}

void FieldNotes::ShowLine(const QWidget* focus) {
    for (const auto& field : fields_) {
        if (field->edit != focus) continue;
        const bool inOrder = field->note.isEmpty();
        text_->setText(inOrder ? field->hint : field->title + QStringLiteral(": ") + field->note);
        sign_->setPixmap(field->picture.isEmpty()
                             ? QPixmap()
                             : Picture(Stored(field->picture)).pixmap(QSize(kSignSize, kSignSize)));
        return;
    }
    text_->clear();
    sign_->clear();
}

}  // namespace zenvora::desktop
