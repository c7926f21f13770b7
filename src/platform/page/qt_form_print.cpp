#include "platform/page/qt_form_print.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QWidget>
#include <algorithm>
#include <utility>

#include "platform/fault.h"
#include "platform/page/qt_default_printer.h"

namespace zenvora::page {
namespace {

constexpr int kTwipsPerInch = 1440;
/// Half an inch, for a device that can print to the edge.
constexpr double kPdfMarginPoints = 36;

/// Draws the window in its size on the screen, or smaller if the page is. `page` is what can be printed on,
/// in twips.
void DrawWindow(QPainter& painter, QWidget& window, const QSizeF& page) {
    const QSizeF size = QSizeF(window.size()) * kTwipsPerInch / window.logicalDpiX();
    const double fitted = std::min({1.0, page.width() / size.width(), page.height() / size.height()});
    const double scale = fitted * kTwipsPerInch / window.logicalDpiX();
    painter.scale(scale, scale);
    window.render(&painter, QPoint(), QRegion(), QWidget::DrawWindowBackground | QWidget::DrawChildren);
}

class WidgetPrint final : public FormPrint {
  public:
    WidgetPrint(QWidget& window, std::string jobName) : window_(window), jobName_(std::move(jobName)) {}

    void PrintForm() override {
        const auto printer = OpenPrinter(DefaultPrinterName(), jobName_, QPageLayout::Landscape);
        QPainter painter;
        BeginTwips(painter, *printer);
        DrawWindow(painter, window_,
                   printer->pageLayout().paintRect(QPageLayout::Inch).size() * kTwipsPerInch);
        EndJob(painter, *printer);
    }

    [[nodiscard]] std::string PdfOfForm(const std::string& title) override {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter writer(&buffer);
        writer.setTitle(QString::fromStdString(title));
        writer.setCreator("Zenvora");
        writer.setResolution(kTwipsPerInch);
        writer.setPageLayout(
            {QPageSize(QPageSize::Letter), QPageLayout::Landscape,
             QMarginsF(kPdfMarginPoints, kPdfMarginPoints, kPdfMarginPoints, kPdfMarginPoints)});
        QPainter painter;
        if (!painter.begin(&writer)) throw Fault{fault::kPrinter, "The PDF document cannot be drawn."};
        DrawWindow(painter, window_, writer.pageLayout().paintRect(QPageLayout::Inch).size() * kTwipsPerInch);
        painter.end();
        return buffer.data().toStdString();
    }

  private:
    QWidget& window_;
    std::string jobName_;
};

}  // namespace

std::unique_ptr<FormPrint> MakeFormPrint(QWidget& window, const std::string& jobName) {
    return std::make_unique<WidgetPrint>(window, jobName);
}

}  // namespace zenvora::page
