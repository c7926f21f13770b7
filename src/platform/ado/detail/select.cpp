#include "platform/ado/detail/select.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string>

#include "platform/ado/detail/conversion.h"
#include "platform/ado/detail/text_match.h"
#include "platform/fault.h"

namespace zenvora::ado::detail {
namespace {

/// The WHERE of a statement, ready for a scan. Nothing equals Null, not even Null.
class Filter {
  public:
    Filter(const jet::TableDefinition& definition, const std::optional<SelectStatement::Condition>& condition,
           const shell::Clock& clock) {
        if (!condition) return;
        column_ = ColumnPosition(definition, condition->column);
        const jet::ColumnDefinition& column = definition.columns[*column_];
        value_ = condition->literal.kind == Literal::Kind::Null ? jet::Value{jet::Null{}}
                                                                : Wanted(condition->literal, column, clock);
        textual_ = column.type == jet::ColumnType::Text || column.type == jet::ColumnType::Memo;
    }

    [[nodiscard]] bool Takes(const jet::RowView& view) {
        if (!column_) return true;
        if (jet::IsNull(value_) || view.IsNull(*column_)) return false;
        if (!textual_) return view.Get(*column_) == value_;
        scratch_.clear();
        view.AppendText(*column_, scratch_);
        return SameText(scratch_, std::get<std::string>(value_));
    }

  private:
    /// A text too long for the column is in no record, which is no reason to refuse the question.
    static jet::Value Wanted(const Literal& literal, const jet::ColumnDefinition& column,
                             const shell::Clock& clock) {
        try {
            return ConvertLiteral(literal, column, clock);
        } catch (const Fault& fault) {
            if (fault.number != fault::kTooLong) throw;
            return jet::Null{};
        }
    }

    std::optional<std::size_t> column_;
    jet::Value value_;
    bool textual_ = false;
    std::string scratch_;
};

/// From row identities to record numbers, for records read in the order of the file.
class RecordFinder {
  public:
    explicit RecordFinder(const RecordRows& rows) : rows_(rows) {
        for (std::size_t record = 0; record < rows.Count(); ++record) {
            const jet::RowId id = rows.Id(record);
            if (record > 0 && !(previous_ < id)) ordered_ = false;
            previous_ = id;
            while (firstOfPage_.size() <= id.page && ordered_)
                firstOfPage_.push_back(static_cast<std::uint32_t>(record));
        }
        firstOfPage_.push_back(static_cast<std::uint32_t>(rows.Count()));
    }

    [[nodiscard]] bool Usable() const noexcept { return ordered_; }

    [[nodiscard]] std::optional<std::uint32_t> Find(jet::RowId id) const {
        if (std::size_t{id.page} + 1 >= firstOfPage_.size()) return std::nullopt;
        std::uint32_t first = firstOfPage_[id.page];
        std::uint32_t last = firstOfPage_[id.page + 1];
        while (first < last) {
            const std::uint32_t middle = first + (last - first) / 2;
            const jet::RowId at = rows_.Id(middle);
            if (at == id) return middle;
            if (at < id) {
                first = middle + 1;
            } else {
                last = middle;
            }
        }
        return std::nullopt;
    }

