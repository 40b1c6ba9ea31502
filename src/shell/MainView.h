#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "annotation/Annotations.h"
#include "annotation/InsertedCharacters.h"
#include "annotation/LabelPane.h"
#include "document/SoundDocument.h"
#include "document/WavePyramid.h"
#include "palatography/PalateState.h"
#include "pitch/PitchRepair.h"
#include "shell/PanePictures.h"
#include "spectral/SpectrogramState.h"
#include "ui/CommandStates.h"
#include "ui/Figure.h"
#include "ui/Picture.h"
#include "ui/Plot.h"
#include "ui/Window.h"
#include "vowel/FormantStrip.h"
#include "vowel/VowelState.h"

namespace parlowen {

/// Rows of the chart above this one lie under the amplitude pane's time.
inline constexpr int kChartStripBottom = 172;

/// What an open microphone is heard for.
enum class Listening { No, ForVoice, ToRecord, ToTestGain };

/// The model of the four panes: what a column of pixels stands for, what is drawn, what clicks, keys and the
/// wheel do. Sizes are logical pixels; the first 20 columns of a pane are its margin.
class MainView {
 public:
  MainView(Window& window, SoundDocument& document, CommandStates& states, SpectrogramState& spectrogram,
           PitchRepair& pitchRepair, VowelState& vowels);

  // What a column stands for.

  /// The sample under a column of a pane; columns of the margin count as 20. With `shift`, the waveform pane
  /// counts from the insert point. Clamped to 0..sampleCount.
  int SampleAt(Pane pane, int x, bool shift = false) const;
  /// The column of a sample in a pane: it may lie outside.
  int ColumnOf(Pane pane, int sample) const;
  /// What the columns of a pane show: clicks, marks, axis and picture alike.
  SampleScale ScaleOf(Pane pane) const;
  bool AnalysisShowsOwnStretch() const;
  /// True while the point chart or the group plot stands over the three lower panes: Pane::Chart. Its rows
  /// count from the top of the amplitude pane; those above kChartTop stay empty, so a window shows it from
  /// there on.
  bool ChartShown() const { return ShownChart() != Activity::Start; }

  // What the user does.

  void Click(Pane pane, Point at, MouseButton button, bool shift);
  /// A left drag over a stretch: a left click at its lower and a right click at its upper end.
  void MarkStretch(Pane pane, int x0, int x1);
  void Select(int start, int end);
  /// A key of the main window: true when it was used here.
  bool Key(const std::string& key);
  /// Ends a region, a repair or the placing of a text; a chart that the region was chosen from is shown again.
  void EndTool();
  /// What the user is about in the panes.
  struct ToolInUse {
    Activity activity = Activity::Start;
    bool regionStarted = false;
  };
  /// While a command is tried the tool before it is put aside, and taken up again when nothing came of it. With
  /// `chartToo`, a chart over the panes gives way as well.
  ToolInUse PutToolAside(bool chartToo);
  void TakeUp(const ToolInUse& tool);
  /// True while clicks into the pane repair the contour.
  bool RepairsPitch(Pane pane) const;
  /// While the contour is repaired: a right drag over the analysis pane, and where the pointer stands in it.
  void MarkRepairFrames(int x0, int x1);
  void PointAtRepair(Point at);
  // The label pane; see annotation/LabelPane.h.

  void EditLabel(Point at);
  bool KeyInLabels(const std::string& key);
  std::optional<int> LabelMarker(Point at) const;
  std::string LabelTipAt(Point at) const;
  bool CanUndoLabelStep() const { return markers != nullptr && markers->CanUndoStep(); }

  /// The next two clicks are the corners of a region.
  void BeginRegion();
  /// A new sound is there: nothing of the old one is marked any more.
  void Reset();

  void ScrollTo(std::int64_t viewStart);
  void ScrollBy(std::int64_t samples) { ScrollTo(document_.viewStart + samples); }
  void ScrollTenths(int tenths);
  /// Keeps the left edge; with `keepsToSound` the sample under the pointer, else the selection's middle, else that
  /// of the view.
  void ZoomKey(bool out);
  /// Doubles or halves the scale and keeps the sample under column `x` of a pane there.
  void ZoomAt(Pane pane, int x, bool out);
  /// The finest scale that shows the whole stretch, with the stretch at the left margin.
  void ZoomTo(int start, int end);
  /// The same for the selection; a picture of a stretch of its own becomes one of the view, so that one axis holds.
  void ZoomToSelection();
  /// A new sound is there: with `keepsToSound` one that is shorter than the view is shown whole.
  void ShowNewSound();
  /// Turns the page when a play, which was at `before`, has left the view; not while the user looks elsewhere.
  void FollowPlay(std::optional<int> before);
  void SetPaneWidth(int width);
  void NextAmplitudeScale();

