#pragma once
class QWidget;

namespace parlowen {

/// Moves a window beside another one, right, left, below or above of it, where the screen has room for all of it;
/// else into the corner of the screen where it hides least of the other.
void PlaceBeside(QWidget& window, const QWidget& other);

}  // namespace parlowen
