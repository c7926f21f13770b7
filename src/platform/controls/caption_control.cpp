#include "platform/controls/caption_control.h"

#include <utility>

namespace zenvora::controls {

void CaptionControl::SetCaption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    TellViews(Property::Text);
}

std::string PlainCaption(const std::string& caption) {
    std::string plain;
    for (std::size_t at = 0; at < caption.size(); ++at) {
        if (caption[at] == '&' && ++at == caption.size()) break;
        plain += caption[at];
    }
    return plain;
}

}  // namespace zenvora::controls
