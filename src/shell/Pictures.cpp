#include "shell/Pictures.h"

#include "shell/PictureEngine.h"

#include <algorithm>

namespace korvale {

QIcon pictureNamed(std::string_view name) {
    const std::span<const Picture> pictures = compiledPictures();
    const auto found =
        std::find_if(pictures.begin(), pictures.end(),
                     [name](const Picture& picture) { return picture.name == name; });
    // The icon owns its engine.
    return found == pictures.end() ? QIcon() : QIcon(new PictureEngine(*found));
}

} // namespace korvale
