#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/text/date.h"

/// The page surface: text on pages, on paper or in a file.
namespace zenvora::page {

/// What the text of a page is set in. Size in points.
struct PageFont {
    std::string Name;
    double Size = 0;
    bool Bold = false;
    friend bool operator==(const PageFont&, const PageFont&) = default;
};

inline constexpr int kPortrait = 1;
inline constexpr int kLandscape = 2;

/// The font of a surface that nobody has set one on yet, and after a change of the orientation.
inline constexpr std::string_view kDeviceFontName = "Times New Roman";
inline constexpr double kDeviceFontSize = 10;

/// What a page surface draws on. All measures are twips (1/1440 inch) from the top left of the printable
/// page; a text given here has no line breaks. Fault 482: the device is not there or does not take it.
class PageDevice {
  public:
    virtual ~PageDevice() = default;
    [[nodiscard]] virtual std::string DeviceName() = 0;
    /// Size of the page, as the orientation has it.
    [[nodiscard]] virtual double Width() = 0;
    [[nodiscard]] virtual double Height() = 0;
    virtual void SetOrientation(int orientation) = 0;
    /// Blanks at the end count.
    [[nodiscard]] virtual double TextWidth(const PageFont& font, std::string_view text) = 0;
    [[nodiscard]] virtual double LineHeight(const PageFont& font) = 0;
    /// Draws with the top left corner of the line there. Starts the document if need be.
    virtual void Draw(double x, double y, const PageFont& font, std::string_view text) = 0;
    virtual void NewPage() = 0;
    /// Sends the document off. After a fault it is abandoned.
    virtual void EndDoc() = 0;
    /// Nothing of the document reaches the paper.
    virtual void KillDoc() = 0;
};

/// The page surface that the reports print on. Units are twips, measured from the top left of the printable
/// page.
///
/// A document begins with the first text and lasts to EndDoc or KillDoc; after both the next one can begin. A
/// document that is neither ended nor abandoned stays open, and what is printed next goes on in it; one that
/// is open at the end of the surface's life is abandoned. Fault 482 in every member: the printer is not
/// there or does not take it.
class Printer {
  public:
    explicit Printer(std::unique_ptr<PageDevice> device);
    ~Printer();
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    /// The font of later text and of the measures.
    PageFont Font{std::string(kDeviceFontName), kDeviceFontSize, false};
    /// Where the next text starts.
    double CurrentX = 0;
    double CurrentY = 0;

    /// kPortrait or kLandscape. A change resets the font to that of the device.
    void SetOrientation(int orientation);
    [[nodiscard]] std::string DeviceName();
    [[nodiscard]] double Width();
    [[nodiscard]] double Height();

    /// Size of a text in the current font: the widest of its lines, and the height of all of them.
    [[nodiscard]] double TextWidth(std::string_view text);
    [[nodiscard]] double TextHeight(std::string_view text);

    /// Draws the text at the current place and moves to the start of the next line: CurrentX to 0, CurrentY
    /// down by one line, and by one more for each line break in the text (LF, CR or both together), whose
    /// later lines start at 0.
    void Print(std::string_view text);
    /// Ends the page; the place is then the top left of the next one.
    void NewPage();
    /// Ends the document and sends it to the printer.
    void EndDoc();
    /// Abandons the document.
    void KillDoc();

  private:
    std::unique_ptr<PageDevice> device_;
    int orientation_ = kPortrait;
};

/// How a page surface writes a date: the short date, without a time of day.
[[nodiscard]] std::string PrintedDate(text::Date date);
/// How it writes a number: in general form, with a blank behind and a blank or the minus sign in front.
[[nodiscard]] std::string PrintedNumber(double number);

}  // namespace zenvora::page
