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

inline constexpr int kPrintDotsPerInch = 300;
inline constexpr double kPixelsPerInch = 96.0;  ///< picture pixels, where nothing else is said

/// Writes the picture to a file. SVG and PDF keep lines and text; a PNG has 300 dots an inch. 0, or -1 with an old
/// file of that name intact.
int SavePicture(const Picture& picture, const std::string& path, PictureFormat format,
                double pixelsPerInch = kPixelsPerInch);

/// Asks for a file name and writes the picture.
void AskAndSavePicture(Window& window, const Picture& picture, PictureFormat format,
                       double pixelsPerInch = kPixelsPerInch);

/// Puts the picture on the clipboard as a bitmap, `scale` image pixels a picture pixel.
void CopyPicture(const Picture& picture, double scale);

/// Adds "copy" and "save as" entries; the picture is made when one of them is chosen. `level` as in
/// ActionGate.
void AddPictureActions(QMenu& menu, Window& window, ActionGate& gate, int level,
                       std::function<Picture()> picture);

}  // namespace parlowen
