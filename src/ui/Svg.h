#pragma once
#include <string>

#include "ui/Picture.h"

namespace parlowen {

/// The picture as an SVG document in UTF-8, white background, one element a mark and one `<text>` a string.
/// Images are embedded as PNG data.
std::string ToSvg(const Picture& picture);

}  // namespace parlowen
