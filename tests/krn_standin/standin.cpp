#include "standin.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "platform/fault.h"
#include "platform/link/line_protocol.h"
#include "platform/text/utf8.h"

namespace zenvora::standin {
namespace {

constexpr std::string_view kQuery = "Query";
constexpr std::string_view kMark = " = ";

/// Escapes are those of the line protocol, so that a value is one line.
std::string Escaped(const std::string& value) {
    std::string line = link::EncodeLine({value});
    line.pop_back();
    return line;
}

}  // namespace

Reports::Reports(std::filesystem::path file) : file_(std::move(file)) {
    Read();
}

void Reports::Read() {
    std::error_code fault;
    const auto written = std::filesystem::last_write_time(file_, fault);
    if (!fault && !lines_.empty() && written == written_) return;
    std::ifstream in(file_, std::ios::binary);
    in.peek();  // a folder can be opened, and only reading it fails
    if (!in.is_open() || in.bad())
        throw Fault(fault::kFileNotFound,
                    "The file of the stand-in cannot be read. Name a file such as samples/KRN.txt.",
                    {.file = file_.string()});
    const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    link::LineBuffer buffer;
    if (!buffer.Append(bytes) || (!bytes.empty() && bytes.back() != '\n' && !buffer.Append("\n")))
        throw Fault(fault::kSourceFormat, "The file of the stand-in has a line without end.",
                    {.file = file_.string()});

    std::vector<Line> lines;
    std::vector<std::string> reports;
    std::string report;
    while (auto raw = buffer.Next()) {
        const auto wrong = [&](const char* why) {
            return Fault(fault::kSourceFormat, why,
                         {.file = file_.string(), .line = static_cast<long>(lines.size()) + 1});
        };
        Line line{report, {}, {}, *raw};
        if (raw->starts_with('[')) {
            const std::size_t end = raw->rfind(']');
            if (end == std::string::npos || end == 1) throw wrong("A report is named as [NAME].");
            report = line.report = raw->substr(1, end - 1);
            reports.push_back(report);
        } else if (!raw->empty() && !raw->starts_with('#')) {
            // A value may be empty, and an editor may have taken the blank behind its "=".
            std::size_t mark = raw->find(kMark);
            std::size_t length = kMark.size();
            if (mark == std::string::npos && raw->ends_with(" =")) mark = raw->size() - (length = 2);
            if (mark == std::string::npos || mark == 0) throw wrong("A line reads KEY = VALUE.");
            line.key = raw->substr(0, mark);
            const auto value = link::DecodeLine(raw->substr(mark + length));
            if (!value || value->size() != 1)
                throw wrong("Only \\\\, \\n, \\r and \\t are escapes of a value.");
            line.value = value->front();
        }
        lines.push_back(std::move(line));
    }

    // The report that was brought to use stays the current one.
    if (!reports_.empty()) {
        const auto current = std::find(reports.begin(), reports.end(), reports_.front());
        if (current != reports.end()) std::rotate(reports.begin(), current, current + 1);
    }
    lines_ = std::move(lines);
    reports_ = std::move(reports);
    written_ = written;
    changed_ = false;
}

const Reports::Line* Reports::Find(std::string_view report, std::string_view key) const {
    const auto found = std::find_if(lines_.begin(), lines_.end(), [&](const Line& line) {
        return text::EqualsNoCase(line.report, report) && text::EqualsNoCase(line.key, key);
    });
    return found == lines_.end() ? nullptr : &*found;
}

Act Reports::Misbehaviour(std::string_view report, std::string_view item) const {
    for (const Line& line : lines_) {
        if (!text::EqualsNoCase(line.report, report)) continue;
        if (line.value != "*" && !text::EqualsNoCase(line.value, item)) continue;
        if (line.key == "refuse") return Act::Refuse;
        if (line.key == "busy") return Act::Busy;
        if (line.key == "hang") return Act::Hang;
        if (line.key == "die") return Act::Die;
    }
    return Act::Answer;
}

bool Reports::HasTopic(std::string_view topic) const {
    if (text::EqualsNoCase(topic, kQuery)) return true;
    return std::any_of(reports_.begin(), reports_.end(),
                       [&](const std::string& report) { return text::EqualsNoCase(report, topic); });
}

std::string Reports::ActiveReports() const {
    if (const Line* told = Find("", "active")) return told->value;
    std::string names;
    for (const std::string& report : reports_)
        names += report + ",";
    return names.empty() ? "None" : names;
}

bool Reports::HasForm(std::string_view report, std::string_view form) const {
    const Line* forms = Find(report, "forms");
    if (forms == nullptr || form.empty()) return false;
    const std::string list = "," + text::Upper(forms->value) + ",";
    return list.find("," + text::Upper(form) + ",") != std::string::npos;
}

Outcome Reports::Request(std::string_view topic, const std::string& item) {
    const bool isQuery = text::EqualsNoCase(topic, kQuery);
    const std::string_view report = isQuery ? "" : topic;
    if (const Act act = Misbehaviour(report, item); act != Act::Answer) return {act};
    if (isQuery) {
        if (text::EqualsNoCase(item, "ActiveReports")) return {Act::Answer, ActiveReports()};
        return {Act::Refuse};
    }
    if (text::EqualsNoCase(item, "UserID")) {
        const auto named = std::find_if(reports_.begin(), reports_.end(), [&](const std::string& name) {
            return text::EqualsNoCase(name, report);
        });
        if (named != reports_.end()) std::rotate(reports_.begin(), named, named + 1);
        return {Act::Answer, "1"};
    }
    if (text::EqualsNoCase(item, "ListForms")) {
        const Line* forms = Find(report, "forms");
        return forms == nullptr ? Outcome{Act::Refuse} : Outcome{Act::Answer, forms->value};
    }
    if (item.find('|') == std::string::npos) return {Act::Refuse};
    if (const Line* field = Find(report, item)) return {Act::Answer, field->value};
    return HasForm(report, item.substr(0, item.find('|'))) ? Outcome{} : Outcome{Act::Refuse};
}

Outcome Reports::Poke(std::string_view topic, const std::string& item, const std::string& text) {
    if (text::EqualsNoCase(topic, kQuery)) return {Act::Refuse};
    if (const Act act = Misbehaviour(topic, item); act != Act::Answer) return {act};
    if (item.find('|') == std::string::npos || !HasForm(topic, item.substr(0, item.find('|'))))
        return {Act::Refuse};
    Set(topic, item, text);
    changed_ = true;
    return {};
}

void Reports::Set(std::string_view report, const std::string& key, const std::string& value) {
    const std::string raw = key + std::string(kMark) + Escaped(value);
    if (const Line* line = Find(report, key)) {
        Line& known = lines_[static_cast<std::size_t>(line - lines_.data())];
        known.value = value;
        known.raw = known.key + std::string(kMark) + Escaped(value);
        return;
    }
    // Behind the last line of the report that says something.
    std::size_t place = 0;
    std::string name;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        if (!text::EqualsNoCase(lines_[i].report, report) || lines_[i].raw.empty()) continue;
        place = i + 1;
        name = lines_[i].report;
    }
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(place), {name, key, value, raw});
}

