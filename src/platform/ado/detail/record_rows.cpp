#include "platform/ado/detail/record_rows.h"

#include <limits>
#include <string>

#include "platform/ado/detail/conversion.h"
#include "platform/fault.h"

namespace zenvora::ado::detail {
namespace {

CellKind KindOf(jet::ColumnType type) {
    switch (type) {
        case jet::ColumnType::Byte:
        case jet::ColumnType::Integer:
        case jet::ColumnType::Long:
        case jet::ColumnType::Single:
        case jet::ColumnType::Double:
        case jet::ColumnType::DateTime:
            return CellKind::Number;
        case jet::ColumnType::Boolean:
            return CellKind::Boolean;
        case jet::ColumnType::Currency:
            return CellKind::Amount;
        case jet::ColumnType::Text:
            return CellKind::Text;
        default:
            return CellKind::InTable;
    }
}

constexpr std::size_t CellBytes(CellKind kind) {
    return kind == CellKind::InTable ? 0 : kind == CellKind::Text ? 4 : 8;
}

}  // namespace

TextStore::TextStore() {
    static_cast<void>(Add({}));
}

std::uint32_t TextStore::Add(std::string_view text) {
    if (text.empty() && !blocks_.empty()) return 0;
    const std::size_t needed = sizeof(std::uint16_t) + text.size();
    if (needed > kBlockSize) {
        throw Fault{fault::kDamaged, "The Databook holds a text of " + std::to_string(text.size()) +
                                         " bytes, which is longer than any text column."};
    }
    if (blocks_.empty() || blocks_.back().size() + needed > kBlockSize) {
        if (blocks_.size() == std::numeric_limits<std::uint32_t>::max() >> kBlockBits) {
            throw Fault{fault::kOutOfMemory,
                        "The table has more text than can be worked on at once (4 GiB)."};
        }
        blocks_.emplace_back();
        // The first block grows, so that a small table costs little; later ones are filled to the end anyway.
        if (blocks_.size() > 1) blocks_.back().reserve(kBlockSize);
    }
    std::vector<char>& block = blocks_.back();
    const auto place = static_cast<std::uint32_t>((blocks_.size() - 1) << kBlockBits | block.size());
    const auto length = static_cast<std::uint16_t>(text.size());
    block.resize(block.size() + sizeof length);
    std::memcpy(block.data() + block.size() - sizeof length, &length, sizeof length);
    block.insert(block.end(), text.begin(), text.end());
    return place;
}

RecordRows::RecordRows(const jet::TableDefinition& definition, std::span<const std::size_t> columns)
    : lastText_(columns.size(), 0) {
    for (const std::size_t column : columns)
        cells_.push_back(Cell{KindOf(definition.columns[column].type), 0, column});
    // Wide cells first, so that all of them are aligned.
    for (const std::size_t width : {std::size_t{8}, std::size_t{4}}) {
        for (Cell& cell : cells_) {
            if (CellBytes(cell.kind) != width) continue;
            cell.offset = static_cast<std::uint32_t>(rowBytes_);
            rowBytes_ += width;
        }
    }
    identityAt_ = rowBytes_;
    nullsAt_ = identityAt_ + sizeof(std::uint32_t) + 1;
    rowBytes_ = (nullsAt_ + (columns.size() + 7) / 8 + 7) / 8 * 8;
}

jet::RowId RecordRows::Id(std::size_t record) const noexcept {
    const std::byte* const row = Row(record);
    jet::RowId id;
    std::memcpy(&id.page, row + identityAt_, sizeof id.page);
    id.slot = std::to_integer<std::uint8_t>(row[identityAt_ + sizeof id.page]);
    return id;
}

std::byte* RecordRows::NewRow(jet::RowId id) {
    if (count_ == std::numeric_limits<std::uint32_t>::max()) {
        throw Fault{fault::kOutOfMemory, "The table has more records than can be worked on at once."};
    }
    if (count_ % kBlockRows == 0) {
        blocks_.emplace_back();
        if (blocks_.size() > 1) blocks_.back().reserve(kBlockRows * rowBytes_);
    }
    std::vector<std::byte>& block = blocks_.back();
    block.resize(block.size() + rowBytes_);
    std::byte* const row = block.data() + block.size() - rowBytes_;
    std::memcpy(row + identityAt_, &id.page, sizeof id.page);
    row[identityAt_ + sizeof id.page] = std::byte{id.slot};
    ++count_;
    return row;
}

void RecordRows::SetNull(std::byte* row, std::size_t field, bool null) noexcept {
    std::byte& bits = row[nullsAt_ + field / 8];
    const auto bit = static_cast<std::byte>(1U << (field % 8));
    bits = null ? bits | bit : bits & ~bit;
}

void RecordRows::SetText(std::byte* row, std::size_t field, std::string_view text) {
    std::uint32_t& last = lastText_[field];
    if (texts_.At(last) != text) last = texts_.Add(text);
    std::memcpy(row + cells_[field].offset, &last, sizeof last);
}

void RecordRows::Append(const jet::RowView& view) {
    std::byte* const row = NewRow(view.Id());
    for (std::size_t field = 0; field < cells_.size(); ++field) {
        const Cell& cell = cells_[field];
        if (view.IsNull(cell.column)) {
            SetNull(row, field, true);
            continue;
        }
        switch (cell.kind) {
            case CellKind::Number: {
                const double number = view.Number(cell.column);
                std::memcpy(row + cell.offset, &number, sizeof number);
                break;
            }
            case CellKind::Text:
                scratch_.clear();
                view.AppendText(cell.column, scratch_);
                SetText(row, field, scratch_);
                break;
            case CellKind::Boolean:
            case CellKind::Amount:
                Set(count_ - 1, field, view.Get(cell.column));
                break;
            case CellKind::InTable:
                break;
        }
    }
}

void RecordRows::Append(jet::RowId id, std::span<const jet::Value> values) {
    NewRow(id);
    for (std::size_t field = 0; field < cells_.size(); ++field)
        Set(count_ - 1, field, values[cells_[field].column]);
}

void RecordRows::Set(std::size_t record, std::size_t field, const jet::Value& value) {
    std::byte* const row = MutableRow(record);
    const Cell& cell = cells_[field];
    SetNull(row, field, jet::IsNull(value));
    switch (cell.kind) {
        case CellKind::Number:
        case CellKind::Boolean: {
            const double number = NumberOf(value);
            std::memcpy(row + cell.offset, &number, sizeof number);
            break;
        }
        case CellKind::Amount: {
            const auto* const amount = std::get_if<jet::Currency>(&value);
            const std::int64_t parts = amount != nullptr ? amount->tenThousandths : 0;
            std::memcpy(row + cell.offset, &parts, sizeof parts);
            break;
        }
        case CellKind::Text: {
            const auto* const text = std::get_if<std::string>(&value);
            SetText(row, field, text != nullptr ? std::string_view{*text} : std::string_view{});
            break;
        }
        case CellKind::InTable:
            break;
    }
}

void RecordRows::Reorder(std::span<const std::uint32_t> order) {
    // In place, along the cycles of the permutation: a second copy of all rows would be the program's peak of
    // memory.
    std::vector<bool> placed(order.size());
    std::vector<std::byte> held(rowBytes_);
    for (std::size_t start = 0; start < order.size(); ++start) {
        if (placed[start] || order[start] == start) continue;
        std::memcpy(held.data(), Row(start), rowBytes_);
        std::size_t to = start;
        for (std::size_t from = order[to]; from != start; to = from, from = order[to]) {
            std::memcpy(MutableRow(to), Row(from), rowBytes_);
            placed[to] = true;
        }
        std::memcpy(MutableRow(to), held.data(), rowBytes_);
        placed[to] = true;
    }
}

}  // namespace zenvora::ado::detail
