#pragma once

#include <QPrinter>
#include <memory>
#include <string>

/// The default printer as the toolkit has it.
namespace zenvora::page {

/// Its name. Fault 482: there is none.
[[nodiscard]] std::string DefaultPrinterName();
/// The printer of that name, with the smallest margins that it can print. Fault 482: it is not there.
[[nodiscard]] std::unique_ptr<QPrinter> OpenPrinter(const std::string& name, const std::string& jobName,
                                                    QPageLayout::Orientation orientation);
/// Starts to draw on it, with the twip as unit and the top left of the printable page as origin. Fault 482.
void BeginTwips(QPainter& painter, QPrinter& printer);
/// Sends off what was drawn. Fault 482: the printer went away meanwhile.
void EndJob(QPainter& painter, QPrinter& printer);

}  // namespace zenvora::page
