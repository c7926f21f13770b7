#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// A piece of text with one look.
struct RichRun {
    std::string text{};  ///< without line ends; a tab is a blank of some width
    bool bold = false;
    bool italic = false;
    bool underline = false;
    float size = 0;                ///< points, 0: the size of the panel
    std::optional<Color> color{};  ///< nothing: the colour of the panel's text, which fits a dark screen too
    friend bool operator==(const RichRun&, const RichRun&) = default;
};

enum class RichAlign { Left, Center, Right };

struct RichParagraph {
    std::vector<RichRun> runs{};  ///< none: an empty line
    RichAlign align = RichAlign::Left;
    int indent = 0;       ///< twips, from the left edge, 0 or more
    int firstIndent = 0;  ///< twips, of the first line against the others; negative for a list
    int spaceBefore = 0;  ///< twips, 0 or more
    int spaceAfter = 0;   ///< twips, 0 or more
    friend bool operator==(const RichParagraph&, const RichParagraph&) = default;
};

/// A panel of formatted text that the user reads and copies, and does not change.
class RichText final : public Control {
  public:
    using Control::Control;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "RICHTEXTBOX"; }

    [[nodiscard]] const std::vector<RichParagraph>& Paragraphs() const noexcept { return paragraphs_; }
    void SetParagraphs(std::vector<RichParagraph> paragraphs);
    /// The text alone, its paragraphs separated by "\n".
    [[nodiscard]] std::string Text() const;
    /// A plain text; "\n" ends a paragraph. The empty text empties the panel.
    void SetText(std::string_view text);

  private:
    std::vector<RichParagraph> paragraphs_;
};

}  // namespace zenvora::controls
