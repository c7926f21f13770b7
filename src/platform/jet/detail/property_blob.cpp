#include "platform/jet/detail/property_blob.h"

#include "platform/jet/detail/bytes.h"
#include "platform/jet/detail/text_codec.h"
#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kSignatureSize = 4;
constexpr char kSignature[kSignatureSize] = {'M', 'R', '2', '\0'};
constexpr char kSignature97[kSignatureSize] = {'K', 'K', 'D', '\0'};
constexpr std::uint16_t kNames = 0x80;
constexpr std::uint16_t kColumnProperties = 1;
constexpr std::uint8_t kByDefinition = 1;  // flag of a property that belongs to the engine
constexpr std::uint8_t kBooleanType = 1;
constexpr std::uint8_t kTextType = 10;
constexpr std::uint8_t kMemoType = 12;

std::vector<std::byte> Utf16(std::string_view text) {
    std::vector<std::byte> bytes;
    EncodeText(text, false, bytes);
    return bytes;
}
void Append16(std::vector<std::byte>& out, std::size_t value) {
    std::byte bytes[2];
    PutU16(bytes, value);
    out.insert(out.end(), bytes, bytes + 2);
}
void Append32(std::vector<std::byte>& out, std::size_t value) {
    std::byte bytes[4];
    PutU32(bytes, value);
    out.insert(out.end(), bytes, bytes + 4);
}
void AppendBytes(std::vector<std::byte>& out, const std::vector<std::byte>& bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}
void AppendName(std::vector<std::byte>& out, std::string_view name) {
    const std::vector<std::byte> text = Utf16(name);
    Append16(out, text.size());
    AppendBytes(out, text);
}
}  // namespace

PropertyBlob::PropertyBlob(std::span<const std::byte> bytes, std::uint16_t codePage)
    : original_(bytes.begin(), bytes.end()), codePage_(codePage) {
    if (bytes.empty()) return;
    broken_ = true;  // until it has been read to its end
    const char* const signature = codePage == 0 ? kSignature : kSignature97;
    if (bytes.size() < kSignatureSize || std::memcmp(bytes.data(), signature, kSignatureSize) != 0) return;
    for (std::size_t at = kSignatureSize; at < bytes.size();) {
        if (bytes.size() - at < 6) return;
        const std::size_t size = U32(&bytes[at]);
        if (size < 6 || size > bytes.size() - at) return;
        Chunk chunk;
        chunk.type = U16(&bytes[at + 4]);
        const auto content = bytes.subspan(at + 6, size - 6);
        chunk.raw.assign(content.begin(), content.end());
        if (chunk.type == kNames) {
            for (std::size_t p = 0; p < content.size();) {
                if (content.size() - p < 2) return;
                const std::size_t length = U16(&content[p]);
                if (length > content.size() - p - 2) return;
                names_.push_back(Text(content.subspan(p + 2, length)));
                p += 2 + length;
            }
        } else {
            if (content.size() < 6) return;
            const std::size_t head = U32(content.data());
            const std::size_t nameSize = U16(&content[4]);
            if (head < 6 || head > content.size() || nameSize > head - 6) return;
            chunk.owner = Text(content.subspan(6, nameSize));
            for (std::size_t p = head; p < content.size();) {
                if (content.size() - p < 8) return;
                const std::size_t length = U16(&content[p]);
                const std::size_t valueSize = U16(&content[p + 6]);
                if (length < 8 || length > content.size() - p || valueSize > length - 8) return;
                Property property;
                property.flag = U8(&content[p + 2]);
                property.type = U8(&content[p + 3]);
                property.name = U16(&content[p + 4]);
                const auto value = content.subspan(p + 8, valueSize);
                property.value.assign(value.begin(), value.end());
                chunk.properties.push_back(std::move(property));
                p += length;
            }
        }
        chunks_.push_back(std::move(chunk));
        at += size;
    }
    broken_ = false;
}

std::string PropertyBlob::Text(std::span<const std::byte> bytes) const {
    std::string text;
    DecodeText(bytes, codePage_, text);
    return text;
}

