#include "cli/figures_output.h"

#include <algorithm>
#include <array>

#include "analysis/period.h"
#include "cli/table.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::cli {

namespace {

using analysis::frmDataViewer;
using analysis::kListGroupCaptions;
using analysis::kPeriodColumns;
using analysis::kResultRows;
using analysis::Results1004MC;

constexpr int kPeriods = static_cast<int>(kPeriodColumns.size());
constexpr std::size_t kCaptionWidth = 44;  // the longest caption of the form
constexpr std::size_t kPeriodWidth = 19;

/// The five figures of a list, top to bottom: caption, name in JSON, cells.
struct Statistic {
    std::string_view caption;
    std::string_view key;
    frmDataViewer::Cells frmDataViewer::*cells;
};
constexpr std::array<Statistic, 5> kStatistics{{
    {"Average", "average", &frmDataViewer::txtAverage},
    {"Median", "median", &frmDataViewer::txtMedian},
    {"Total", "total", &frmDataViewer::txtTotal},
    {"Lowest", "lowest", &frmDataViewer::txtLowest},
    {"Highest", "highest", &frmDataViewer::txtHighest},
}};

/// As it stands on the screen: a doubled "&" is one.
std::string Caption(std::string_view text) {
    return text::ReplaceAll(text, "&&", "&");
}

std::string PeriodLine(std::string_view caption, const std::array<std::string, kPeriods>& cells) {
    std::string line = Pad(caption, kCaptionWidth);
    for (const auto& cell : cells)
        line += Pad(cell, kPeriodWidth, true);
    return line + "\n";
}

std::array<std::string, kPeriods> PeriodNames() {
    std::array<std::string, kPeriods> names;
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = kPeriodColumns[i].name;
    return names;
}

template <class Cells>
std::array<std::string, kPeriods> Texts(const Cells& cells, int first = 0) {
    std::array<std::string, kPeriods> texts;
    for (int i = 0; i < kPeriods; ++i)
        texts[static_cast<std::size_t>(i)] = cells[first + i].Text();
    return texts;
}

std::string GroupCaption(int group) {
    return std::string(kListGroupCaptions[static_cast<std::size_t>(group)]);
}

/// The columns of the three periods side by side, an entry a line.
void ForEachEntryLine(const frmDataViewer& viewer, int group,
                      const std::function<void(const std::array<std::string, kPeriods>&)>& visit) {
    int longest = 0;
    for (int i = 0; i < kPeriods; ++i)
        longest = std::max(longest, viewer.lstData[group * kPeriods + i].ListCount());
    for (int entry = 0; entry < longest; ++entry) {
        std::array<std::string, kPeriods> cells;
        for (int i = 0; i < kPeriods; ++i) {
            const auto& list = viewer.lstData[group * kPeriods + i];
            if (entry < list.ListCount()) cells[static_cast<std::size_t>(i)] = list.List(entry);
        }
        visit(cells);
    }
}

constexpr int kGroups = static_cast<int>(kListGroupCaptions.size());

}  // namespace

void WriteFiguresText(std::ostream& out, const Results1004MC& results) {
    std::string_view frame;
    for (const auto& row : kResultRows) {
        if (row.frame != frame) {
            frame = row.frame;
            out << '\n' << PeriodLine(Caption(frame), PeriodNames());
            out << std::string(kCaptionWidth + kPeriods * kPeriodWidth, '-') << '\n';
        }
        out << PeriodLine(Caption(row.caption), Texts(results.Row(row.name)));
    }
}

void WriteListsText(std::ostream& out, const frmDataViewer& viewer) {
    for (int group = 0; group < kGroups; ++group) {
        out << '\n' << PeriodLine(GroupCaption(group), PeriodNames());
        out << std::string(kCaptionWidth + kPeriods * kPeriodWidth, '-') << '\n';
        ForEachEntryLine(viewer, group, [&](const auto& cells) { out << PeriodLine("", cells); });
        for (const auto& statistic : kStatistics) {
            out << PeriodLine(statistic.caption, Texts(viewer.*statistic.cells, group * kPeriods));
        }
    }
}

Json FiguresJson(const Results1004MC& results) {
    Json json = Json::object();
    for (const auto& row : kResultRows)
        json[std::string(row.name)] = Texts(results.Row(row.name));
    return json;
}

Json ListsJson(const frmDataViewer& viewer) {
    Json lists = Json::array();
    for (int index = 0; index < viewer.lstData.Count(); ++index) {
        Json list = Json::object();
        list["index"] = index;
        list["caption"] = GroupCaption(index / kPeriods);
        list["period"] = kPeriodColumns[static_cast<std::size_t>(index % kPeriods)].name;
        Json entries = Json::array();
        for (int i = 0; i < viewer.lstData[index].ListCount(); ++i)
            entries.push_back(viewer.lstData[index].List(i));
        list["entries"] = std::move(entries);
        for (const auto& statistic : kStatistics) {
            list[std::string(statistic.key)] = (viewer.*statistic.cells)[index].Text();
        }
        lists.push_back(std::move(list));
    }
    return lists;
}

void WriteFiguresCsv(std::ostream& out, const Results1004MC& results, const frmDataViewer* viewer) {
    std::vector<Column> columns{{"block"}, {"cell"}, {"caption"}};
    for (const auto& name : PeriodNames())
        columns.push_back({name});
    const RowSource rows = [&](const auto& visit) {
        const auto line = [&](std::string block, std::string cell, std::string caption, const auto& cells) {
            std::vector<std::string> row{std::move(block), std::move(cell), std::move(caption)};
            row.insert(row.end(), cells.begin(), cells.end());
            visit(row);
        };
        for (const auto& row : kResultRows) {
            line(Caption(row.frame), std::string(row.name), Caption(row.caption),
                 Texts(results.Row(row.name)));
        }
        if (viewer == nullptr) return;
        for (int group = 0; group < kGroups; ++group) {
            ForEachEntryLine(*viewer, group, [&](const auto& cells) {
                line(GroupCaption(group), "lstData", "Entry", cells);
            });
            for (const auto& statistic : kStatistics) {
                const auto& cells = viewer->*statistic.cells;
                line(GroupCaption(group), cells.Name(), std::string(statistic.caption),
                     Texts(cells, group * kPeriods));
            }
        }
    };
    WriteCsv(out, columns, rows);
}

}  // namespace zenvora::cli
