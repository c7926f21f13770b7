#include "platform/text/number.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text/detail/decimal.h"

namespace zenvora::text {
namespace {

constexpr bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr bool IsSign(char c) noexcept {
    return c == '+' || c == '-';
}
/// Blanks around a number; a cell that was pasted may end in a tab or a line end.
constexpr bool IsBlank(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool IsExponentMark(char c) noexcept {
    return c == 'e' || c == 'E' || c == 'd' || c == 'D';
}

/// Powers of ten that a double holds exactly.
constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t kExactMantissa = std::uint64_t{1} << 53U;
constexpr long kExponentLimit = 100000;  // far beyond every double; keeps the sums below from overflowing

/// Gathers digits, point and exponent of one number while a reader walks over its text.
class Collector {
  public:
    void Digit(char c, std::size_t at) noexcept {
        if (digits_ == 0 && c == '0') {
            // Leading zeros carry no value, but those behind the point move it.
            if (afterPoint_) --scale_;
            any_ = true;
            return;
        }
        if (digits_ == 0) first_ = at;
        last_ = at;
        any_ = true;
        ++digits_;
        if (digits_ <= 19) mantissa_ = mantissa_ * 10 + static_cast<std::uint64_t>(c - '0');
        if (afterPoint_) --scale_;
    }
    void Point() noexcept { afterPoint_ = true; }
    void Exponent(long exponent) noexcept { exponent_ = exponent; }
    [[nodiscard]] bool HasPoint() const noexcept { return afterPoint_; }
    [[nodiscard]] bool HasDigits() const noexcept { return any_; }

    /// The value without a sign; infinity when it is too large for a double. `text` is what the digits stand
    /// in.
    [[nodiscard]] double Value(std::string_view text) const {
        if (digits_ == 0) return 0;
        const long power = scale_ + exponent_;
        if (digits_ <= 19 && mantissa_ <= kExactMantissa && power >= -22 && power <= 22) {
            // Both factors are exact, so one operation rounds correctly.
            const auto whole = static_cast<double>(mantissa_);
            return power < 0 ? whole / kPowersOfTen[static_cast<std::size_t>(-power)]
                             : whole * kPowersOfTen[static_cast<std::size_t>(power)];
        }
        return SlowValue(text, power);
    }

  private:
    [[nodiscard]] double SlowValue(std::string_view text, long power) const {
        if (power + digits_ > 310) return std::numeric_limits<double>::infinity();
        if (power + digits_ < -330) return 0;
        std::string plain;
        plain.reserve(last_ - first_ + 16);
        for (const char c : text.substr(first_, last_ - first_ + 1)) {
            if (IsDigit(c)) plain.push_back(c);
        }
        plain.push_back('e');
        plain += IntegerText(power);
        double value = 0;
        const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
        if (result.ec == std::errc::result_out_of_range) {
            return power + digits_ > 0 ? std::numeric_limits<double>::infinity() : 0;
        }
        return value;
    }

    std::size_t first_ = 0;
    std::size_t last_ = 0;
    std::uint64_t mantissa_ = 0;
    long digits_ = 0;  ///< significant digits so far
    long scale_ = 0;
    long exponent_ = 0;
    bool afterPoint_ = false;
    bool any_ = false;
};

/// Reads [sign] digits of an exponent at `at` and moves behind it. False, and not moved, when there are no
/// digits.
bool ReadExponent(std::string_view text, std::size_t& at, long& exponent) noexcept {
    std::size_t next = at;
    const bool negative = next < text.size() && text[next] == '-';
    if (next < text.size() && IsSign(text[next])) ++next;
    if (next == text.size() || !IsDigit(text[next])) return false;
    long value = 0;
    for (; next < text.size() && IsDigit(text[next]); ++next) {
        if (value < kExponentLimit) value = value * 10 + (text[next] - '0');
    }
    exponent = negative ? -value : value;
    at = next;
    return true;
}

int DigitOf(char c) noexcept {
    if (IsDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 16;
}

/// Reads the "&H" or "&O" literal at `at`, at most 64 bits of it, and moves behind its digits.
std::optional<double> ReadLiteral(std::string_view text, std::size_t& at) noexcept {
    if (text.size() - at < 3 || text[at] != '&') return std::nullopt;
    const char kind = text[at + 1];
    unsigned shift = 0;
    if (kind == 'h' || kind == 'H') shift = 4;
    if (kind == 'o' || kind == 'O') shift = 3;
    if (shift == 0) return std::nullopt;
    std::uint64_t value = 0;
    std::size_t next = at + 2;
    for (; next < text.size() && DigitOf(text[next]) < (1 << shift); ++next) {
        if (value >> (64 - shift) != 0) return std::nullopt;
        value = value << shift | static_cast<std::uint64_t>(DigitOf(text[next]));
    }
    if (next == at + 2) return std::nullopt;
    at = next;
    return static_cast<double>(value);
}

/// Reads a numeric text from its front to its back.
class NumericReader {
  public:
    explicit NumericReader(std::string_view text) noexcept : text_(text) {}

    std::optional<double> Read() {
        SkipBlanks();
        if (Here('&')) {
            const auto value = ReadLiteral(text_, at_);
            SkipBlanks();
            return at_ == text_.size() ? value : std::nullopt;
        }
        const bool bracketed = Take('(');
        if (!ReadFront() || !ReadDigits()) return std::nullopt;
        SkipBlanks();
        if (at_ < text_.size() && IsSign(text_[at_]) && !ReadSign()) return std::nullopt;
        if (bracketed) {
            if (signed_ || !Take(')')) return std::nullopt;
            negative_ = true;
        }
        SkipBlanks();
        if (at_ != text_.size()) return std::nullopt;
        const double value = number_.Value(text_);
        if (std::isinf(value)) return std::nullopt;
        return negative_ ? -value : value;
    }

  private:
    [[nodiscard]] bool Here(char c) const noexcept { return at_ < text_.size() && text_[at_] == c; }
    bool Take(char c) noexcept {
        SkipBlanks();
        if (!Here(c)) return false;
        ++at_;
        return true;
    }
    void SkipBlanks() noexcept {
        while (at_ < text_.size() && IsBlank(text_[at_])) {
            ++at_;
        }
    }
    bool ReadSign() noexcept {
        if (signed_) return false;
        signed_ = true;
        negative_ = text_[at_] == '-';
        ++at_;
        return true;
    }
    /// Sign and "$" before the digits, in either order.
    bool ReadFront() noexcept {
        bool dollar = false;
        for (;;) {
            SkipBlanks();
            if (at_ == text_.size()) return false;
            if (IsSign(text_[at_])) {
                if (!ReadSign()) return false;
            } else if (text_[at_] == '$') {
                if (dollar) return false;
                dollar = true;
                ++at_;
            } else {
                return true;
            }
        }
    }
    bool ReadDigits() noexcept {
        for (; at_ < text_.size(); ++at_) {
            const char c = text_[at_];
            if (IsDigit(c)) {
                number_.Digit(c, at_);
            } else if (c == '.' && !number_.HasPoint()) {
                number_.Point();
            } else if (c != ',' || number_.HasPoint() || !number_.HasDigits()) {
                break;
            }
        }
        if (!number_.HasDigits()) return false;
        if (at_ < text_.size() && IsExponentMark(text_[at_])) {
            ++at_;
            long exponent = 0;
            if (!ReadExponent(text_, at_, exponent)) return false;
            number_.Exponent(exponent);
        }
        return true;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    Collector number_;
    bool signed_ = false;
    bool negative_ = false;
};

void AppendExponent(std::string& out, int exponent) {
    out.push_back('E');
    out.push_back(exponent < 0 ? '-' : '+');
    const int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude < 10) out.push_back('0');
    out += IntegerText(magnitude);
}

/// Plain digits of a number at `significant` digits. More than `significant` places behind the point, or in
/// front of it, make it an exponent form.
std::string PlainText(double value, int significant) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
    const detail::Decimal decimal = detail::ToDecimal(value, significant);
    if (decimal.count == 0) return "0";
    const std::string_view digits(decimal.digits.data(), static_cast<std::size_t>(decimal.count));
    std::string out;
    if (decimal.negative) out.push_back('-');
    const int places = decimal.count - decimal.pointAt;
    if (decimal.pointAt > significant || places > significant) {
        out.push_back(digits[0]);
        if (digits.size() > 1) {
            out.push_back('.');
            out.append(digits, 1);
        }
        AppendExponent(out, decimal.pointAt - 1);
    } else if (decimal.pointAt <= 0) {
        out.append("0.").append(static_cast<std::size_t>(-decimal.pointAt), '0').append(digits);
    } else if (places <= 0) {
        out.append(digits).append(static_cast<std::size_t>(-places), '0');
    } else {
        out.append(digits, 0, static_cast<std::size_t>(decimal.pointAt)).push_back('.');
        out.append(digits, static_cast<std::size_t>(decimal.pointAt));
    }
    return out;
}

struct Pattern {
    int leastWhole = 0;   ///< whole digits printed at least
    int places = 0;       ///< decimals at most
    int leastPlaces = 0;  ///< decimals printed at least
    bool point = false;
    bool grouped = false;
};

Pattern ReadPattern(std::string_view text) noexcept {
    Pattern pattern;
    for (const char c : text) {
        if (c == '.') {
            pattern.point = true;
        } else if (c == ',') {
            pattern.grouped = pattern.grouped || !pattern.point;
        } else if (pattern.point) {
            ++pattern.places;
            if (c == '0') pattern.leastPlaces = pattern.places;
        } else if (c == '0' || pattern.leastWhole > 0) {
            ++pattern.leastWhole;
        }
    }
    return pattern;
}

}  // namespace

std::optional<double> NumericValue(std::string_view text) {
    return NumericReader(text).Read();
}

bool IsNumeric(std::string_view text) {
    return NumericValue(text).has_value();
}

double LeadingNumber(std::string_view text) {
    std::size_t at = 0;
    const auto skipBlanks = [&] {
        while (at < text.size() && IsBlank(text[at])) {
            ++at;
        }
    };
    skipBlanks();
    if (at < text.size() && text[at] == '&') return ReadLiteral(text, at).value_or(0);
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && IsSign(text[at])) ++at;
    Collector number;
    for (skipBlanks(); at < text.size(); skipBlanks()) {
        if (IsDigit(text[at])) {
            number.Digit(text[at], at);
        } else if (text[at] == '.' && !number.HasPoint()) {
            number.Point();
        } else {
            break;
        }
        ++at;
    }
    if (!number.HasDigits()) return 0;
    if (at < text.size() && IsExponentMark(text[at])) {
        ++at;
        long exponent = 0;
        if (ReadExponent(text, at, exponent)) number.Exponent(exponent);
    }
    double value = number.Value(text);
    if (std::isinf(value)) value = std::numeric_limits<double>::max();
    return negative && value != 0 ? -value : value;
}

std::string DoubleText(double value) {
    return PlainText(value, 15);
}

std::string SingleText(float value) {
    return PlainText(static_cast<double>(value), 7);
}

std::string IntegerText(std::int64_t value) {
    std::array<char, 24> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), end.ptr};
}