  // What is seen. A base stays valid until Repaint; the overlay holds selection and cursor.

  Picture Base(Pane pane, int width, int height) const;
  Picture Overlay(Pane pane, int width, int height) const;
  /// Base and overlay with what stands around them: a figure of the pane alone.
  Picture Whole(Pane pane, int width, int height) const;
  /// One of the panes of a figure, and its rows.
  struct PaneRows {
    Pane pane = Pane::Waveform;
    int height = 0;
  };
  /// The panes one under the other over one axis; one whose columns are none of the others' has its own. Letters have
  /// that size.
  Picture Figure(std::span<const PaneRows> panes, int width, int text) const;
  /// Labels beside the pane.
  std::vector<Tick> Ticks(Pane pane, int height) const;
  /// Pieces of the line above the pane; none for no line.
  std::vector<std::string> Caption(Pane pane) const;
  /// True where the pane's columns are none of the other panes': a stretch or frequencies of its own.
  bool HasOwnAxis(Pane pane) const;
  /// The axis under the pane's columns, with the flags of the selection, for letters of that size.
  FigureAxis Axis(Pane pane, int width, int text) const;
  /// The whole sound with the view and the selection.
  Picture Overview(int width, int height) const;
  int OverviewSampleAt(int x, int width) const;

  std::string SelectionLine() const;
  /// What the pointer shows, fields separated by `separator`; "" without a sound.
  std::string HoverLine(Pane pane, Point at, int paneHeight, const char* separator) const;
  std::string Hint() const;

  /// On the desktop the view opens a short sound whole, zooms about a place, and zooms out to the whole sound at
  /// most. A script's keeps its left edge and has no such end.
  bool keepsToSound = false;
  /// The option 跟随放音.
  bool followsPlay = false;
  struct Pointer {
    Pane pane = Pane::Waveform;
    int x = 0;
  };
  std::optional<Pointer> pointer;  ///< over the panes
  /// The position of a running play; none: no cursor.
  std::optional<int> cursor;
  /// While the microphone is heard nothing is marked or edited.
  Listening listening = Listening::No;
  /// Pastes the clip at the insert point: what a click with SHIFT asks for.
  std::function<void()> paste;
  /// The region chosen with 40010.
  PaneRegion region;
  PitchSpanChoice pitchSpan;
  AmplitudeScale amplitudeScale = AmplitudeScale::Linear;
  /// The chart grows with its window, letters too; a script's keeps the coordinates that its points are stored in.
  bool chartScales = false;
  /// Pixels, kept by whoever shows the panes: clicks into them need it.
  int analysisHeight = 330, labelsHeight = 120;
  /// The palate recording whose markers stand over the waveform; null for none.
  const PalateState* palate = nullptr;
  /// What its window shows: the frame looked at is a line through all panes; null for none.
  const PalateView* palateView = nullptr;
  /// The texts over the panes, which two tools insert with a click; null for none.
  AnnotationState* annotations = nullptr;
  InsertedCharacters* characters = nullptr;
  /// What the label pane shows and plays; null for none.
  MarkerState* markers = nullptr;
  const PlayStretch* playStretch = nullptr;

 private:
  LabelDesk Labels() const;
  /// Scrolls so that the stretch, or its beginning, is seen.
  void Reveal(int start, int end);
  void ViewMoved();
  int ZoomedScale(bool out) const;
  Pointer PlaceToKeep() const;
  RepairPoint RepairPointAt(Point at) const;
  const WavePyramid& Pyramid() const;
  Picture Chart(int width, int height) const;
  double ChartScale(int width, int height) const;
  void AddTexts(Picture& picture, Pane pane) const;
  SelectionColumns MarkedColumns(Pane pane) const;
  bool ShowsRidges() const;
  FigurePane FigureOf(Pane pane, int width, int height) const;
  /// The activity of the chart that is shown, Start for none. It stays while a region of it is chosen.
  Activity ShownChart() const;

  Window& window_;
  SoundDocument& document_;
  CommandStates& states_;
  SpectrogramState& spectrogram_;
  PitchRepair& pitchRepair_;
  VowelState& vowels_;
  bool regionStarted_ = false;
  Activity activityBeforeRegion_ = Activity::Waveform;
  mutable WavePyramid pyramid_;
  mutable FormantStrip formantStrip_;
};

}  // namespace parlowen
