#pragma once

#include <QString>
#include <string>
#include <string_view>

/// Texts of the logic are UTF-8, those of the toolkit are not.
namespace zenvora::desktop {

[[nodiscard]] inline QString Shown(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline std::string Stored(const QString& text) {
    return text.toStdString();
}

}  // namespace zenvora::desktop
