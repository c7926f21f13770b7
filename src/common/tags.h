#pragma once

#include <string_view>

#include "common/session.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/form.h"
#include "platform/controls/list_box.h"

/// Controls bound to settings by their Tags: "<TOKEN>file[SECTION]KEY|default".
///
/// The file part becomes a path by TagSubstituteDirectory. A Tag without "|" has neither key nor default. In
/// a list, KEY ends in "#" characters, one for each digit of its entries' numbers: "ITEM##" is ITEM01, ITEM02
/// and so on; a number that has more digits keeps them. Readers take the error rule; writers store what can
/// be stored and tell nobody.
namespace zenvora::common {

/// True when the Tag holds each of "[", "]", "<" and ">", and "INI" anywhere in any case.
[[nodiscard]] bool TagIsLegit(std::string_view tag);

/// Reads the setting of every control of the form with a legitimate Tag, in their order.
void TagReadAll(Session& session, controls::Form& form);
/// Writes the setting of every control of the form; one without a Tag stores nothing.
void TagWriteAll(Session& session, const controls::Form& form);

/// The text of a text box or combo box, the caption of a label. Any other kind: the message "invalid tag type
/// of object sent", and nothing is set.
void TagRead(Session& session, controls::Control& control);
/// An option button: off for the trimmed text "0" only. Any other kind: nothing happens.
void TagReadOption(Session& session, controls::Control& control);
/// A check box: the leading number of the text. Fault 380: it is none of 0, 1 and 2. Any other kind: nothing.
void TagReadCheck(Session& session, controls::Control& control);
/// The entries of a list box or combo box up to the first empty key; what it held is dropped. Any other kind:
/// nothing happens.
void TagReadList(Session& session, controls::Control& control);

/// The writers, each for the kinds of its reader; any other kind: nothing happens.
void TagWrite(Session& session, const controls::Control& control);
void TagWriteOption(Session& session, const controls::Control& control);
void TagWriteCheck(Session& session, const controls::Control& control);
/// Deletes the whole section first: other keys in it are lost. The section is replaced in one go.
void TagWriteList(Session& session, const controls::Control& control);

}  // namespace zenvora::common
