#include "platform/page/qt_default_printer.h"

#include <QPainter>
#include <QPrinterInfo>

#include "platform/fault.h"

namespace zenvora::page {
namespace {

constexpr double kTwipsPerInch = 1440;

[[noreturn]] void RaisePrinterFault(const std::string& what) {
    throw Fault{fault::kPrinter, what + " Check the printers of this machine, and print again."};
}

bool IsThere(const QString& name) {
    return !QPrinterInfo::printerInfo(name).isNull();
}

}  // namespace

std::string DefaultPrinterName() {
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    if (printer.isNull()) RaisePrinterFault("There is no default printer.");
    return printer.printerName().toStdString();
}

std::unique_ptr<QPrinter> OpenPrinter(const std::string& name, const std::string& jobName,
                                      QPageLayout::Orientation orientation) {
    const QPrinterInfo info = QPrinterInfo::printerInfo(QString::fromStdString(name));
    if (info.isNull()) RaisePrinterFault("The printer " + name + " is not there.");
    auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    printer->setDocName(QString::fromStdString(jobName));
    printer->setCreator("Zenvora");
    // Left alone, the toolkit takes the paper of the locale and not the one that the printer is set to.
    if (info.defaultPageSize().isValid()) printer->setPageSize(info.defaultPageSize());
    printer->setPageOrientation(orientation);
    QPageLayout layout = printer->pageLayout();
    layout.setMargins(layout.minimumMargins());
    printer->setPageLayout(layout);
    return printer;
}

void BeginTwips(QPainter& painter, QPrinter& printer) {
    if (!painter.begin(&printer))
        RaisePrinterFault("The printer " + printer.printerName().toStdString() + " takes no document.");
    painter.scale(printer.logicalDpiX() / kTwipsPerInch, printer.logicalDpiY() / kTwipsPerInch);
}

void EndJob(QPainter& painter, QPrinter& printer) {
    painter.end();
    // The toolkit keeps it to itself when the queue did not take the job.
    if (printer.printerState() == QPrinter::Error || !IsThere(printer.printerName()))
        RaisePrinterFault("The printer " + printer.printerName().toStdString() +
                          " did not take the document.");
}

}  // namespace zenvora::page