double RoundHalfEven(double value) noexcept {
    const double below = std::floor(value);
    const double rest = value - below;
    if (rest < 0.5) return below;
    if (rest > 0.5) return below + 1;
    return std::fmod(below, 2.0) == 0 ? below : below + 1;
}

std::string FormatNumber(double value, std::string_view pattern) {
    if (!std::isfinite(value)) return PlainText(value, 15);
    const Pattern form = ReadPattern(pattern);
    detail::Decimal decimal = detail::ToDecimal(value, 15);
    detail::RoundTo(decimal, decimal.pointAt + form.places);
    if (decimal.count == 0) decimal.pointAt = 0;

    const int whole = decimal.pointAt > 0 ? decimal.pointAt : 0;
    const int shown = whole > form.leastWhole ? whole : form.leastWhole;
    // The digit at a place counted from the point: 1, 2, ... to the left, 0, -1, ... to the right.
    const auto digitAt = [&decimal](int place) {
        const int index = decimal.pointAt - place;
        return index >= 0 && index < decimal.count ? decimal.digits[static_cast<std::size_t>(index)] : '0';
    };
    std::string out;
    out.reserve(static_cast<std::size_t>(shown) * 4 / 3 + static_cast<std::size_t>(form.places) + 2);
    if (decimal.negative && decimal.count > 0) out.push_back('-');
    for (int place = shown; place >= 1; --place) {
        out.push_back(digitAt(place));
        if (form.grouped && place > 1 && place % 3 == 1) out.push_back(',');
    }
    if (form.point) {
        out.push_back('.');
        const int used = decimal.count - decimal.pointAt;
        const int places = used > form.leastPlaces ? used : form.leastPlaces;
        for (int place = 0; place > -places; --place) {
            out.push_back(digitAt(place));
        }
    }
    return out;
}

}  // namespace zenvora::text
