#pragma once
#include <string>
#include <vector>

#include "prosody/ProsodyDesk.h"
#include "prosody/ToneState.h"
#include "ui/ToolWindow.h"

namespace parlowen {

/// The window "degree": tones over five degrees, of one or several sounds.
class DegreeWindow : public ToolWindow {
 public:
  DegreeWindow(const ProsodyDesk& desk, DegreeState& degree)
      : width_(desk.document.paneWidth), degree_(degree) {}

  std::string Name() const override { return "degree"; }
  std::string Title() const override;
  std::vector<ToolControl> Controls() const override;
  Picture Draw(int width, int height) const override;
  void Press(Window& window, const ToolControl& control) override;
  std::string Hover(Point at) const override;
  std::string Text() const override;
  void Closed(Window&) override { degree_ = {}; }

 private:
  mutable int width_, height_ = 640;  ///< as drawn last
  DegreeState& degree_;
};

}  // namespace parlowen
