#pragma once

#include <QFont>
#include <map>
#include <string_view>
#include <tuple>

#include "platform/page/printer.h"

class QPainter;

/// The fonts of a page surface as the toolkit has them. Measures do not depend on what is drawn on: a font's
/// pixel is one twip.
namespace zenvora::page {

/// A font of the machine that stands for one of a page.
struct Face {
    QFont font;
    double xScale = 1;  ///< below 1 for a stand-in that is wider than the font it stands for
    double ascent = 0;
    double height = 0;
};

/// Finds faces, and measures and draws in them.
///
/// "Times New Roman" and "Arial Narrow" are taken if they are there, else fonts of the same measures, else
/// any font, made narrower where it is wider, so that columns laid out for the one hold the texts in the
/// other. Fault 482: the machine has no font at all.
class Faces {
  public:
    [[nodiscard]] double TextWidth(const PageFont& font, std::string_view text);
    [[nodiscard]] double LineHeight(const PageFont& font);
    /// The painter's unit must be the twip.
    void Draw(QPainter& painter, double x, double y, const PageFont& font, std::string_view text);

  private:
    [[nodiscard]] const Face& Of(const PageFont& font);

    std::map<std::tuple<std::string, int, bool>, Face> faces_;
};

}  // namespace zenvora::page
