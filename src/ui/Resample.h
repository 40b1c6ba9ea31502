#pragma once
#include "ui/Picture.h"

namespace parlowen {

/// The image with `columns`·`rows` pixels, in the same place. In each direction a pixel of a smaller image is the mean
/// of those that it covers, each weighted by how much of it; one of a larger image lies on the line between the two
/// neighbours nearest to its middle, at the edges it is the edge's. Grey values are rounded to the nearest. An image
/// without pixels, or asked for without any, comes back with none.
GreyImageMark Resampled(const GreyImageMark& image, int columns, int rows);

}  // namespace parlowen
