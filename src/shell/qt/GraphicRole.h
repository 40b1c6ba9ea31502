#pragma once

class QWidget;

namespace parlowen {

/// Tells assistive programs that the widget is a picture, with its accessible name as the description, and no
/// container of other things.
void MakeGraphic(QWidget& widget);

}  // namespace parlowen
