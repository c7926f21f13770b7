#include "platform/link/line_protocol.h"

#include <array>
#include <charconv>

#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::link {
namespace {

struct Escape {
    char character;
    char letter;
};
constexpr std::array<Escape, 4> kEscapes{{{'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}}};

struct VerbRow {
    Verb verb;
    std::string_view name;
    std::size_t arguments;
};
constexpr std::array<VerbRow, 5> kVerbs{{{Verb::Open, "OPEN", 2},
                                         {Verb::Request, "REQUEST", 1},
                                         {Verb::Poke, "POKE", 2},
                                         {Verb::Close, "CLOSE", 0},
                                         {Verb::Fits, "FITS", 1}}};

void AppendField(std::string& line, std::string_view field) {
    for (const char character : field) {
        char letter = 0;
        for (const Escape& escape : kEscapes) {
            if (escape.character == character) letter = escape.letter;
        }
        if (letter != 0) {
            line += '\\';
            line += letter;
        } else {
            line += character;
        }
    }
}

std::string ValidUtf8(std::string_view field) {
    std::string valid;
    for (std::size_t at = 0; at < field.size();)
        text::AppendCharacter(valid, text::NextCharacter(field, at));
    return valid;
}

/// A number in plain digits.
template <class Number>
std::optional<Number> Digits(std::string_view field) {
    Number number = 0;
    const auto [end, fault] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (fault != std::errc{} || end != field.data() + field.size() || field.empty()) return {};
    return number;
}

}  // namespace

std::string EncodeLine(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        if (&field != &fields.front()) line += '\t';
        AppendField(line, text::IsUtf8(field) ? field : ValidUtf8(field));
    }
    line += '\n';
    return line;
}

std::optional<std::vector<std::string>> DecodeLine(std::string_view line) {
    if (!text::IsUtf8(line)) return {};
    std::vector<std::string> fields(1);
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '\t') {
            fields.emplace_back();
        } else if (line[at] == '\\') {
            ++at;
            char character = 0;
            for (const Escape& escape : kEscapes) {
                if (at < line.size() && escape.letter == line[at]) character = escape.character;
            }
            if (character == 0) return {};
            fields.back() += character;
        } else {
            fields.back() += line[at];
        }
    }
    return fields;
}

std::string EncodeQuery(const Query& query) {
    std::vector<std::string> fields{std::to_string(query.number)};
    for (const VerbRow& row : kVerbs) {
        if (row.verb == query.verb) fields.emplace_back(row.name);
    }
    fields.insert(fields.end(), query.arguments.begin(), query.arguments.end());
    return EncodeLine(fields);
}

std::optional<Query> DecodeQuery(std::string_view line) {
    const auto fields = DecodeLine(line);
    if (!fields || fields->size() < 2) return {};
    const auto number = Digits<std::uint64_t>(fields->front());
    if (!number) return {};
    for (const VerbRow& row : kVerbs) {
        if (row.name != (*fields)[1]) continue;
        if (fields->size() != row.arguments + 2) return {};
        return Query{*number, row.verb, {fields->begin() + 2, fields->end()}};
    }
    return {};
}

std::string EncodeReply(const Reply& reply) {
    if (reply.fault != 0)
        return EncodeLine(
            {std::to_string(reply.number), "ERR", text::IntegerText(reply.fault), reply.description});
    return EncodeLine({std::to_string(reply.number), "OK", reply.text});
}

std::optional<Reply> DecodeReply(std::string_view line) {
    auto fields = DecodeLine(line);
    if (!fields || fields->size() < 3) return {};
    const auto number = Digits<std::uint64_t>(fields->front());
    if (!number) return {};
    Reply reply{.number = *number};
    if ((*fields)[1] == "OK" && fields->size() == 3) {
        reply.text = std::move((*fields)[2]);
        return reply;
    }
    if ((*fields)[1] != "ERR" || fields->size() != 4) return {};
    const auto fault = Digits<int>((*fields)[2]);
    if (!fault || *fault <= 0) return {};
    reply.fault = *fault;
    reply.description = std::move((*fields)[3]);
    return reply;
}

bool LineBuffer::Append(std::string_view bytes) {
    if (start_ > 0) {
        bytes_.erase(0, start_);
        searched_ -= start_;
        start_ = 0;
    }
    if (bytes_.size() + bytes.size() > kLongestLine && bytes_.find('\n') == std::string::npos) return false;
    bytes_ += bytes;
    return true;
}

std::optional<std::string> LineBuffer::Next() {
    const std::size_t end = bytes_.find('\n', searched_);
    if (end == std::string::npos) {
        searched_ = bytes_.size();
        return {};
    }
    std::string line = bytes_.substr(start_, end - start_);
    start_ = searched_ = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

}  // namespace zenvora::link
