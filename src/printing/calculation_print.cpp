#include "printing/calculation_print.h"

#include <exception>

#include "platform/fault.h"

namespace zenvora::printing {

void cmdPrintCalc(common::Session& session, page::FormPrint& mainWindow) {
    try {
        mainWindow.PrintForm();
    } catch (const Fault& fault) {
        if (fault.number != fault::kPrinter) return;
        session.desktop.Show({"No printer is installed.", "No Printer Found", controls::Icon::Critical,
                              controls::Buttons::Ok});
    } catch (const std::exception&) {
        return;
    }
}

}  // namespace zenvora::printing
