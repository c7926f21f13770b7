#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/fault.h"
#include "platform/page/pdf.h"
#include "platform/page/printer.h"
#include "platform/text/utf8.h"

namespace zenvora::testing_support {

/// A text that was drawn. Pages count from 1.
struct DrawnText {
    int page = 1;
    double x = 0;
    double y = 0;
    std::string text;
    page::PageFont font;
};

/// What reached a recording page device.
struct PageRecord {
    std::vector<DrawnText> texts;
    int pages = 1;
    int ended = 0;
    int killed = 0;
    int orientation = page::kPortrait;
    bool hasPrinter = true;  ///< false: every use of the device raises fault 482
    int failAfter = -1;      ///< so many texts are drawn, and then the fault `failWith`
    int failWith = fault::kPrinter;
    double shortSide = 12240;  ///< Letter
    double longSide = 15840;

    [[nodiscard]] std::vector<DrawnText> OnPage(int page) const {
        std::vector<DrawnText> found;
        for (const DrawnText& text : texts) {
            if (text.page == page) found.push_back(text);
        }
        return found;
    }
};

/// A page device with fixed metrics, in twips: a character is as wide as 8 times the size of its font, 6
/// times in "Arial Narrow", once the size more in bold; a line is as high as 24 times the size, 22 times in
/// "Arial Narrow".
class RecordingDevice final : public page::PageDevice {
  public:
    explicit RecordingDevice(PageRecord& record) : record_(record) {}

    [[nodiscard]] std::string DeviceName() override {
        Check();
        return "Recorder";
    }
    [[nodiscard]] double Width() override {
        Check();
        return record_.orientation == page::kLandscape ? record_.longSide : record_.shortSide;
    }
    [[nodiscard]] double Height() override {
        Check();
        return record_.orientation == page::kLandscape ? record_.shortSide : record_.longSide;
    }
    void SetOrientation(int orientation) override {
        Check();
        record_.orientation = orientation;
    }
    [[nodiscard]] double TextWidth(const page::PageFont& font, std::string_view text) override {
        const double wide = (font.Name == "Arial Narrow" ? 6 : 8) + (font.Bold ? 1 : 0);
        return static_cast<double>(text::Length(text)) * font.Size * wide;
    }
    [[nodiscard]] double LineHeight(const page::PageFont& font) override {
        return font.Size * (font.Name == "Arial Narrow" ? 22 : 24);
    }
    void Draw(double x, double y, const page::PageFont& font, std::string_view text) override {
        Check();
        if (record_.failAfter == static_cast<int>(record_.texts.size()))
            throw Fault{record_.failWith, "The device failed as the test wants it."};
        record_.texts.push_back({record_.pages, x, y, std::string(text), font});
    }
    void NewPage() override {
        Check();
        ++record_.pages;
    }
    void EndDoc() override {
        Check();
        ++record_.ended;
    }
    void KillDoc() override {
        ++record_.killed;
        Check();
    }

  private:
    void Check() const {
        if (!record_.hasPrinter) throw Fault{fault::kPrinter, "There is no printer, as the test wants it."};
    }

    PageRecord& record_;
};

[[nodiscard]] inline std::unique_ptr<page::Printer> MakeRecordingPrinter(PageRecord& record) {
    return std::make_unique<page::Printer>(std::make_unique<RecordingDevice>(record));
}

/// The same, leaving a document of one line behind: "%PDF-1.4 " and its title.
class RecordingPdfDevice final : public page::PageDevice {
  public:
    RecordingPdfDevice(PageRecord& record, std::string title, std::string& bytes)
        : device_(record), title_(std::move(title)), bytes_(bytes) {}

    [[nodiscard]] std::string DeviceName() override { return device_.DeviceName(); }
    [[nodiscard]] double Width() override { return device_.Width(); }
    [[nodiscard]] double Height() override { return device_.Height(); }
    void SetOrientation(int orientation) override { device_.SetOrientation(orientation); }
    [[nodiscard]] double TextWidth(const page::PageFont& font, std::string_view text) override {
        return device_.TextWidth(font, text);
    }
    [[nodiscard]] double LineHeight(const page::PageFont& font) override { return device_.LineHeight(font); }
    void Draw(double x, double y, const page::PageFont& font, std::string_view text) override {
        device_.Draw(x, y, font, text);
    }
    void NewPage() override { device_.NewPage(); }
    void EndDoc() override {
        device_.EndDoc();
        bytes_ = "%PDF-1.4 " + title_;
    }
    void KillDoc() override { device_.KillDoc(); }

  private:
    RecordingDevice device_;
    std::string title_;
    std::string& bytes_;
};

[[nodiscard]] inline page::PdfMaker RecordingPdfMaker(PageRecord& record) {
    return [&record](const std::string& title, std::string& bytes) {
        return std::make_unique<page::Printer>(std::make_unique<RecordingPdfDevice>(record, title, bytes));
    };
}

}  // namespace zenvora::testing_support
