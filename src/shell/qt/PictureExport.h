#pragma once
#include <functional>
#include <string>

#include "ui/Picture.h"

class QMenu;
class QWidget;

namespace parlowen {

class ActionGate;
class Window;

enum class PictureFormat { Svg, Pdf, Png };

/// Writes the picture to a file. SVG and PDF keep lines and text; a PNG has 300 dots an inch, 96 picture
/// pixels being an inch. 0, or -1 with an old file of that name intact.
int SavePicture(const Picture& picture, const std::string& path, PictureFormat format);

/// Puts the picture on the clipboard as a bitmap, `scale` image pixels a picture pixel.
void CopyPicture(const Picture& picture, double scale);

/// Adds "copy" and "save as" entries; the picture is made when one of them is chosen. `level` as in
/// ActionGate.
void AddPictureActions(QMenu& menu, Window& window, ActionGate& gate, int level,
                       std::function<Picture()> picture);

}  // namespace parlowen
