#pragma once
#include <QIcon>

namespace parlowen {

enum class ToolIcon { Open, Save, Record, Play, Stop, ZoomOut, ZoomIn, Pitch, WideBand, NarrowBand };

/// A drawn icon of the tool bar in the given colour of ink.
QIcon MakeToolIcon(ToolIcon icon, const QColor& ink);

/// Of the program: a contour over a wave.
QIcon MakeApplicationIcon();

}  // namespace parlowen
