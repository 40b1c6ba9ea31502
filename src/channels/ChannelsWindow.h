#pragma once
#include <functional>
#include <string>

#include "channels/ChannelsPicture.h"
#include "channels/ChannelsState.h"
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

/// Plays samples start .. end − 1 of channel 1 or 2.
using PlayChannel = std::function<void(Window& window, int channel, int start, int end)>;

/// What the window works on; all of it outlives the window.
struct ChannelsDesk {
  SoundDocument& document;
  CommandStates& states;
  ChannelsState& state;
  const std::string& exportFolder;  ///< where NasRatio.txt goes; "" is the current directory
  const PlayChannel& play;          ///< empty while there is no player
};

/// 40111: opens the window of the two channels; refused for a mono document.
void ShowTwoChannelsCommand(Window& window, const ChannelsDesk& desk);

/// Both channels over one axis of time with the document's selection. Clicks mark it as in the main window; S
/// and X zoom out and in, the arrow keys, Home and End move; 1 and 2 play.
class ChannelsWindow : public ToolWindow {
 public:
  explicit ChannelsWindow(const ChannelsDesk& desk);

  std::string Name() const override { return "channels"; }
  std::string Title() const override;
  std::vector<ToolControl> Controls() const override;
  Picture Draw(int width, int height) const override;
  void Click(Window& window, Point at, MouseButton button, bool shift) override;
  bool Key(Window& window, const std::string& key) override;
  void Press(Window& window, const ToolControl& control) override;
  void Scroll(Window& window, int steps) override;
  std::string Hover(Point at) const override;
  void Closed(Window& window) override;

 private:
  void Play(Window& window, int channel);
  void ToggleFullBand(Window& window);
  void Calibrate(Window& window);
  void SaveCurve(Window& window);
  void OpenCurve(Window& window);
  void ShowCurve(Window& window);
  void ExportStereo(Window& window);
  void MoveTo(std::int64_t start);
  void ZoomBy(bool out);

  ChannelsDesk desk_;
  mutable ChannelsView view_;  ///< drawing tells it the width that the next clicks count with
};

}  // namespace parlowen