void Reports::Save() {
    if (!changed_) return;
    // Never half a file: a test reads it at any time.
    auto fresh = file_;
    fresh += ".new";
    {
        std::ofstream out(fresh, std::ios::binary | std::ios::trunc);
        for (const Line& line : lines_)
            out << line.raw << '\n';
        out.flush();
        if (!out)
            throw Fault(fault::kPathAccess, "The file of the stand-in cannot be written.",
                        {.file = file_.string()});
    }
    std::error_code fault;
    std::filesystem::rename(fresh, file_, fault);
    if (fault)
        throw Fault(fault::kPathAccess, "The file of the stand-in cannot be written.",
                    {.file = file_.string()});
    written_ = std::filesystem::last_write_time(file_, fault);
    changed_ = false;
}

void StandinCarrier::Open(const std::string& service, const std::string& topic) {
    isOpen_ = false;
    reports_.Read();
    if (!text::EqualsNoCase(service, "KRN") || !reports_.HasTopic(topic))
        throw Fault(fault::kNoAnswer, "Nobody answers to " + service + "|" + topic + ".");
    topic_ = topic;
    isOpen_ = true;
}

std::string StandinCarrier::Finish(const Outcome& outcome, int refusal) {
    switch (outcome.act) {
        case Act::Answer:
            break;
        case Act::Refuse:
            throw Fault(refusal, "The item was refused.");
        case Act::Busy:
            throw Fault(fault::kLinkFailed, "The appraisal program is busy.");
        case Act::Hang:
            misbehave_(Act::Hang);
            throw Fault(fault::kLinkTimeOut, "The appraisal program did not answer in time.");
        case Act::Die:
            misbehave_(Act::Die);
            isOpen_ = false;
            throw Fault(fault::kNoConversation, "The appraisal program has ended.");
    }
    return outcome.text;
}

std::string StandinCarrier::Request(const std::string& item) {
    if (!isOpen_) throw Fault(fault::kNoConversation, "No conversation is open.");
    return Finish(reports_.Request(topic_, item), fault::kLinkFailed);
}

void StandinCarrier::Poke(const std::string& item, const std::string& text) {
    if (!isOpen_) throw Fault(fault::kNoConversation, "No conversation is open.");
    const Outcome outcome = reports_.Poke(topic_, item, text);
    reports_.Save();
    Finish(outcome, fault::kInvalidProperty);
}

}  // namespace zenvora::standin
