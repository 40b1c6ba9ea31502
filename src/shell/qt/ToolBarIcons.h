#pragma once
#include <QIcon>

class QPainter;

namespace parlowen {

enum class ToolIcon { Open, Save, Record, Play, Stop, ZoomOut, ZoomIn, Pitch, WideBand, NarrowBand };

/// An icon of the tool bar in the given colour of ink, 20 pixels wide and high.
void PaintToolIcon(QPainter& painter, ToolIcon icon, const QColor& ink);
QIcon MakeToolIcon(ToolIcon icon, const QColor& ink);

/// That of the program, a contour over a wave, 64 pixels wide and high.
void PaintApplicationIcon(QPainter& painter);
QIcon MakeApplicationIcon();

}  // namespace parlowen
