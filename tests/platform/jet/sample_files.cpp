#include "sample_files.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

#include "platform/text/utf8.h"

namespace zenvora::jet::testing_support {

namespace fs = std::filesystem;

namespace {
fs::path Folder() {
    const char* const folder = std::getenv("ZENVORA_JET_SAMPLES");
    return folder == nullptr ? fs::path() : fs::path(folder);
}

std::string Quoted(const fs::path& path) {
    return "'" + path.string() + "'";
}

std::string NumberText(double number) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), end.ptr};
}

std::string Hex(const std::uint8_t* bytes, std::size_t count) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0xF];
    }
    return text;
}

/// A whole number of units of 10^-scale in decimal.
std::string ScaledText(bool negative, std::string digits, std::size_t scale) {
    if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
    if (scale > 0) digits.insert(digits.size() - scale, ".");
    return (negative && digits.find_first_not_of("0.") != std::string::npos ? "-" : "") + digits;
}

std::string NumericText(const Numeric& value) {
    // Schoolbook division of the magnitude by ten, digit by digit from the last.
    std::string digits;
    std::array<std::uint8_t, 16> rest = value.magnitude;
    while (std::any_of(rest.begin(), rest.end(), [](std::uint8_t byte) { return byte != 0; })) {
        unsigned carry = 0;
        for (std::uint8_t& byte : rest) {
            carry = carry * 256 + byte;
            byte = static_cast<std::uint8_t>(carry / 10);
            carry %= 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + carry));
    }
    return ScaledText(value.negative, digits.empty() ? "0" : digits, value.scale);
}

std::string GuidText(const Guid& guid) {
    static constexpr std::array<std::size_t, 16> kPrinted = {3, 2, 1,  0,  5,  4,  7,  6,
                                                             8, 9, 10, 11, 12, 13, 14, 15};
    std::string text;
    for (std::size_t i = 0; i < kPrinted.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += Hex(&guid.bytes[kPrinted[i]], 1);
    }
    return text;
}

std::string TwoDigits(int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

/// "YYYY-MM-DDTHH:MM:SS"; the fraction of a negative serial counts forward too.
std::string DateText(double serial) {
    double day = std::trunc(serial);
    auto seconds = static_cast<int>(std::lround(std::abs(serial - day) * 86400));
    if (seconds == 86400) {
        seconds = 0;
        day += 1;
    }
    // The civil calendar, counted from March 1 of year 0: that day is 693899 days before the serial 0.
    const long long days = static_cast<long long>(day) + 693899;
    const long long era = (days >= 0 ? days : days - 146096) / 146097;
    const long long dayOfEra = days - era * 146097;
    const long long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long long marchMonth = (5 * dayOfYear + 2) / 153;
    const int dayOfMonth = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    const int month = static_cast<int>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
    std::string year = std::to_string(yearOfEra + era * 400 + (month <= 2 ? 1 : 0));
    year.insert(0, 4 - std::min<std::size_t>(4, year.size()), '0');
    return year + "-" + TwoDigits(month) + "-" + TwoDigits(dayOfMonth) + "T" + TwoDigits(seconds / 3600) +
           ":" + TwoDigits(seconds / 60 % 60) + ":" + TwoDigits(seconds % 60);
}

/// The readers differ in two things: only one takes the padding from a text of fixed length, and only one
/// has characters for the five bytes that code page 1252 leaves unassigned.
std::string Levelled(const ColumnDefinition& column, std::string text) {
    if (column.type == ColumnType::Text && column.fixedLength) text.resize(text.find_last_not_of(' ') + 1);
    if (column.codePage == 0) return text;
    for (const char* const unassigned : {"\xC2\x81", "\xC2\x8D", "\xC2\x8F", "\xC2\x90", "\xC2\x9D"})
        text = text::ReplaceAll(text, unassigned, "\xEF\xBF\xBD");
    return text;
}
}  // namespace

std::vector<std::string> SampleNames() {
    std::vector<std::string> names;
    if (Folder().empty()) return names;
    for (const auto& entry : fs::directory_iterator(Folder())) {
        if (entry.path().extension() == ".json") names.push_back(entry.path().stem().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void CopySample(const std::string& name, const fs::path& to) {
    const fs::path plain = Folder() / (name + ".mdb");
    if (fs::exists(plain)) {
        fs::copy_file(plain, to);
        fs::permissions(to, fs::perms::owner_write, fs::perm_options::add);
        return;
    }
    const fs::path packed = Folder() / (name + ".mdb.gz");
    const CommandResult unpacked = RunCommand("gzip -dc " + Quoted(packed) + " > " + Quoted(to));
    ASSERT_EQ(unpacked.status, 0) << unpacked.output;
}

nlohmann::json SampleTables(const std::string& name) {
    std::ifstream in(Folder() / (name + ".json"));
    return nlohmann::json::parse(in).at("tables");
}

std::string TypeName(ColumnType type) {
    switch (type) {
        case ColumnType::Boolean:
            return "boolean";
        case ColumnType::Byte:
            return "byte";
        case ColumnType::Integer:
            return "integer";
        case ColumnType::Long:
            return "long";
        case ColumnType::Currency:
            return "currency";
        case ColumnType::Single:
            return "float";
        case ColumnType::Double:
            return "double";
        case ColumnType::DateTime:
            return "datetime";
        case ColumnType::Binary:
        case ColumnType::BigBinary:
            return "binary";
        case ColumnType::Text:
            return "text";
        case ColumnType::Ole:
            return "ole";
        case ColumnType::Memo:
            return "memo";
        case ColumnType::Guid:
            return "repid";
        case ColumnType::Numeric:
            return "numeric";
        case ColumnType::Complex:
            break;
    }
    return "unknown";
}

std::string Rendered(const ColumnDefinition& column, const Value& value) {
    return std::visit(
        [&](const auto& each) -> std::string {
            using T = std::decay_t<decltype(each)>;
            if constexpr (std::is_same_v<T, Null>) {
                return "null";
            } else if constexpr (std::is_same_v<T, bool>) {
                return each ? "true" : "false";
            } else if constexpr (std::is_arithmetic_v<T>) {
                return NumberText(static_cast<double>(each));
            } else if constexpr (std::is_same_v<T, Currency>) {
                const std::string digits = std::to_string(each.tenThousandths);
                const bool negative = digits.front() == '-';
                return ScaledText(negative, digits.substr(negative ? 1 : 0), 4);
            } else if constexpr (std::is_same_v<T, Numeric>) {
                return NumericText(each);
            } else if constexpr (std::is_same_v<T, DateTime>) {
                return DateText(each.serial);
            } else if constexpr (std::is_same_v<T, Guid>) {
                return GuidText(each);
            } else if constexpr (std::is_same_v<T, Bytes>) {
                return "hex:" + Hex(reinterpret_cast<const std::uint8_t*>(each.data()), each.size());
            } else {
                return Levelled(column, each);
            }
        },
        value);
}

std::string Rendered(const ColumnDefinition& column, const nlohmann::json& value) {
    if (value.is_null()) return "null";
    if (value.is_boolean()) return value.get<bool>() ? "true" : "false";
    if (value.is_number()) return NumberText(value.get<double>());
    return Levelled(column, value.get<std::string>());
}

}  // namespace zenvora::jet::testing_support
