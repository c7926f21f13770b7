#include "databook/address_line.h"

#include "common/primitives.h"
#include "common/text_helpers.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::databook {
namespace {

constexpr std::size_t kZipLength = 5;
constexpr std::size_t kStateLength = 2;

std::string WithoutPeriods(std::string_view text) {
    return common::RemoveCharacter(text::TrimView(text), '.');
}

}  // namespace

void GetFULLCityStateZIP(std::string_view text, std::string& city, std::string& state, std::string& zip) {
    city.clear();
    state.clear();
    zip.clear();
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return;
    city = text::Trim(text.substr(0, comma));
    const std::string_view rest = text::TrimView(text.substr(comma + 1));

    std::string zipSource;
    std::size_t cut = rest.find(',');
    if (cut == std::string_view::npos) cut = rest.find(' ');
    if (cut != std::string_view::npos) {
        state = WithoutPeriods(rest.substr(0, cut));
        zipSource = rest.substr(cut + 1);
    } else {
        const std::string only = WithoutPeriods(rest);
        const std::size_t length = text::Length(only);
        if (length == kStateLength) {
            state = only;
        } else if (length == kZipLength || only.find('-') != std::string::npos) {
            zipSource = only;
        }
    }
    if (!common::IsValidState(state)) state.clear();
    zip = ReturnProperZip(common::UpTrim(zipSource));
}

std::string ReturnProperZip(std::string_view text) {
    if (text::Length(text) < kZipLength) return {};
    const double number = text::LeadingNumber(text::Left(text, kZipLength));
    return number == 0 ? std::string{} : text::FormatNumber(number, "00000");
}

}  // namespace zenvora::databook
