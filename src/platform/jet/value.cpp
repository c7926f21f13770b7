#include "platform/jet/value.h"

#include "platform/text/date.h"
#include "platform/text/number.h"

namespace zenvora::jet {

namespace {
constexpr char kDigits[] = "0123456789ABCDEF";

std::string CurrencyText(std::int64_t tenThousandths) {
    const bool negative = tenThousandths < 0;
    const auto magnitude = negative ? 0 - static_cast<std::uint64_t>(tenThousandths)
                                    : static_cast<std::uint64_t>(tenThousandths);
    std::string fraction = std::to_string(magnitude % 10000 + 10000).substr(1);
    while (!fraction.empty() && fraction.back() == '0')
        fraction.pop_back();
    std::string text = (negative ? "-" : "") + std::to_string(magnitude / 10000);
    return fraction.empty() ? text : text + "." + fraction;
}

std::string NumericText(const Numeric& value) {
    // Long division by ten over the big-endian bytes.
    std::array<std::uint8_t, 16> rest = value.magnitude;
    std::string digits;
    bool more = true;
    while (more) {
        unsigned remainder = 0;
        more = false;
        for (std::uint8_t& byte : rest) {
            const unsigned part = remainder * 256 + byte;
            byte = static_cast<std::uint8_t>(part / 10);
            remainder = part % 10;
            more = more || byte != 0;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + remainder));
    }
    if (value.scale > 0) {
        if (digits.size() <= value.scale) digits.insert(0, value.scale + 1U - digits.size(), '0');
        digits.insert(digits.size() - value.scale, 1, '.');
        while (digits.back() == '0')
            digits.pop_back();
        if (digits.back() == '.') digits.pop_back();
    }
    return value.negative && digits != "0" ? "-" + digits : digits;
}

std::string Hex(const std::uint8_t* bytes, std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0xF];
    }
    return text;
}

struct TextOf {
    std::string operator()(Null) const { return {}; }
    std::string operator()(bool value) const { return value ? "True" : "False"; }
    std::string operator()(std::int32_t value) const { return text::IntegerText(value); }
    std::string operator()(Currency value) const { return CurrencyText(value.tenThousandths); }
    std::string operator()(float value) const { return text::SingleText(value); }
    std::string operator()(double value) const { return text::DoubleText(value); }
    std::string operator()(DateTime value) const { return text::DateText(value.serial); }
    std::string operator()(const std::string& value) const { return value; }
    std::string operator()(const Bytes& value) const {
        return Hex(reinterpret_cast<const std::uint8_t*>(value.data()), value.size());
    }
    std::string operator()(const Guid& value) const {
        // The first three groups are stored little-endian.
        static constexpr std::size_t kOrder[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
        std::string text = "{";
        for (std::size_t i = 0; i < 16; ++i) {
            if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
            text += Hex(&value.bytes[kOrder[i]], 1);
        }
        return text + "}";
    }
    std::string operator()(const Numeric& value) const { return NumericText(value); }
};
}  // namespace

std::string ValueText(const Value& value) {
    return std::visit(TextOf{}, value);
}

}  // namespace zenvora::jet
