#include "platform/controls/rich_text.h"

#include <utility>

namespace zenvora::controls {

void RichText::SetParagraphs(std::vector<RichParagraph> paragraphs) {
    if (paragraphs_ == paragraphs) return;
    paragraphs_ = std::move(paragraphs);
    TellViews(Property::Text);
}

std::string RichText::Text() const {
    std::string text;
    for (const RichParagraph& paragraph : paragraphs_) {
        if (&paragraph != &paragraphs_.front()) text += '\n';
        for (const RichRun& run : paragraph.runs)
            text += run.text;
    }
    return text;
}

void RichText::SetText(std::string_view text) {
    std::vector<RichParagraph> paragraphs;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        RichParagraph& paragraph = paragraphs.emplace_back();
        if (end != 0) paragraph.runs.push_back({std::string(text.substr(0, end))});
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    SetParagraphs(std::move(paragraphs));
}

}  // namespace zenvora::controls
