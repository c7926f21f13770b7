#include "desktop/pictures.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <memory>

#include "desktop/strings.h"

namespace zenvora::desktop {
namespace {

QByteArray Drawing(const QString& name) {
    QFile file(QStringLiteral(":/zenvora/%1.svg").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A drawing in which "currentColor" is the colour of text.
std::shared_ptr<QSvgRenderer> Drawn(const QString& name, const QColor& text) {
    static QHash<QString, std::shared_ptr<QSvgRenderer>> known;
    const QString key = name + text.name();
    const auto found = known.constFind(key);
    if (found != known.constEnd()) return *found;
    QByteArray drawing = Drawing(name);
    drawing.replace("currentColor", text.name().toLatin1());
    auto renderer = std::make_shared<QSvgRenderer>(drawing);
    known.insert(key, renderer);
    return renderer;
}

class DrawingEngine final : public QIconEngine {
  public:
    explicit DrawingEngine(QString name) : name_(std::move(name)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const bool disabled = mode == QIcon::Disabled;
        const QColor text = QGuiApplication::palette().color(disabled ? QPalette::Disabled : QPalette::Active,
                                                             QPalette::WindowText);
        const auto drawn = Drawn(name_, text);
        // In its own proportions, in the middle.
        QSizeF size = drawn->defaultSize();
        size.scale(rect.size(), Qt::KeepAspectRatio);
        QRectF place(QPointF(0, 0), size);
        place.moveCenter(QRectF(rect).center());
        painter->save();
        if (disabled) painter->setOpacity(painter->opacity() * 0.4);
        // In a selected row on a ground of its own: the colours of a mark say nothing on that of the
        // selection.
        if (mode == QIcon::Selected) {
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(Qt::NoPen);
            painter->setBrush(QGuiApplication::palette().color(QPalette::Active, QPalette::Base));
            painter->drawRoundedRect(place, 3, 3);
        }
        drawn->render(painter, place);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new DrawingEngine(*this); }

  private:
    QString name_;
};

}  // namespace

QIcon Picture(const std::string& name) {
    const QString shown = Shown(name);
    if (!QFile::exists(QStringLiteral(":/zenvora/%1.svg").arg(shown))) return {};
    return QIcon(new DrawingEngine(shown));
}

QSize DrawnSize(const std::string& name) {
    if (Picture(name).isNull()) return {};
    return Drawn(Shown(name), Qt::black)->defaultSize();
}

QString PictureMeaning(const std::string& name) {
    if (name == "check") return QStringLiteral("valid");
    if (name == "cross") return QStringLiteral("invalid");
    return name.empty() ? QStringLiteral("excluded") : QString();
}

}  // namespace zenvora::desktop
