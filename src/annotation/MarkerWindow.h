#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "annotation/MarkerBands.h"
#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"
#include "ui/InputForm.h"
#include "ui/Window.h"

namespace parlowen {

/// Plays samples start .. end − 1 of the document.
using PlayStretch = std::function<void(Window& window, int start, int end)>;

/// 40105: empties the set, reads the marker file beside the sound and opens the marker window. A missing file
/// is no error; a damaged one counts as missing, with a status line.
void OpenMarkerWindow(Window& window, const SoundDocument& document, MarkerState& state,
                      const PlayStretch& play);

/// Shows the set as it is now, as one that has changed: opens the window, or repaints an open one. Reads no
/// file.
void ShowMarkers(Window& window, const SoundDocument& document, MarkerState& state, const PlayStretch& play);

/// Writes the set beside the sound. False when it could not be, which has been said: there is no marker, the
/// sound is no WAV file yet, the file cannot be made.
bool SaveMarkers(Window& window, const SoundDocument& document, MarkerState& state);

/// Reads the marker file beside the sound without a word, unless the set is this sound's already.
void EnsureMarkersRead(const SoundDocument& document, MarkerState& state);

/// Shows or hides the label pane. It begins with the set as it is, or with the marker file beside the sound.
void ShowLabelPane(Window& window, const SoundDocument& document, MarkerState& state, bool shown);

/// Asks for the text of a label: `present` at first, in the drawing itself where there is a place. "" for none;
/// nothing when it was cancelled. Characters that cannot be stored keep the question open.
std::optional<std::string> AskLabelText(Window& window, const std::string& present, FormPlace* place);

/// To be called when another sound is there: drops the set of the old one. An open window, and a pane that is
/// shown, go on with the markers of the new sound, so that saving does not overwrite a file nobody has seen.
void DropOldMarkers(Window& window, const SoundDocument& document, MarkerState& state);

/// Markers in four bands under the waveform, with labels; see the instruction of each tool. Keys: S and X
/// shrink and expand, the arrows move by 2 s, the page keys by a window, Home and End; 1..6 choose the tools,
/// Up and Down the band, P names a place in figures instead of a click, Escape puts the tool away.
class MarkerWindow : public ToolWindow {
 public:
  MarkerWindow(const SoundDocument& document, MarkerState& state, const PlayStretch& play);

  std::string Name() const override { return "markers"; }
  std::string Title() const override;
  std::vector<ToolControl> Controls() const override;
  Picture Draw(int width, int height) const override;
  bool ShowsPlay() const override { return true; }
  Point PreferredSize() const override;
  bool ScalesWithWindow() const override { return false; }
  void Resized(int width, int height) override;
  Point ClickOrigin() const override { return {0, MarkerLayout(height_).bandsTop}; }
  std::optional<ToolScrollBar> ScrollBar() const override;
  void ScrollTo(Window& window, int position) override;
  void Click(Window& window, Point at, MouseButton button, bool shift) override;
  bool Key(Window& window, const std::string& key) override;
  void Press(Window& window, const ToolControl& control) override;
  void Scroll(Window& window, int steps) override;
  std::string Hover(Point at) const override;
  std::string Text() const override;
  void Closed(Window&) override { state_.windowOpen = false; }

 private:
  MarkerScale Scale() const { return {state_.view, document_.sampleCount}; }
  MarkerPoint PointAt(Point at) const;
  void Choose(Window& window, MarkerTool tool);
  void Zoom(Window& window, bool expand);
  void MoveTo(std::int64_t start) { ScrollMarkersTo(state_.view, start, document_.sampleCount); }
  void Instruct(Window& window, UiText text);
  /// Does with the place what the tool says.
  void Act(Window& window, const MarkerPoint& at);
  void AskPlace(Window& window);
  void Take(Window& window, const MarkerSet& before, const MarkerOutcome& outcome);
  void LabelAt(Window& window, const MarkerPoint& at);
  void SaveStretch(Window& window, MarkerStretch stretch);

  const SoundDocument& document_;
  MarkerState& state_;
  const PlayStretch& play_;
  mutable WavePyramid pyramid_;
  int height_;
};

}  // namespace parlowen
