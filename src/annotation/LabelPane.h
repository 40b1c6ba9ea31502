#pragma once
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "annotation/Annotations.h"
#include "annotation/LabelPicture.h"
#include "annotation/MarkerEditing.h"
#include "annotation/MarkerWindow.h"
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

// What clicks and keys do in the label pane of the main window. It works on the set of the marker window, with the
// same file, limits and messages.

inline constexpr UiText kLabelHint =
    "标注窗：双击改标注，Enter 在光标或选定段两端加标志，1–4 标志带，Delete 删，拖动移标志（Shift 到过零点），"
    "Tab 下一段并放音";

struct LabelDesk {
  Window& window;
  SoundDocument& document;
  CommandStates& states;
  MarkerState& markers;
  std::span<const Annotation> annotations;
  const PlayStretch& play;
  /// Brings a stretch into the view.
  std::function<void(int start, int end)> reveal;
  std::optional<int> cursor;  ///< of a running play
  int height = 0;             ///< of the pane
};

/// A left click takes the marker under it, or the stretch, which becomes the selection; in a band without markers
/// and among the annotations it sets the selection's start, as in the other panes, and so it does everywhere with
/// `shift`, at the next zero crossing. A right click moves the marker in hand there, with `shift` to the next zero
/// crossing; without one it sets the selection's end.
void LabelClick(const LabelDesk& desk, Point at, MouseButton button, bool shift);

/// A double click: takes what is there and asks for its label.
void EditLabelAt(const LabelDesk& desk, Point at);

/// "1".."4", Up and Down choose the band, Enter puts a marker at the cursor of a play, else where the stretch in
/// hand was clicked, else at both ends of the selection where none stands (the sound's own ends need none), else at
/// its start; F2 asks for the label of what is in hand, Delete removes it, the label before the
/// marker; Tab takes the next stretch and plays it; Z takes the last step back; Escape puts away what is in hand
/// while nothing plays.
/// False for other keys.
bool LabelKey(const LabelDesk& desk, const std::string& key);

/// The marker under a pixel, which a drag would move.
std::optional<int> LabelMarkerAt(const LabelDesk& desk, Point at);

/// The whole texts under a pixel, with their band and time; "" where there are none.
std::string LabelTip(const LabelDesk& desk, Point at);

}  // namespace parlowen
