#pragma once
#include <string>
#include <vector>

#include "synthesis/SynthesisCommands.h"
#include "synthesis/SynthesisPicture.h"
#include "synthesis/TargetDrawing.h"
#include "ui/ToolWindow.h"

namespace parlowen {

/// The window in which a melody is drawn: left clicks from left to right, a right click ends the setting.
/// Shown modally over a job whose marks are found.
class SynthesisWindow : public ToolWindow {
 public:
  explicit SynthesisWindow(const SynthesisDesk& desk);

  std::string Name() const override { return "resynthesis"; }
  std::string Title() const override;
  std::string Instructions() const override;
  std::vector<ToolControl> Controls() const override;
  Picture Draw(int width, int height) const override;
  /// The least share of it, 0.6, still has room for the waveform.
  Point PreferredSize() const override { return {900, 540}; }
  bool ShowsPlay() const override { return true; }
  void Click(Window& window, Point at, MouseButton button, bool shift) override;
  void Drag(Window& window, Point at) override;
  bool Key(Window& window, const std::string& key) override;
  void Press(Window& window, const ToolControl& control) override;
  void Scroll(Window& window, int steps) override;
  int WholeWidth(int width) const override;
  bool ScalesWithWindow() const override { return false; }
  std::optional<ToolScrollBar> ScrollBar() const override;
  void ScrollTo(Window& window, int position) override;
  void Resized(int width, int height) override;
  std::string Hover(Point at) const override;
  bool WantsToClose() const override { return closing_; }
  void Closed(Window& window) override;

 private:
  void Synthesize(Window& window);
  void PlayOriginal(Window& window);
  void TakeTarget(TargetCurve target);
  void ZoomTo(int zoom);
  int VisibleWidth() const;
  /// Columns that do not fit; none while no size is known.
  int LargestScroll() const;

  SynthesisDesk desk_;
  std::vector<float> present_;  ///< the contour of the selection's frames
  TargetDrawing drawing_;
  SynthesisView view_;
  int width_ = 0;  ///< of the last size that was told; 0: nothing scrolls
  bool closing_ = false;
};

}  // namespace parlowen
