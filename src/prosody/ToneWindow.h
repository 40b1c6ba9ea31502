#pragma once
#include <string>
#include <vector>

#include "prosody/ProsodyDesk.h"
#include "prosody/ToneState.h"
#include "ui/ToolWindow.h"

namespace parlowen {

/// The window "tones": the pattern of a run or one of its groups. A left click picks what is nearest; Left and
/// Right go through the items of a group, Up and Down through the groups.
class ToneWindow : public ToolWindow {
 public:
  ToneWindow(const ProsodyDesk& desk, ToneState& tones)
      : desk_(desk), tones_(tones), width_(desk.document.paneWidth) {}

  std::string Name() const override { return "tones"; }
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
  void StepItem(Window& window, int step);
  void StepGroup(Window& window, int step);

  ProsodyDesk desk_;
  ToneState& tones_;
  mutable int width_, height_ = 640;  ///< as drawn last: what clicks count with
};

}  // namespace parlowen