PropertyBlob PropertyBlob::InUtf16() const {
    if (codePage_ == 0 || broken_) return *this;
    PropertyBlob wide = *this;
    wide.codePage_ = 0;
    wide.original_.clear();
    for (Chunk& chunk : wide.chunks_) {
        if (chunk.type == kNames) {
            chunk.raw.clear();
            for (const std::string& name : names_)
                AppendName(chunk.raw, name);
            continue;
        }
        chunk.changed = true;
        for (Property& property : chunk.properties) {
            if (property.type == kTextType || property.type == kMemoType)
                property.value = Utf16(Text(property.value));
        }
    }
    return wide;
}

std::optional<std::uint16_t> PropertyBlob::NamePosition(std::string_view name) const {
    for (std::size_t i = 0; i < names_.size(); ++i) {
        if (text::EqualsNoCase(names_[i], name)) return static_cast<std::uint16_t>(i);
    }
    return std::nullopt;
}

ColumnProperties PropertyBlob::Of(std::string_view column) const {
    ColumnProperties result;
    if (broken_) return result;
    for (const Chunk& chunk : chunks_) {
        if (chunk.type != kColumnProperties || !text::EqualsNoCase(chunk.owner, column)) continue;
        for (const Property& property : chunk.properties) {
            if (property.name >= names_.size()) continue;
            const std::string& name = names_[property.name];
            const bool on = !property.value.empty() && property.value[0] != std::byte{0};
            if (name == "DefaultValue") result.defaultValue = Text(property.value);
            if (name == "Required") result.required = on;
            if (name == "AllowZeroLength") result.allowZeroLength = on;
        }
    }
    return result;
}

void PropertyBlob::Set(std::string_view column, std::string_view name, std::uint8_t type,
                       std::vector<std::byte> value) {
    if (codePage_ != 0) *this = InUtf16();
    std::optional<std::uint16_t> position = NamePosition(name);
    if (!position) {
        // Behind the others: the places of the names that are there must not move.
        position = static_cast<std::uint16_t>(names_.size());
        names_.emplace_back(name);
        std::size_t names = 0;
        while (names < chunks_.size() && chunks_[names].type != kNames)
            ++names;
        if (names == chunks_.size()) {
            chunks_.insert(chunks_.begin(), Chunk{kNames, {}, {}, {}, false});
            names = 0;
        }
        AppendName(chunks_[names].raw, name);
    }
    Chunk* target = nullptr;
    for (Chunk& chunk : chunks_) {
        if (chunk.type == kColumnProperties && text::EqualsNoCase(chunk.owner, column)) target = &chunk;
    }
    if (target == nullptr) {
        target = &chunks_.emplace_back();
        target->type = kColumnProperties;
        target->owner = column;
    }
    target->changed = true;
    for (Property& property : target->properties) {
        if (property.name == *position) {
            property.type = type;
            property.value = std::move(value);
            return;
        }
    }
    target->properties.push_back({*position, kByDefinition, type, std::move(value)});
}

void PropertyBlob::SetDefault(std::string_view column, std::string_view expression) {
    Set(column, "DefaultValue", kMemoType, Utf16(expression));
}
void PropertyBlob::SetRequired(std::string_view column, bool required) {
    Set(column, "Required", kBooleanType, {required ? std::byte{1} : std::byte{0}});
}
void PropertyBlob::SetAllowZeroLength(std::string_view column, bool allowed) {
    Set(column, "AllowZeroLength", kBooleanType, {allowed ? std::byte{1} : std::byte{0}});
}

std::vector<std::byte> PropertyBlob::Bytes() const {
    if (broken_ || codePage_ != 0) return original_;
    std::vector<std::byte> out;
    for (char c : kSignature)
        out.push_back(static_cast<std::byte>(c));
    for (const Chunk& chunk : chunks_) {
        std::vector<std::byte> content = chunk.raw;
        if (chunk.changed) {
            const std::vector<std::byte> owner = Utf16(chunk.owner);
            content.clear();
            Append32(content, 6 + owner.size());
            Append16(content, owner.size());
            AppendBytes(content, owner);
            for (const Property& property : chunk.properties) {
                Append16(content, 8 + property.value.size());
                content.push_back(static_cast<std::byte>(property.flag));
                content.push_back(static_cast<std::byte>(property.type));
                Append16(content, property.name);
                Append16(content, property.value.size());
                AppendBytes(content, property.value);
            }
        }
        Append32(out, 6 + content.size());
        Append16(out, chunk.type);
        AppendBytes(out, content);
    }
    return out;
}

}  // namespace zenvora::jet::detail
