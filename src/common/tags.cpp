#include "common/tags.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "common/directories.h"
#include "common/error_rule.h"
#include "common/ini.h"
#include "common/primitives.h"
#include "common/text_helpers.h"
#include "platform/controls/check_box.h"
#include "platform/controls/label.h"
#include "platform/controls/option_button.h"
#include "platform/controls/text_box.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

struct Tag {
    std::string file;
    std::string section;
    std::string key;
    std::string defaultValue;
};

Tag Split(Session& session, std::string_view text) {
    Tag tag;
    tag.file = SplitFirst(text, "L", "[");
    tag.section = SplitFirst(SplitFirst(text, "R", "["), "L", "]");
    tag.key = SplitFirst(SplitFirst(text, "R", "]"), "L", "|");
    tag.defaultValue = SplitFirst(text, "R", "|");
    tag.file = TagSubstituteDirectory(session, tag.file);
    return tag;
}

std::string Value(Session& session, const Tag& tag) {
    return ReadIni(session, tag.file, tag.section, tag.key, tag.defaultValue);
}

void Write(Session& session, const controls::Control& control, std::string_view value) {
    const Tag tag = Split(session, control.Tag());
    WriteIni(session, tag.file, tag.section, tag.key, value);
}

/// KEY of a list: what stands left of its "#" characters, and how many there are, at least one.
std::pair<std::string, std::size_t> ListKey(const Tag& tag) {
    std::size_t width = 0;
    for (const char c : tag.key)
        width += c == '#' ? 1 : 0;
    return {TextBefore(tag.key, "#"), std::max<std::size_t>(width, 1)};
}

bool IsText(std::string_view kind) {
    return kind == "TEXTBOX" || kind == "AUTOCOMPLETE" || kind == "LABEL";
}

bool IsList(std::string_view kind) {
    return kind == "LISTBOX" || kind == "COMBOBOX";
}

[[noreturn]] void RefuseState(const Tag& tag, std::string_view value) {
    Place place;
    place.file = tag.file;
    throw Fault(fault::kInvalidProperty,
                "The setting " + tag.key + " in section " + tag.section + " is \"" + std::string(value) +
                    "\", which is no state of a check box. Make it 0, 1 or 2 in the settings file.",
                std::move(place));
}

}  // namespace

bool TagIsLegit(std::string_view tag) {
    for (const char mark : {'[', ']', '<', '>'}) {
        if (tag.find(mark) == std::string_view::npos) return false;
    }
    return text::Upper(tag).find("INI") != std::string::npos;
}

void TagReadAll(Session& session, controls::Form& form) {
    for (controls::Control* control : form.Controls()) {
        if (!TagIsLegit(control->Tag())) continue;
        const std::string kind = UpTrim(control->TypeName());
        if (IsText(kind)) {
            TagRead(session, *control);
        } else if (kind == "OPTIONBUTTON") {
            TagReadOption(session, *control);
        } else if (IsList(kind)) {
            TagReadList(session, *control);
        } else if (kind == "CHECKBOX") {
            TagReadCheck(session, *control);
        }
    }
}

void TagWriteAll(Session& session, const controls::Form& form) {
    for (const controls::Control* control : form.Controls()) {
        const std::string kind = UpTrim(control->TypeName());
        if (IsText(kind)) {
            TagWrite(session, *control);
        } else if (kind == "OPTIONBUTTON") {
            TagWriteOption(session, *control);
        } else if (IsList(kind)) {
            TagWriteList(session, *control);
        } else if (kind == "CHECKBOX") {
            TagWriteCheck(session, *control);
        }
    }
}

void TagRead(Session& session, controls::Control& control) {
    WithErrorRule(session, "ErrTagReadTag", [&] {
        std::string value = Value(session, Split(session, control.Tag()));
        if (auto* const box = dynamic_cast<controls::TextBox*>(&control)) {
            box->SetText(std::move(value));
        } else if (auto* const label = dynamic_cast<controls::Label*>(&control)) {
            label->SetCaption(std::move(value));
        } else if (auto* const combo = dynamic_cast<controls::ComboBox*>(&control)) {
            combo->SetText(std::move(value));
        } else {
            session.desktop.Show({"invalid tag type of object sent", session.settings.programAlias,
                                  controls::Icon::None, controls::Buttons::Ok});
        }
    });
}

void TagReadOption(Session& session, controls::Control& control) {
    auto* const option = dynamic_cast<controls::OptionButton*>(&control);
    if (option == nullptr) return;
    WithErrorRule(session, "ErrTagReadOptionTag",
                  [&] { option->SetValue(IniBool(Value(session, Split(session, control.Tag())))); });
}

void TagReadCheck(Session& session, controls::Control& control) {
    auto* const box = dynamic_cast<controls::CheckBox*>(&control);
    if (box == nullptr) return;
    WithErrorRule(session, "ErrTagReadBkBoxTag", [&] {
        const Tag tag = Split(session, control.Tag());
        const std::string value = Value(session, tag);
        const double state = text::RoundHalfEven(text::LeadingNumber(value));
        if (!(state >= controls::CheckBox::kUnchecked && state <= controls::CheckBox::kGrayed))
            RefuseState(tag, value);
        box->SetValue(static_cast<int>(state));
    });
}

void TagReadList(Session& session, controls::Control& control) {
    const auto read = [&](auto& list) {
        WithErrorRule(session, "TagLstreadIni", [&] {
            list.Clear();
            const Tag tag = Split(session, control.Tag());
            const auto [prefix, width] = ListKey(tag);
            list.AddItems(IniList(session, tag.file, tag.section, prefix, -1, width));
        });
    };
    if (auto* const list = dynamic_cast<controls::ListBox*>(&control)) {
        read(*list);
    } else if (auto* const combo = dynamic_cast<controls::ComboBox*>(&control)) {
        read(*combo);
    }
}

void TagWrite(Session& session, const controls::Control& control) {
    if (const auto* const box = dynamic_cast<const controls::TextBox*>(&control)) {
        Write(session, control, box->Text());
    } else if (const auto* const label = dynamic_cast<const controls::Label*>(&control)) {
        Write(session, control, label->Caption());
    } else if (const auto* const combo = dynamic_cast<const controls::ComboBox*>(&control)) {
        Write(session, control, combo->Text());
    }
}

void TagWriteOption(Session& session, const controls::Control& control) {
    if (const auto* const option = dynamic_cast<const controls::OptionButton*>(&control))
        Write(session, control, option->Value() ? "1" : "0");
}

void TagWriteCheck(Session& session, const controls::Control& control) {
    if (const auto* const box = dynamic_cast<const controls::CheckBox*>(&control))
        Write(session, control, IntToText(box->Value()));
}

void TagWriteList(Session& session, const controls::Control& control) {
    const auto* const list = dynamic_cast<const controls::ListControl*>(&control);
    if (list == nullptr) return;
    const Tag tag = Split(session, control.Tag());
    const auto [prefix, width] = ListKey(tag);
    std::vector<std::pair<std::string, std::string>> values;
    for (int index = 0; index < list->ListCount(); ++index) {
        std::string digits = IntToText(index + 1);
        if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
        values.emplace_back(prefix + digits, list->List(index));
    }
    ReplaceSection(session, tag.file, tag.section, values);
}

}  // namespace zenvora::common
