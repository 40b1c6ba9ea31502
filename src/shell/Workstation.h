#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "shell/Rooms.h"

namespace parlowen {

/// The program without its window: what the user can do with everything the rooms know. Both programs are one of these
/// and a Window, and act through it alone; for looking there is `view`.
class Workstation : public Rooms {
 public:
  /// `dataFolder` holds the help pages.
  Workstation(Window& window, std::string dataFolder, SoundDevices devices = {});

  /// Runs one thing that the user does and brings everything into line with it: drops results of an old sound, renews
  /// what is derived from samples, view and selection, tells the command states. Everything below goes through here;
  /// what the user does in a tool window is handed to it by whoever shows the window.
  void Act(const std::function<void()>& action);

  /// Runs the command if it is enabled; false when it is greyed or unknown.
  bool dispatchCommand(int number);

  /// A saving command of the table, greyed or not: work that is about to be lost may be out of sight.
  bool Save(int number);

  /// Loads a file that was dropped on the window or named at the start: what `OpeningCommand` would do with
  /// it.
  void OpenFile(const std::string& path);
  /// The command that opens a file of this name; names of no kind of ours are taken to be sounds.
  static int OpeningCommand(const std::string& path);

  // The mouse and the keys in the main window; MainView says what they mean.

  void Select(int start, int end);
  void Click(Pane pane, Point at, MouseButton button, bool shift);
  void MarkStretch(Pane pane, int x0, int x1);
  /// A double click and a key in the label pane; see MainView.
  void EditLabel(Point at);
  bool KeyInLabels(const std::string& key);
  /// Has the markers beside the sound read, for a look at the label pane.
  void ReadLabels();
  void MarkRepairFrames(int x0, int x1);
  /// Where the pointer stands in the analysis pane; none: outside of it.
  void PointAtRepair(std::optional<Point> at);
  /// A key by its name ("S", "Left", "F6", "Space"); false when it means nothing now.
  bool Key(const std::string& key);

  void ScrollTo(std::int64_t viewStart);
  void ScrollTenths(int tenths);
  void Zoom(bool out);
  /// Doubles or halves the scale `steps` times about a column.
  void ZoomAt(Pane pane, int x, bool out, int steps);
  void ZoomTo(int start, int end);
  void ZoomToSelection();
  /// Pixels of the panes, and of the analysis pane's height. A window can be resized while something is done.
  void SetPaneWidth(int width);
  void SetAnalysisHeight(int height);
  void SetLabelsHeight(int height);

  /// To be called when a microphone has come or gone: enables or greys the recordings.
  void InputDevicesChanged();
  /// Puts the cursor where the play is; false when nothing plays.
  bool MoveCursor();

 private:
  /// Windows that speak of the marked frames follow the selection.
  void FollowSelection();
  void RenewDerived();
  /// Whatever carries the stamp of another sound goes.
  void DropOldResults();
  /// Tells the command states what no room tells them as it happens.
  void TellStates();

  SoundInput* input_;
  SoundStamp seenSound_;
  std::uint64_t seenSamples_ = 0;
};

}  // namespace parlowen
