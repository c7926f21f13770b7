#include <QGuiApplication>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include "desktop/binder.h"
#include "desktop/shades.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

using controls::Property;

namespace {

QTextBlockFormat FormatOf(const controls::RichParagraph& paragraph) {
    QTextBlockFormat format;
    format.setAlignment(paragraph.align == controls::RichAlign::Center  ? Qt::AlignHCenter
                        : paragraph.align == controls::RichAlign::Right ? Qt::AlignRight
                                                                        : Qt::AlignLeft);
    format.setLeftMargin(PixelsOf(paragraph.indent));
    format.setTextIndent(PixelsOf(paragraph.firstIndent));
    format.setTopMargin(PixelsOf(paragraph.spaceBefore));
    format.setBottomMargin(PixelsOf(paragraph.spaceAfter));
    return format;
}

QTextCharFormat FormatOf(const controls::RichRun& run, const QColor& back) {
    QTextCharFormat format;
    if (run.bold) format.setFontWeight(QFont::Bold);
    format.setFontItalic(run.italic);
    format.setFontUnderline(run.underline);
    if (run.size > 0) format.setFontPointSize(static_cast<double>(run.size));
    if (run.color) format.setForeground(ReadableOn(back, QColor::fromRgb(static_cast<QRgb>(*run.color))));
    return format;
}

}  // namespace

QTextBrowser* Binder::Bind(controls::RichText& control) {
    auto* const panel = new QTextBrowser;
    panel->setOpenLinks(false);
    panel->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    panel->setTabChangesFocus(true);
    const auto write = [panel, &control] {
        const QColor back = ShadeOf(control.BackColor(), QGuiApplication::palette()).back;
        panel->clear();
        QTextCursor cursor(panel->document());
        bool first = true;
        for (const controls::RichParagraph& paragraph : control.Paragraphs()) {
            if (!std::exchange(first, false)) cursor.insertBlock();
            cursor.setBlockFormat(FormatOf(paragraph));
            for (const controls::RichRun& run : paragraph.runs)
                cursor.insertText(Shown(run.text), FormatOf(run, back));
        }
        panel->moveCursor(QTextCursor::Start);
    };
    const auto show = [write](Property property) {
        // Colours of the text are chosen against the ground.
        if (property == Property::Text || property == Property::BackColor) write();
    };
    Attach(control, *panel, show);
    write();
    themes_.emplace_back(write);
    return panel;
}

}  // namespace zenvora::desktop
