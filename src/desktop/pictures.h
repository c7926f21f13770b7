#pragma once

#include <QIcon>
#include <string>

/// The program's own pictures, kept as drawings that are crisp at any size.
namespace zenvora::desktop {

/// The picture of that name among those in icons/. Lines that are drawn in the colour of text follow the
/// theme. An unknown name gives a null icon.
[[nodiscard]] QIcon Picture(const std::string& name);

/// Size of a picture as it was drawn; empty for an unknown name.
[[nodiscard]] QSize DrawnSize(const std::string& name);

/// What a picture tells someone who does not see it.
[[nodiscard]] QString PictureMeaning(const std::string& name);

}  // namespace zenvora::desktop