  private:
    const RecordRows& rows_;
    jet::RowId previous_;
    bool ordered_ = true;
    std::vector<std::uint32_t> firstOfPage_;
};

std::optional<std::size_t> IndexOn(const jet::TableDefinition& definition, std::size_t column) {
    for (std::size_t i = 0; i < definition.indexes.size(); ++i) {
        const jet::IndexDefinition& index = definition.indexes[i];
        if (index.columns.size() == 1 && index.columns.front().ascending && !index.ignoreNulls &&
            index.columns.front().column == definition.columns[column].number) {
            return i;
        }
    }
    return std::nullopt;
}

/// The records in the order of an index, or nothing when the index does not name each of them exactly once.
std::optional<std::vector<std::uint32_t>> OrderByIndex(const jet::Table& table, std::size_t index,
                                                       const RecordRows& rows) {
    const RecordFinder finder(rows);
    if (!finder.Usable()) return std::nullopt;
    std::vector<std::uint32_t> order;
    order.reserve(rows.Count());
    std::vector<bool> seen(rows.Count());
    try {
        table.ScanIndex(index, [&](jet::RowId id) {
            // A WHERE may have left records out.
            const std::optional<std::uint32_t> record = finder.Find(id);
            if (record && !seen[*record]) {
                seen[*record] = true;
                order.push_back(*record);
            }
            return true;
        });
    } catch (const Fault& fault) {
        if (fault.number != fault::kUnsupported) throw;
        return std::nullopt;  // a sort order of another language: sorted here instead
    }
    return order.size() == rows.Count() ? std::optional{std::move(order)} : std::nullopt;
}

std::vector<std::uint32_t> OrderByValue(const RecordRows& rows, std::size_t field) {
    const Cell& cell = rows.Cells()[field];
    const auto compare = [&](std::uint32_t a, std::uint32_t b) {
        const std::byte* const left = rows.Row(a);
        const std::byte* const right = rows.Row(b);
        if (rows.IsNull(left, field) || rows.IsNull(right, field)) {
            return rows.IsNull(left, field) && !rows.IsNull(right, field);
        }
        if (cell.kind == CellKind::Text)
            return jet::CompareGeneral(rows.Text(left, cell), rows.Text(right, cell)) < 0;
        if (cell.kind == CellKind::Amount)
            return RecordRows::Amount(left, cell) < RecordRows::Amount(right, cell);
        // True is -1 and comes before False, as in the key of a Boolean column.
        return RecordRows::Number(left, cell) < RecordRows::Number(right, cell);
    };
    std::vector<std::uint32_t> order(rows.Count());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), compare);
    return order;
}

void Sort(RecordRows& rows, const jet::Table& table, std::size_t field, bool descending) {
    const std::size_t column = rows.Cells()[field].column;
    std::optional<std::vector<std::uint32_t>> order;
    if (const auto index = IndexOn(table.Definition(), column)) order = OrderByIndex(table, *index, rows);
    if (!order) order = OrderByValue(rows, field);
    if (descending) std::reverse(order->begin(), order->end());
    rows.Reorder(*order);
}

}  // namespace

std::size_t ColumnPosition(const jet::TableDefinition& definition, std::string_view name) {
    if (const auto position = definition.FindColumn(name)) return *position;
    Place place;
    place.column = name;
    throw Fault{fault::kItemNotFound,
                "The table " + definition.name + " has no column " + std::string(name) + ".", place};
}

Selection ReadSelection(jet::Database& database, const SelectStatement& statement,
                        const shell::Clock& clock) {
    jet::Table& table = database.OpenTable(statement.table);
    const jet::TableDefinition& definition = table.Definition();
    std::vector<std::size_t> columns;
    for (const std::string& name : statement.columns)
        columns.push_back(ColumnPosition(definition, name));
    if (columns.empty()) {
        columns.resize(definition.columns.size());
        std::iota(columns.begin(), columns.end(), std::size_t{0});
    }
    const std::size_t fieldCount = columns.size();
    std::size_t sortField = 0;
    if (statement.orderBy) {
        const std::size_t column = ColumnPosition(definition, statement.orderBy->column);
        sortField =
            static_cast<std::size_t>(std::find(columns.begin(), columns.end(), column) - columns.begin());
        if (sortField == fieldCount) columns.push_back(column);
    }
    Filter filter(definition, statement.where, clock);
    Selection selection{&table, fieldCount, RecordRows(definition, columns)};
    if (statement.orderBy && selection.rows.Cells()[sortField].kind == CellKind::InTable) {
        throw Fault{fault::kUnsupported, "The store does not sort by the column " +
                                             statement.orderBy->column + ", because of its type."};
    }
    table.Scan([&](const jet::RowView& view) {
        if (filter.Takes(view)) selection.rows.Append(view);
        return true;
    });
    if (statement.orderBy) Sort(selection.rows, table, sortField, statement.orderBy->descending);
    return selection;
}

}  // namespace zenvora::ado::detail
