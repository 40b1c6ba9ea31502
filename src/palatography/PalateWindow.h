#pragma once
#include "palatography/PalateCommands.h"
#include "palatography/PalatePicture.h"

namespace parlowen {

/// The window "palate" over the frames of the selection or of the whole sound: waveform, wide-band picture, curves of
/// the measures, palatograms. A click takes a frame, the arrow keys, Home and End step, D and Z show or hide two of
/// the curves.
class PalateWindow : public ToolWindow {
 public:
  PalateWindow(const PalateDesk& desk, bool withSpectrum);

  std::string Name() const override { return "palate"; }
  std::string Title() const override;
  std::vector<ToolControl> Controls() const override;
  Point PreferredSize() const override { return {1024, 640}; }
  Picture Draw(int width, int height) const override;
  void Resized(int width, int /*height*/) override { width_ = width; }
  void Click(Window& window, Point at, MouseButton button, bool shift) override;
  bool Key(Window& window, const std::string& key) override;
  void Press(Window& window, const ToolControl& control) override;
  std::string Hover(Point at) const override;
  std::string Text() const override;
  std::string Instructions() const override;
  void Closed(Window& window) override;

 private:
  PalateDesk desk_;
  const bool withSpectrum_;
  int width_;  ///< that clicks count with
  mutable WideBandStrip spectrum_;
};

/// The window "palate" over statistics: the share of contact of every electrode and the table. Up and Down go
/// through the records of a file.
class PalateStatisticsWindow : public ToolWindow {
 public:
  explicit PalateStatisticsWindow(const PalateDesk& desk) : desk_(desk) {}

  std::string Name() const override { return "palate"; }
  std::string Title() const override;
  std::vector<ToolControl> Controls() const override;
  Point PreferredSize() const override { return {820, 420}; }
  Picture Draw(int width, int height) const override;
  bool Key(Window& window, const std::string& key) override;
  void Press(Window& window, const ToolControl& control) override;
  std::string Hover(Point at) const override;
  std::string Text() const override;
  std::string Instructions() const override;
  void Closed(Window& window) override;

 private:
  PalateDesk desk_;
};

}  // namespace parlowen
