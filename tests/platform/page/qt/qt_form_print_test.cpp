#include "platform/page/qt_form_print.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QWidget>
#include <gtest/gtest.h>

#include "platform/fault.h"
#include "platform/page/qt/pdf_tools.h"
#include "support/temp_folder.h"

namespace zenvora::page {
namespace {

/// A window with a figure in it.
class Window : public QWidget {
  public:
    explicit Window(QSize size) {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(new QLabel("Absorption Rate", this));
        auto* const cell = new QLineEdit(this);
        cell->setText("18.67");
        cell->setReadOnly(true);
        layout->addWidget(cell);
        resize(size);
    }
};

TEST(FormPrintOfAWidget, ShowsTheFiguresAsTextOnALandscapePage) {
    NEEDS_POPPLER();
    const testing_support::TempFolder folder;
    Window window(QSize(400, 200));
    const auto path =
        folder.Write("OUT.pdf", MakeFormPrint(window, "Zenvora")->PdfOfForm("Calculations")).string();
    const std::string text = testing_support::OutputOf("pdftotext -layout " + path + " -");
    EXPECT_NE(text.find("Absorption Rate"), std::string::npos) << text;
    EXPECT_NE(text.find("18.67"), std::string::npos) << text;
    const std::string info = testing_support::OutputOf("pdfinfo " + path);
    EXPECT_NE(info.find("Title:           Calculations"), std::string::npos) << info;
    EXPECT_NE(info.find("Pages:           1\n"), std::string::npos) << info;
    EXPECT_NE(info.find("792 x 612 pts (letter)"), std::string::npos) << info;
}

TEST(FormPrintOfAWidget, ALargeWindowIsMadeSmallerToFit) {
    NEEDS_POPPLER();
    const testing_support::TempFolder folder;
    Window window(QSize(4000, 3000));
    const auto path =
        folder.Write("OUT.pdf", MakeFormPrint(window, "Zenvora")->PdfOfForm("Calculations")).string();
    const std::string text = testing_support::OutputOf("pdftotext " + path + " -");
    EXPECT_NE(text.find("18.67"), std::string::npos) << text;
}

TEST(FormPrintOfAWidget, WithoutAPrinterIsFault482) {
    qputenv("CUPS_SERVER", "/nonexistent/cups.sock");
    Window window(QSize(400, 200));
    try {
        MakeFormPrint(window, "Zenvora")->PrintForm();
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kPrinter);
    }
}

}  // namespace
}  // namespace zenvora::page
