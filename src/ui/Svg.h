#pragma once
#include <string>

#include "ui/Picture.h"

namespace parlowen {

/// The picture as an SVG document in UTF-8, white background, one element a mark and one `<text>` a string.
/// Its view begins at the corner of the margins, so that the picture's own 0, 0 stays 0, 0; `pixelsPerInch` makes it so
/// large on paper, 0 leaves it in pixels. Images are embedded as PNG data, continuous ones with as many pixels as are
/// drawn, or where they have more with those, up to 25 for 8.
std::string ToSvg(const Picture& picture, double pixelsPerInch = 0);

}  // namespace parlowen
