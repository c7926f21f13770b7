#include "platform/page/qt_pdf.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <array>
#include <optional>
#include <utility>

#include "platform/fault.h"
#include "platform/page/qt_faces.h"

namespace zenvora::page {
namespace {

constexpr int kTwipsPerInch = 1440;
constexpr double kTwipsPerPoint = 20;

/// The toolkit's application object of a program that has none: for drawing without a screen.
class OwnApplication {
  public:
    void Ensure() {
        if (QCoreApplication::instance() != nullptr) return;
        // Without a screen the toolkit has remarks on its surroundings that mean nothing to the user of a
        // command.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_.emplace(count_, arguments_.data());
    }

  private:
    // The object refers to them as long as it lives.
    int count_ = 1;
    std::string name_ = "zenvora";
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    std::optional<QGuiApplication> application_;
};

class PdfDevice final : public PageDevice {
  public:
    PdfDevice(const std::string& title, std::string& bytes)
        : title_(QString::fromStdString(title)), out_(bytes) {}

    [[nodiscard]] std::string DeviceName() override { return "PDF"; }
    [[nodiscard]] double Width() override { return layout_.fullRectPoints().width() * kTwipsPerPoint; }
    [[nodiscard]] double Height() override { return layout_.fullRectPoints().height() * kTwipsPerPoint; }

    void SetOrientation(int orientation) override {
        layout_.setOrientation(orientation == kLandscape ? QPageLayout::Landscape : QPageLayout::Portrait);
        if (document_) document_->writer.setPageLayout(layout_);  // from the next page on
    }

    [[nodiscard]] double TextWidth(const PageFont& font, std::string_view text) override {
        return faces_.TextWidth(font, text);
    }
    [[nodiscard]] double LineHeight(const PageFont& font) override { return faces_.LineHeight(font); }

    void Draw(double x, double y, const PageFont& font, std::string_view text) override {
        faces_.Draw(Open().painter, x, y, font, text);
    }

    void NewPage() override {
        if (!Open().writer.newPage()) throw Fault{fault::kPrinter, "The PDF document takes no further page."};
    }

    void EndDoc() override {
        Document& document = Open();
        document.painter.end();
        const QByteArray& bytes = document.buffer.data();
        out_.assign(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        document_.reset();
    }

    void KillDoc() override { document_.reset(); }

  private:
    struct Document {
        QBuffer buffer;
        QPdfWriter writer{&buffer};
        QPainter painter;  // the first to go: it draws on the others
    };

    Document& Open() {
        if (document_) return *document_;
        document_ = std::make_unique<Document>();
        document_->buffer.open(QIODevice::WriteOnly);
        auto& writer = document_->writer;
        writer.setTitle(title_);
        writer.setCreator("Zenvora");
        writer.setResolution(kTwipsPerInch);  // the painter's unit is then the twip
        writer.setPageLayout(layout_);
        if (!document_->painter.begin(&writer)) {
            document_.reset();
            throw Fault{fault::kPrinter, "The PDF document cannot be drawn."};
        }
        return *document_;
    }

    QString title_;
    std::string& out_;
    Faces faces_;
    QPageLayout layout_{QPageSize(QPageSize::Letter), QPageLayout::Portrait, QMarginsF()};
    std::unique_ptr<Document> document_;
};

}  // namespace

PdfMaker QtPdfMaker() {
    return [application = std::make_shared<OwnApplication>()](const std::string& title, std::string& bytes) {
        application->Ensure();
        return std::make_unique<Printer>(std::make_unique<PdfDevice>(title, bytes));
    };
}

}  // namespace zenvora::page
