#include "platform/page/qt_printer.h"

#include <QPainter>
#include <utility>
#include <vector>

#include "platform/fault.h"
#include "platform/page/qt_default_printer.h"
#include "platform/page/qt_faces.h"

namespace zenvora::page {
namespace {

constexpr double kTwipsPerPoint = 20;

/// What a page holds, kept until the document is sent: a document that is abandoned must leave no trace in
/// the queue, which the toolkit cannot promise once it has begun to draw.
struct Drawn {
    double x = 0;
    double y = 0;
    std::size_t font = 0;
    std::string text;
};

void NextPage(QPrinter& printer) {
    if (printer.newPage()) return;
    throw Fault{fault::kPrinter, "The printer " + printer.printerName().toStdString() +
                                     " takes no further page. Check it, and print again."};
}

class PrinterDevice final : public PageDevice {
  public:
    explicit PrinterDevice(std::string jobName) : jobName_(std::move(jobName)) {}

    [[nodiscard]] std::string DeviceName() override { return DefaultPrinterName(); }
    [[nodiscard]] double Width() override { return PageSize().width() * kTwipsPerPoint; }
    [[nodiscard]] double Height() override { return PageSize().height() * kTwipsPerPoint; }

    void SetOrientation(int orientation) override {
        orientation_ = orientation == kLandscape ? QPageLayout::Landscape : QPageLayout::Portrait;
        target_.reset();
    }

    [[nodiscard]] double TextWidth(const PageFont& font, std::string_view text) override {
        return faces_.TextWidth(font, text);
    }
    [[nodiscard]] double LineHeight(const PageFont& font) override { return faces_.LineHeight(font); }

    void Draw(double x, double y, const PageFont& font, std::string_view text) override {
        StartDocument();
        if (fonts_.empty() || fonts_.back() != font) fonts_.push_back(font);
        pages_.back().push_back({x, y, fonts_.size() - 1, std::string(text)});
    }

    void NewPage() override {
        StartDocument();
        pages_.emplace_back();
    }

    void EndDoc() override {
        // Whatever comes of it, this document is over.
        const auto pages = std::exchange(pages_, {});
        const auto fonts = std::exchange(fonts_, {});
        const std::string name = std::exchange(name_, {});
        target_.reset();
        if (pages.empty()) return;
        const auto printer = OpenPrinter(name, jobName_, orientation_);
        QPainter painter;
        BeginTwips(painter, *printer);
        bool isFirst = true;
        for (const auto& page : pages) {
            if (!std::exchange(isFirst, false)) NextPage(*printer);
            for (const Drawn& drawn : page)
                faces_.Draw(painter, drawn.x, drawn.y, fonts[drawn.font], drawn.text);
        }
        EndJob(painter, *printer);
    }

    void KillDoc() override {
        pages_.clear();
        fonts_.clear();
        name_.clear();
        target_.reset();
    }

  private:
    /// The first text asks for the printer, so that a report to none fails at once and not at its end.
    void StartDocument() {
        if (!pages_.empty()) return;
        name_ = DefaultPrinterName();
        pages_.emplace_back();
    }

    QSizeF PageSize() {
        if (!target_)
            target_ = OpenPrinter(name_.empty() ? DefaultPrinterName() : name_, jobName_, orientation_);
        return target_->pageLayout().fullRect(QPageLayout::Point).size();
    }

    std::string jobName_;
    std::string name_;  ///< of the printer that the open document goes to
    QPageLayout::Orientation orientation_ = QPageLayout::Portrait;
    Faces faces_;
    std::vector<std::vector<Drawn>> pages_;
    std::vector<PageFont> fonts_;
    std::unique_ptr<QPrinter> target_;  ///< asked for measures only
};

}  // namespace

std::unique_ptr<Printer> MakeDefaultPrinter(const std::string& jobName) {
    return std::make_unique<Printer>(std::make_unique<PrinterDevice>(jobName));
}

}  // namespace zenvora::page
