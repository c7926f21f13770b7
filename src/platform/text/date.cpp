#include "platform/text/date.h"

#include <array>
#include <charconv>
#include <cmath>

#include "platform/text/number.h"

namespace zenvora::text {
namespace {

constexpr int kSecondsADay = 86400;
/// Serial number of 3/1/0000 of the proleptic calendar, where the eras of 400 years below begin.
constexpr int kEraStart = -693899;
constexpr int kDaysAnEra = 146097;

constexpr bool IsLeapYear(int year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysInMonth(int year, int month) noexcept {
    constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

/// The whole day as an integer, the nearest legal one for a number outside the range.
int WholeDay(Date date) noexcept {
    if (!(date >= kFirstDate)) return static_cast<int>(kFirstDate);  // a NaN too
    if (date >= kLastDate) return static_cast<int>(kLastDate);
    return static_cast<int>(date);
}

constexpr bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
constexpr bool IsBlank(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr char LowerAscii(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
constexpr bool IsLetter(char c) noexcept {
    return LowerAscii(c) >= 'a' && LowerAscii(c) <= 'z';
}

/// `lower` is in lower case already.
bool EqualsWord(std::string_view word, std::string_view lower) noexcept {
    if (word.size() != lower.size()) return false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (LowerAscii(word[i]) != lower[i]) return false;
    }
    return true;
}

/// 1 to 12, or 0.
int MonthOfName(std::string_view word) noexcept {
    constexpr std::array<std::string_view, 12> kNames = {"january",   "february", "march",    "april",
                                                         "may",       "june",     "july",     "august",
                                                         "september", "october",  "november", "december"};
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (EqualsWord(word, kNames[i]) || EqualsWord(word, kNames[i].substr(0, 3)))
            return static_cast<int>(i) + 1;
    }
    return EqualsWord(word, "sept") ? 9 : 0;
}

struct Number {
    int value = 0;
    int digits = 0;
    bool leadingZero = false;
};

/// Reads a date text from its front to its back: numbers and a month name in the order they stand, then a
/// time.
class DateReader {
  public:
    DateReader(std::string_view text, int currentYear) noexcept : text_(text), currentYear_(currentYear) {
        while (!text_.empty() && IsBlank(text_.front())) {
            text_.remove_prefix(1);
        }
        while (!text_.empty() && IsBlank(text_.back())) {
            text_.remove_suffix(1);
        }
    }

    std::optional<Date> Read() {
        if (text_.empty()) return std::nullopt;
        while (at_ < text_.size()) {
            if (!ReadItem()) return std::nullopt;
        }
        if (count_ == 0 && month_ == 0) return hasTime_ ? std::optional<Date>(time_) : std::nullopt;
        const auto day = Day();
        if (!day) return std::nullopt;
        // The fraction runs forward on both sides of day 0.
        return *day < 0 ? *day - time_ : *day + time_;
    }

  private:
    [[nodiscard]] bool Here(char c) const noexcept { return at_ < text_.size() && text_[at_] == c; }
    void SkipBlanks() noexcept {
        while (at_ < text_.size() && IsBlank(text_[at_])) {
            ++at_;
        }
    }

    /// Blanks and at most one other separator, then a number, a month name or the time.
    bool ReadItem() {
        bool marked = false;
        if (at_ > 0) {
            const std::size_t before = at_;
            SkipBlanks();
            if (Here('/') || Here('-') || Here('.') || Here(',')) {
                marked = true;
                ++at_;
                SkipBlanks();
                if (at_ == text_.size()) return false;
            }
            spaced_ = at_ != before;
        }
        if (IsDigit(text_[at_])) {
            const Number number = ReadNumber();
            if (number.digits > 4) return false;
            if (StartsTime()) return !marked && (spaced_ || (count_ == 0 && month_ == 0)) && ReadTime(number);
            if (count_ == 3) return false;
            numbers_[static_cast<std::size_t>(count_++)] = number;
            return true;
        }
        const int month = MonthOfName(ReadWord());
        if (month == 0 || month_ != 0) return false;
        month_ = month;
        return true;
    }

    Number ReadNumber() noexcept {
        Number number;
        number.leadingZero = text_[at_] == '0';
        for (; at_ < text_.size() && IsDigit(text_[at_]); ++at_) {
            if (number.digits < 5) {
                number.value = number.value * 10 + (text_[at_] - '0');
                ++number.digits;
            }
        }
        return number;
    }

    std::string_view ReadWord() noexcept {
        const std::size_t start = at_;
        while (at_ < text_.size() && IsLetter(text_[at_])) {
            ++at_;
        }
        return text_.substr(start, at_ - start);
    }

    /// Is the number just read the hour of a time: "9:19", "9 AM"?
    [[nodiscard]] bool StartsTime() const noexcept {
        if (Here(':')) return true;
        std::size_t at = at_;
        while (at < text_.size() && IsBlank(text_[at])) {
            ++at;
        }
        const std::string_view rest = text_.substr(at);
        const bool half = EqualsWord(rest.substr(0, 2), "am") || EqualsWord(rest.substr(0, 2), "pm");
        return half && rest.size() == 2;
    }

    /// Minutes or seconds behind their colon.
    bool ReadSixty(int& value) noexcept {
        ++at_;
        if (at_ == text_.size() || !IsDigit(text_[at_])) return false;
        const Number number = ReadNumber();
        value = number.value;
        return number.digits <= 2 && value <= 59;
    }

    bool ReadTime(const Number& first) noexcept {
        int hour = first.value;
        int minute = 0;
        int second = 0;
        if (first.digits > 2) return false;
        if (Here(':') && !ReadSixty(minute)) return false;
        if (Here(':') && !ReadSixty(second)) return false;
        SkipBlanks();
        const std::string_view half = ReadWord();
        if (!half.empty()) {
            const bool morning = EqualsWord(half, "am") || EqualsWord(half, "a");
            const bool evening = EqualsWord(half, "pm") || EqualsWord(half, "p");
            if ((!morning && !evening) || hour > 12) return false;
            hour = hour % 12 + (evening ? 12 : 0);
        }
        if (hour > 23 || at_ != text_.size()) return false;
        hasTime_ = true;
        time_ = static_cast<double>(hour * 3600 + minute * 60 + second) / kSecondsADay;
        return true;
    }

    /// The year a number means, or -1.
    static int YearOf(const Number& number) noexcept {
        if (number.digits <= 2) return number.value + (number.value < 30 ? 2000 : 1900);
        return number.leadingZero ? -1 : number.value;
    }

    static std::optional<Date> Join(int year, int month, const Number& day) noexcept {
        return day.digits > 2 ? std::nullopt : DayNumber(year, month, day.value);
    }
    static std::optional<Date> Join(int year, const Number& month, const Number& day) noexcept {
        return month.digits > 2 ? std::nullopt : Join(year, month.value, day);
    }

    [[nodiscard]] std::optional<Date> Day() const {
        const Number& a = numbers_[0];
        const Number& b = numbers_[1];
        const Number& c = numbers_[2];
        constexpr Number kFirstOfMonth{1, 1, false};
        if (month_ != 0) {
            if (count_ == 2) return a.digits > 2 ? Join(YearOf(a), month_, b) : Join(YearOf(b), month_, a);
            if (count_ != 1) return std::nullopt;
            return a.digits > 2 ? Join(YearOf(a), month_, kFirstOfMonth) : Join(currentYear_, month_, a);
        }
        if (count_ == 3) {
            if (a.digits == 4) return Join(YearOf(a), b, c);
            return a.value > 12 ? Join(YearOf(c), b, a) : Join(YearOf(c), a, b);
        }
        // "3.15" and "1,20" are numbers, and a bare number is no date.
        if (count_ != 2 || IsNumeric(text_)) return std::nullopt;
        if (a.digits == 4) return Join(YearOf(a), b, kFirstOfMonth);
        if (b.digits == 4) return Join(YearOf(b), a, kFirstOfMonth);
        return a.value > 12 ? Join(currentYear_, b, a) : Join(currentYear_, a, b);
    }

    std::string_view text_;
    int currentYear_;
    std::size_t at_ = 0;
    bool spaced_ = false;
    std::array<Number, 3> numbers_{};
    int count_ = 0;
    int month_ = 0;
    bool hasTime_ = false;
    double time_ = 0;
};

char* WriteNumber(char* out, int value) noexcept {
    return std::to_chars(out, out + 12, value).ptr;
}

char* WriteTwo(char* out, int value) noexcept {
    *out++ = static_cast<char>('0' + value / 10);
    *out++ = static_cast<char>('0' + value % 10);
    return out;
}

/// How often the letter at `at` follows itself, whatever its case.
std::size_t RunLength(std::string_view pattern, std::size_t at) noexcept {
    std::size_t end = at;
    while (end < pattern.size() && LowerAscii(pattern[end]) == LowerAscii(pattern[at])) {
        ++end;
    }
    return end - at;
}

void AppendTwo(std::string& out, int value) {
    out.push_back(static_cast<char>('0' + value / 10));
    out.push_back(static_cast<char>('0' + value % 10));
}

}  // namespace

std::optional<Date> DayNumber(int year, int month, int day) noexcept {
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month)) {
        return std::nullopt;
    }
    // Years that begin in March put the leap day last, and months then have a length that a line describes.
    const int shifted = month > 2 ? year : year - 1;
    const int era = shifted / 400;
    const int yearOfEra = shifted - era * 400;
    const int dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return static_cast<Date>(kEraStart + era * kDaysAnEra + dayOfEra);
}

CalendarDay CalendarDayOf(Date date) noexcept {
    const int days = WholeDay(date) - kEraStart;
    const int era = days / kDaysAnEra;
    const int dayOfEra = days - era * kDaysAnEra;
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shiftedMonth = (5 * dayOfYear + 2) / 153;
    CalendarDay out;
    out.day = dayOfYear - (153 * shiftedMonth + 2) / 5 + 1;
    out.month = shiftedMonth < 10 ? shiftedMonth + 3 : shiftedMonth - 9;
    out.year = yearOfEra + era * 400 + (out.month <= 2 ? 1 : 0);
    return out;
}

Date DayPart(Date date) noexcept {
    return std::trunc(date) + 0.0;
}  // no negative zero

int SecondOfDay(Date date) noexcept {
    const double fraction = std::fabs(date - std::trunc(date));
    if (!(fraction > 0)) return 0;
    const int seconds = static_cast<int>(std::floor(fraction * kSecondsADay + 0.5));
    return seconds < kSecondsADay ? seconds : kSecondsADay - 1;
}

int Weekday(Date date) noexcept {
    const int sinceSunday = (WholeDay(date) - 1) % 7;  // day 1 was a Sunday
    return (sinceSunday < 0 ? sinceSunday + 7 : sinceSunday) + 1;
}

std::optional<Date> TextToDate(std::string_view text, int currentYear) {
    return DateReader(text, currentYear).Read();
}

std::string DateText(Date date) {
    const CalendarDay day = CalendarDayOf(date);
    std::array<char, 48> buffer{};
    char* out = WriteNumber(buffer.data(), day.month);
    *out++ = '/';
    out = WriteNumber(out, day.day);
    *out++ = '/';
    out = WriteNumber(out, day.year);
    if (const int seconds = SecondOfDay(date); seconds != 0) {
        const int hour = seconds / 3600;
        *out++ = ' ';
        out = WriteNumber(out, hour % 12 == 0 ? 12 : hour % 12);
        *out++ = ':';
        out = WriteTwo(out, seconds / 60 % 60);
        *out++ = ':';
        out = WriteTwo(out, seconds % 60);
        *out++ = ' ';
        *out++ = hour < 12 ? 'A' : 'P';
        *out++ = 'M';
    }
    return {buffer.data(), out};
}

std::string FormatDate(Date date, std::string_view pattern) {
    const CalendarDay day = CalendarDayOf(date);
    const int seconds = SecondOfDay(date);
    std::string out;
    for (std::size_t at = 0; at < pattern.size();) {
        const char kind = LowerAscii(pattern[at]);
        const std::size_t run = RunLength(pattern, at);
        std::size_t used = run >= 2 ? 2 : 1;
        if (kind == 'm' || kind == 'd') {
            const int value = kind == 'm' ? day.month : day.day;
            if (run >= 2 || value > 9) {
                AppendTwo(out, value);
            } else {
                out.push_back(static_cast<char>('0' + value));
            }
        } else if (kind == 'y' && run >= 2) {
            if (run >= 4) {
                AppendTwo(out, day.year / 100);
                used = 4;
            }
            AppendTwo(out, day.year % 100);
        } else if (kind == 'h' && run >= 2) {
            AppendTwo(out, seconds / 3600);
        } else if (kind == 'n' && run >= 2) {
            AppendTwo(out, seconds / 60 % 60);
        } else if (kind == 's' && run >= 2) {
            AppendTwo(out, seconds % 60);
        } else {
            out.push_back(pattern[at]);
            used = 1;
        }
        at += used;
    }
    return out;
}

}  // namespace zenvora::text
