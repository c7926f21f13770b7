#include "platform/controls/tab_pages.h"

#include "platform/fault.h"

namespace zenvora::controls {

TabPages::TabPages(std::string name, const std::vector<std::string>& captions) : Control(std::move(name)) {
    for (const std::string& caption : captions)
        pages_.push_back({caption});
}

std::size_t TabPages::Place(int page) const {
    if (page < 0 || page >= Pages()) {
        throw Fault{fault::kSubscript, Name() + " has no page " + std::to_string(page) + "."};
    }
    return static_cast<std::size_t>(page);
}

const std::string& TabPages::TabCaption(int page) const {
    return pages_[Place(page)].caption;
}

void TabPages::SetTabCaption(int page, std::string caption) {
    std::string& now = pages_[Place(page)].caption;
    if (now == caption) return;
    now = std::move(caption);
    TellViews(Property::Items);
}

bool TabPages::TabEnabled(int page) const {
    return pages_[Place(page)].enabled;
}

void TabPages::SetTabEnabled(int page, bool enabled) {
    bool& now = pages_[Place(page)].enabled;
    if (now == enabled) return;
    now = enabled;
    TellViews(Property::Items);
}

void TabPages::SetTab(int page) {
    if (!TabEnabled(page) || page == tab_) return;
    const int previous = std::exchange(tab_, page);
    TellViews(Property::Selection);
    if (changeRule_) changeRule_(previous);
}

}  // namespace zenvora::controls
