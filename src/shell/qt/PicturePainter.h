#pragma once
#include <QImage>

#include "ui/Picture.h"

class QPainter;

namespace parlowen {

/// Draws the picture with its 0, 0 at the painter's origin, clipped to its size and margins. One picture
/// pixel is one logical pixel; a scaled painter or a device of higher resolution only sharpens.
void PaintPicture(QPainter& painter, const Picture& picture);

/// The picture with its margins on white paper, `scale` image pixels a picture pixel.
QImage RenderPicture(const Picture& picture, double scale);

}  // namespace parlowen
