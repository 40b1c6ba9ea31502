#pragma once
#include <string>
#include <vector>

#include "prosody/IntonationState.h"
#include "prosody/ProsodyDesk.h"
#include "ui/ToolWindow.h"

namespace parlowen {

/// The window "intonation". A left click puts a boundary at the frame under it, a right click takes one within
/// 5 pixels away; Left and Right choose a unit.
class IntonationWindow : public ToolWindow {
 public:
  IntonationWindow(const ProsodyDesk& desk, IntonationState& state)
      : desk_(desk), state_(state), width_(desk.document.paneWidth) {}

  std::string Name() const override { return "intonation"; }
  std::string Title() const override;
  std::vector<ToolControl> Controls() const override;
  Picture Draw(int width, int height) const override;
  void Click(Window& window, Point at, MouseButton button, bool shift) override;
  bool Key(Window& window, const std::string& key) override;
  void Press(Window& window, const ToolControl& control) override;
  std::string Hover(Point at) const override;
  std::string Text() const override;
  std::string Instructions() const override;
  void Closed(Window& window) override;

 private:
  void MeasureAgain(Window& window);
  void Play(Window& window);

  ProsodyDesk desk_;
  IntonationState& state_;
  mutable int width_, height_ = 640;  ///< as drawn last: what clicks count with
};

}  // namespace parlowen
