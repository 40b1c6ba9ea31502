#include "shell/MainView.h"

#include <algorithm>
#include <cmath>

#include "annotation/AnnotationCommands.h"
#include "annotation/TextPicture.h"
#include "base/Arithmetic.h"
#include "base/Format.h"
#include "document/EditCommands.h"
#include "document/Frames.h"
#include "document/LevelMeasures.h"
#include "document/ViewScale.h"
#include "palatography/MarkerPicture.h"
#include "pitch/PitchCommands.h"
#include "pitch/PitchPicture.h"
#include "prosody/IntonationCommands.h"
#include "spectral/FrequencyCeiling.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrogramPicture.h"
#include "ui/Text.h"
#include "voice/GlottalCommands.h"
#include "vowel/ChartPicture.h"
#include "vowel/VowelCommands.h"

namespace parlowen {
namespace {

constexpr UiText kStartOnly = "起 %.3f s (%d)";
constexpr UiText kEndOnly = "止 %.3f s (%d)";
constexpr UiText kNothingSelected = "未选定语音段";
constexpr UiText kSelectionLine = "起 %.3f s │ %.3f s (%.3f/s) │ 止 %.3f s      样点 %d │ %d │ %d";
constexpr UiText kHoverLine = "%.3f s%s样点 %d%s幅度 %d%s%.1f dB";
constexpr UiText kHoverPitch = "%sF0 %.1f Hz%s%.1f 半音";
constexpr UiText kHoverGrey = "%s灰度 %d";
constexpr UiText kStartHint = "打开声音文件（Ctrl+O），或把文件拖到窗口中";
constexpr UiText kRegionDragHint = "按住鼠标左键拖出要复制的区域，Esc 取消";
constexpr UiText kRegionChosenHint = "区域已选定：用“复制区域”复制到剪贴板，Esc 取消";
constexpr UiText kSegmentChartHint = "一段元音的 F1-F2 图：红色为先，蓝色为后；可调入主要元音的平均值";
constexpr UiText kPointChartHint =
    "在幅度/能量图中单击某点，插入该点数据；M：点序号；L：重画；Esc：退出元音图";
constexpr UiText kGroupPlotHint = "元音组位置图；M：组名；B：返回元音图";
constexpr UiText kSpectrogramHint =
    "左键：起点，右键：终点，拖动：选定一段；S/X：缩放；D/L：谱图加深／淡化；F：共振峰；空格：放音";
constexpr UiText kSoundHint = "左键：起点，右键：终点，拖动：选定一段；S/X：缩放；滚轮：移动；空格：放音";
constexpr UiText kWaitingHint = "正在录音：听到语音后开始保存；T 键：停止录音";
constexpr UiText kRecordingHint = "正在录音：声音正在保存；T 键：停止录音";
constexpr UiText kGainTestHint = "正在测试录音增益：请保持安静，约 4 秒；T 键：提前结束";
constexpr UiText kPartOfFile = "      文件的 %d–%d s / %d s";
constexpr double kSemitonesPerOctave = 12.0, kLowestTone = 64.0;

/// The finest scale that shows the whole stretch.
int ScaleFor(const SoundDocument& document, int start, int end) {
  const int columns = std::max(1, document.paneWidth - kPaneMargin);
  return std::clamp((end - start + columns - 1) / columns, 1, kLargestSamplesPerPixel);
}

/// The part of a long file that is loaded, and the file's length; "" for a whole file.
std::string PartText(const SoundDocument& document) {
  if (document.longFileSeconds <= 0) return {};
  const int rate = std::max(1, document.sampleRate);
  const int last = static_cast<int>((std::int64_t{document.longFileStart} + document.sampleCount) / rate);
  return Format(kPartOfFile.Get(), document.longFileStart / rate, last, document.longFileSeconds);
}

/// Level in dB of the 10 ms around a sample's place on the level curve.
double LevelAt(const SoundDocument& document, int sample) {
  const LevelCurve& curve = document.Levels();
  const std::int64_t index = std::int64_t{sample} * curve.rate / document.sampleRate;
  if (curve.values.empty()) return 0;
  return curve.values[static_cast<std::size_t>(std::min<std::int64_t>(index, std::ssize(curve.values) - 1))];
}

}  // namespace

MainView::MainView(Window& window, SoundDocument& document, CommandStates& states,
                   SpectrogramState& spectrogram, PitchRepair& pitchRepair, VowelState& vowels)
    : window_(window),
      document_(document),
      states_(states),
      spectrogram_(spectrogram),
      pitchRepair_(pitchRepair),
      vowels_(vowels) {}

// --- What a column stands for

SampleScale MainView::ScaleOf(Pane pane) const {
  if (pane == Pane::Analysis && AnalysisShowsOwnStretch())
    return spectrogram_.stretch.Pane(document_.paneWidth);
  // The labels stand under the waveform and over its axis.
  const bool asWaveform = pane == Pane::Waveform || pane == Pane::Labels;
  return asWaveform ? WaveformScaleOf(document_) : TimeScaleOf(document_);
}

bool MainView::AnalysisShowsOwnStretch() const {
  return spectrogram_.shown && !spectrogram_.stretch.followsView;
}

Activity MainView::ShownChart() const {
  const bool choosing =
      document_.activity == Activity::RegionDrag || document_.activity == Activity::RegionChosen;
  const Activity activity = choosing ? activityBeforeRegion_ : document_.activity;
  return activity == Activity::PointChart || activity == Activity::GroupPlot ? activity : Activity::Start;
}

int MainView::SampleAt(Pane pane, int x, bool shift) const {
  SampleScale scale = ScaleOf(pane);
  if (shift && pane == Pane::Waveform) scale.start = document_.insertPoint;
  const std::int64_t sample = scale.SampleAt(std::max(x, kPaneMargin));
  return static_cast<int>(std::clamp<std::int64_t>(sample, 0, document_.sampleCount));
}

int MainView::ColumnOf(Pane pane, int sample) const { return ScaleOf(pane).ColumnOf(sample); }

// --- What the user does

void MainView::Click(Pane pane, Point at, MouseButton button, bool shift) {
  if (document_.activity == Activity::RegionDrag) {
    if (!regionStarted_) {
      region = {pane, at, at};
      regionStarted_ = true;
      return;
    }
    region.to = at;
    document_.activity = Activity::RegionChosen;
    window_.Repaint();
    return;
  }
  if (document_.activity == Activity::Start || listening != Listening::No || pane == Pane::Chart) return;
  const int sample = SampleAt(pane, at.x);
  if (button == MouseButton::Left && document_.activity == Activity::Annotation && pane == Pane::Analysis &&
      annotations != nullptr)
    return InsertAnnotation(window_, document_, *annotations, sample);
  if (pane == Pane::Labels) return LabelClick(Labels(), at, button, shift);
  if (button == MouseButton::Left && document_.activity == Activity::Characters && characters != nullptr)
    return PlaceCharacters(window_, document_, *characters, pane, sample, at.y);
  if (RepairsPitch(pane)) return RepairClick(window_, document_, pitchRepair_, RepairPointAt(at), button);
  if (document_.activity == Activity::PointChart && pane == Pane::Amplitude && button == MouseButton::Left)
    return ClickVowel(window_, {document_, states_, vowels_}, sample);
  if (button == MouseButton::Right) {
    MarkEnd(document_, states_, sample);
  } else if (shift && pane == Pane::Waveform) {
    document_.insertPoint = SampleAt(pane, at.x, true);
    if (document_.pasteReady && paste) paste();
  } else {
    MarkStart(document_, states_, sample);
  }
  window_.Repaint();
}

bool MainView::RepairsPitch(Pane pane) const {
  return document_.activity == Activity::PitchRepair && pane == Pane::Analysis && spectrogram_.shown;
}

RepairPoint MainView::RepairPointAt(Point at) const {
  return {FrameOfSample(SampleAt(Pane::Analysis, at.x), document_.sampleRate),
          FrequencyAtRow(pitchRepair_.rows, at.y, analysisHeight, document_.sampleRate,
                         ShownRows(document_, spectrogram_))};
}

void MainView::MarkRepairFrames(int x0, int x1) {
  if (!RepairsPitch(Pane::Analysis)) return;
  RepairMark(window_, document_, pitchRepair_, RepairPointAt({x0, 0}).frame, RepairPointAt({x1, 0}).frame);
}

void MainView::PointAtRepair(Point at) {
  if (RepairsPitch(Pane::Analysis)) pitchRepair_.pointer = RepairPointAt(at);
}

LabelDesk MainView::Labels() const {
  static const PlayStretch kSilent;
  return {window_,
          document_,
          states_,
          *markers,
          annotations != nullptr ? AnnotationsOf(*annotations, document_) : std::span<const Annotation>{},
          playStretch != nullptr ? *playStretch : kSilent,
          {},
          cursor,
          labelsHeight};
}

void MainView::EditLabel(Point at) {
  if (document_.activity == Activity::Start || listening != Listening::No) return;
  LabelDesk desk = Labels();
  desk.reveal = [this](int start, int end) { Reveal(start, end); };
  EditLabelAt(desk, at);
}

bool MainView::KeyInLabels(const std::string& key) {
  if (document_.activity == Activity::Start || listening != Listening::No) return false;
  LabelDesk desk = Labels();
  desk.reveal = [this](int start, int end) { Reveal(start, end); };
  return LabelKey(desk, key);
}

std::optional<int> MainView::LabelMarker(Point at) const { return LabelMarkerAt(Labels(), at); }

std::string MainView::LabelTipAt(Point at) const { return LabelTip(Labels(), at); }

void MainView::Reveal(int start, int end) {
  const int length = document_.FullViewLength();
  if (start >= document_.viewStart && end <= document_.viewStart + length) return;
  ScrollTo(std::int64_t{start} - std::min(length / 10, std::max(0, length - (end - start)) / 2));
}

void MainView::MarkStretch(Pane pane, int x0, int x1) {
  if (pane == Pane::Labels)  // a click there would take a stretch between two markers
    return Select(SampleAt(pane, std::min(x0, x1)), SampleAt(pane, std::max(x0, x1)));
  Click(pane, {std::min(x0, x1), 0}, MouseButton::Left, false);
  Click(pane, {std::max(x0, x1), 0}, MouseButton::Right, false);
}

void MainView::Select(int start, int end) {
  if (document_.activity == Activity::Start || listening != Listening::No) return;
  MarkStart(document_, states_, start);
  MarkEnd(document_, states_, end);
  window_.Repaint();
}

bool MainView::Key(const std::string& key) {
  const bool waveformMode = document_.activity <= Activity::Waveform;
  const std::string name =
      key.size() == 1 ? std::string(1, static_cast<char>(std::toupper(static_cast<unsigned char>(key[0]))))
                      : key;
  if (VowelKey(window_, {document_, states_, vowels_}, name)) return true;
  if (name == "S" || name == "X") {
    if (waveformMode) ZoomKey(name == "S");
    return waveformMode;
  }
  if (RepairsPitch(Pane::Analysis) && RepairKey(window_, document_, pitchRepair_, name)) return true;
  if ((name == "D" || name == "L") && spectrogram_.shown) {
    DarkenLighten(window_, spectrogram_, name == "D" ? +1 : -1);
    return true;
  }
  if (name == "C" && document_.activity != Activity::PitchRepair && NextCeiling(window_, spectrogram_))
    return true;
  if (name == "F" && spectrogram_.shown) {
    ToggleFormants(window_, document_, spectrogram_);
    return true;
  }
  if (name == "Escape") {
    const bool inTool = document_.activity > Activity::Waveform;
    if (inTool && ShownChart() == document_.activity) {
      LeaveChart(window_, {document_, states_, vowels_});
    } else {
      EndTool();
    }
    return inTool;
  }
  if (name == "Home") {
    ScrollTo(0);
  } else if (name == "End") {
    ScrollTo(document_.sampleCount);
  } else if (name == "Left") {
    ScrollTenths(-1);
  } else if (name == "Right") {
    ScrollTenths(+1);
  } else {
    return false;
  }
  return true;
}

void MainView::EndTool() {
  if (PutToolAside(false).activity != document_.activity) window_.Repaint();
}

MainView::ToolInUse MainView::PutToolAside(bool chartToo) {
  const ToolInUse tool{document_.activity, regionStarted_};
  const bool ends = tool.activity == Activity::RegionDrag || tool.activity == Activity::RegionChosen ||
                    tool.activity == Activity::PitchRepair || tool.activity == Activity::Annotation ||
                    tool.activity == Activity::Characters;
  const Activity chart = ShownChart();
  if (chart != Activity::Start && (ends || chartToo)) {
    document_.activity = chartToo ? Activity::Waveform : chart;
  } else if (ends) {
    document_.activity = document_.OpenTool();
  }
  return tool;
}

void MainView::TakeUp(const ToolInUse& tool) {
  document_.activity = tool.activity;
  regionStarted_ = tool.regionStarted;
}

void MainView::BeginRegion() {
  EndTool();  // a second choice begins where the first one did
  activityBeforeRegion_ = document_.activity;
  document_.activity = Activity::RegionDrag;
  regionStarted_ = false;
  window_.Repaint();
}

void MainView::Reset() { cursor.reset(); }

void MainView::ScrollTo(std::int64_t viewStart) {
  const std::int64_t last = std::max(0, document_.sampleCount - document_.FullViewLength());
  document_.viewStart = static_cast<int>(std::clamp<std::int64_t>(viewStart, 0, last));
  ViewMoved();
}

void MainView::ScrollTenths(int tenths) { ScrollBy(std::int64_t{document_.FullViewLength()} * tenths / 10); }

int MainView::ZoomedScale(bool out) const {
  const int present = document_.samplesPerPixel;
  if (!out) return std::clamp(present / 2, 1, kLargestSamplesPerPixel);
  const int largest = keepsToSound ? std::max(present, ScaleFor(document_, 0, document_.sampleCount))
                                   : kLargestSamplesPerPixel;
  return std::clamp(present * 2, 1, std::min(largest, kLargestSamplesPerPixel));
}

MainView::Pointer MainView::PlaceToKeep() const {
  if (pointer) return *pointer;
  const int start = document_.selectionStart, end = document_.viewStart + document_.viewLength;
  const int marked = document_.selectionDefined() ? start + document_.SelectionLength() / 2 : start;
  const bool seen = start >= 0 && marked >= document_.viewStart && marked <= end;
  const int place = seen ? marked : document_.viewStart + document_.viewLength / 2;
  return {Pane::Waveform, ColumnOf(Pane::Waveform, place)};
}

void MainView::ZoomKey(bool out) {
  if (keepsToSound) {
    const Pointer place = PlaceToKeep();
    return ZoomAt(place.pane, place.x, out);
  }
  document_.samplesPerPixel = ZoomedScale(out);
  ViewMoved();
}

void MainView::ZoomAt(Pane pane, int x, bool out) {
  const int column = std::max(x, kPaneMargin);
  const auto timeScale = [&] {
    return pane == Pane::Waveform || pane == Pane::Labels ? WaveformScaleOf(document_)
                                                          : TimeScaleOf(document_);
  };
  const std::int64_t sample = timeScale().SampleAt(column);
  document_.samplesPerPixel = ZoomedScale(out);
  ScrollTo(document_.viewStart + sample - timeScale().SampleAt(column));
}

void MainView::ZoomTo(int start, int end) {
  document_.samplesPerPixel = ScaleFor(document_, start, end);
  ScrollTo(start);
}

void MainView::ZoomToSelection() {
  if (!document_.selectionDefined()) return;
  ZoomTo(document_.selectionStart, document_.selectionEnd);
  DrawOfView(document_, spectrogram_);
}

void MainView::ShowNewSound() {
  const bool isShort = document_.sampleCount > 0 && document_.sampleCount < document_.FullViewLength();
  if (keepsToSound && isShort) ZoomTo(0, document_.sampleCount);
}

void MainView::FollowPlay(std::optional<int> before) {
  const int full = document_.FullViewLength(), start = document_.viewStart;
  if (!followsPlay || !cursor || !before || full <= 0) return;
  if (*before < start || *before > start + full) return;
  if (*cursor < start || *cursor >= start + full)
    ScrollTo(start + FloorDiv(std::int64_t{*cursor} - start, full) * full);
}

void MainView::SetPaneWidth(int width) {
  if (width == document_.paneWidth || width <= kPaneMargin) return;
  const bool whole = keepsToSound && document_.sampleCount > 0 && document_.viewStart == 0 &&
                     document_.samplesPerPixel == ScaleFor(document_, 0, document_.sampleCount);
  document_.paneWidth = width;
  if (whole) return ZoomTo(0, document_.sampleCount);  // it stays whole
  ViewMoved();
}

void MainView::NextAmplitudeScale() {
  amplitudeScale = static_cast<AmplitudeScale>((static_cast<int>(amplitudeScale) + 1) % 4);
  window_.Repaint(Pane::Amplitude);
}

void MainView::ViewMoved() {
  document_.setView(states_);
  FollowView(document_, spectrogram_);
  window_.Repaint();
}

// --- What is seen

const WavePyramid& MainView::Pyramid() const {
  pyramid_.Update(document_.Samples(), document_.samplesVersion);
  return pyramid_;
}

/// As large as the drawing below the strip fits: points, F1 to 1600 Hz and the group plot.
double MainView::ChartScale(int width, int height) const {
  constexpr double kColumns = 1000, kRows = 620 - kChartStripBottom;
  if (!chartScales) return 1;
  return std::clamp(std::min(width / kColumns, (height - kChartStripBottom) / kRows), 0.4, 4.0);
}

Picture MainView::Chart(int width, int height) const {
  if (!ChartShown()) return {width, height, {}};
  constexpr int kAxisHeight = 16, kAxisText = 9;
  const double scale = ChartScale(width, height);
  const int ownWidth = TruncateToInt32(width / scale + 0.5);
  const int ownHeight = kChartStripBottom + TruncateToInt32((height - kChartStripBottom) / scale + 0.5);
  Picture drawing =
      PointChartPicture(vowels_.chart, vowels_.averages, vowels_.showNumbers, ownWidth, ownHeight);
  if (ShownChart() == Activity::GroupPlot) drawing.Add(GroupPlotPicture(vowels_.plot, ownWidth, ownHeight));
  Picture picture{width, height, {}};
  if (scale == 1) {
    picture.Add(drawing);
  } else {
    picture.AddAt(drawing.Scaled(scale), 0, TruncateToInt32(kChartStripBottom * (1 - scale)));
    picture.Add(BoxMark{0, 0, width, kChartStripBottom, colours::kWhite});
  }
  std::vector<int> samples;
  for (int x = kPaneMargin; x < width && SampleAt(Pane::Amplitude, x) < document_.sampleCount;
       x += FormantStrip::kStep)
    samples.push_back(SampleAt(Pane::Amplitude, x));
  formantStrip_.Update(document_, std::move(samples));
  picture.AddAt(AxisPicture(Axis(Pane::Amplitude, width, kAxisText), width, kAxisHeight, {.text = kAxisText}),
                0, kChartTop);
  picture.AddAt(formantStrip_.Draw(), kPaneMargin, kChartTop + kAxisHeight);
  return picture;
}

Picture MainView::Base(Pane pane, int width, int height) const {
  const auto withTexts = [&](Picture picture) {
    AddTexts(picture, pane);
    return picture;
  };
  switch (pane) {
    case Pane::Chart: return Chart(width, height);
    case Pane::Labels: {
      static const MarkerSet kNone;
      const bool mine = markers != nullptr && markers->sound == document_.Stamp();
      return LabelsPicture(
          {mine ? markers->set : kNone,
           annotations != nullptr ? AnnotationsOf(*annotations, document_) : std::span<const Annotation>{},
           document_.sampleCount},
          mine ? markers->view : MarkerView{}, ScaleOf(pane), width, height);
    }
    case Pane::Amplitude: return withTexts(AmplitudePicture(document_, amplitudeScale, width, height));
    case Pane::Pitch:
      return withTexts(PitchPicture(document_, ShownPitchSpan(pitchSpan, document_), width, height));
    case Pane::Analysis: return withTexts(AnalysisPicture(document_, spectrogram_, width, height));
    default: return withTexts(WaveformPicture(document_, Pyramid(), width, height));
  }
}

/// Annotations stand over the analysis and the waveform, inserted characters where they were placed.
void MainView::AddTexts(Picture& picture, Pane pane) const {
  constexpr int kFirstRow = 8;  // under the brackets of the selection
  const int left = pane == Pane::Analysis && AnalysisShowsOwnStretch() ? 0 : kPaneMargin;
  const auto columnOf = [&](int sample) { return ColumnOf(pane, sample); };
  if (annotations != nullptr && (pane == Pane::Analysis || pane == Pane::Waveform))
    AddAnnotations(picture, AnnotationsOf(*annotations, document_), left, kFirstRow, columnOf);
  if (characters != nullptr && characters->sound == document_.Stamp())
    AddCharacters(picture, *characters, pane, left, columnOf);
}

/// The end is not marked a second time where the start is.
SelectionColumns MainView::MarkedColumns(Pane pane) const {
  SelectionColumns marked;
  const int start = document_.selectionStart, end = document_.selectionEnd;
  if (start >= 0) marked.start = ColumnOf(pane, start);
  if (end >= 0 && (start < 0 || end > start)) marked.end = ColumnOf(pane, end);
  return marked;
}

Picture MainView::Overlay(Pane pane, int width, int height) const {
  Picture picture{width, height, {}};
  if (pane == Pane::Chart) return picture;
  const bool outside = pane == Pane::Analysis && !spectrogram_.shown;
  const int left = pane == Pane::Analysis && AnalysisShowsOwnStretch() ? 0 : kPaneMargin;
  const SpectrogramStretch& stretch = spectrogram_.stretch;
  const bool wholeStretch = pane == Pane::Analysis && AnalysisShowsOwnStretch() &&
                            document_.selectionStart <= stretch.start &&
                            document_.selectionEnd >= stretch.end;
  // A picture of the selection alone keeps its greys.
  if (!outside) AddSelection(picture, {left, 0, width - left, height}, MarkedColumns(pane), !wholeStretch);
  if (pane == Pane::Waveform && palate != nullptr)
    AddEpgMarkers(picture, *palate, document_, left, [&](int sample) { return ColumnOf(pane, sample); });
  const auto line = [&](std::optional<int> sample, Colour colour) {
    const int x = sample ? ColumnOf(pane, *sample) : -1;
    if (x >= left && x < width && !outside) picture.Add(LineMark{{x, 0}, {x, height - 1}, colour});
  };
  if (palate != nullptr && palateView != nullptr)
    line(CurrentFrameSample(*palateView, *palate, document_), colours::kPalateFrame);
  line(cursor, colours::kCursor);
  if (RepairsPitch(pane))
    picture.Add(PitchRepairPicture(
        document_, pitchRepair_, [this](int sample) { return ColumnOf(Pane::Analysis, sample); }, width,
        height, ShownRows(document_, spectrogram_)));
  if (document_.activity == Activity::RegionChosen && region.pane == pane) {
    const int x = std::min(region.from.x, region.to.x), y = std::min(region.from.y, region.to.y);
    BoxMark box{x, y, std::abs(region.to.x - region.from.x) + 1, std::abs(region.to.y - region.from.y) + 1};
    box.opacity = 0;
    box.outlined = true;
    box.outline = colours::kEnd;
    picture.Add(box);
  }
  return picture;
}

FigurePane MainView::FigureOf(Pane pane, int width, int height) const {
  FigurePane figure{Base(pane, width, height), Ticks(pane, height), Caption(pane), {}};
  figure.picture.Add(Overlay(pane, width, height));
  return figure;
}

Picture MainView::Whole(Pane pane, int width, int height) const {
  if (pane == Pane::Chart) return Base(pane, width, height);  // it has axes of its own
  const PaneRows rows{pane, height};
  return Figure({&rows, 1}, width, FigureStyle{}.text);
}

Picture MainView::Figure(std::span<const PaneRows> panes, int width, int text) const {
  std::vector<FigurePane> figures;
  std::optional<std::size_t> last;  // of those that share the axis
  for (const PaneRows& rows : panes) {
    figures.push_back(FigureOf(rows.pane, width, rows.height));
    if (HasOwnAxis(rows.pane)) {
      figures.back().axis = Axis(rows.pane, width, text);
    } else {
      last = figures.size() - 1;
    }
  }
  if (last) figures[*last].axis = Axis(panes[*last].pane, width, text);
  return ComposeFigure(figures, {text});
}

std::vector<std::string> MainView::Caption(Pane pane) const {
  if (pane != Pane::Analysis || !spectrogram_.shown) return {};
  return SpectrogramCaption(spectrogram_, document_.sampleRate);
}

bool MainView::HasOwnAxis(Pane pane) const {
  return pane == Pane::Analysis && (AnalysisShowsOwnStretch() || ShowsRidges());
}

bool MainView::ShowsRidges() const { return spectrogram_.shown && !spectrogram_.ridges.empty(); }

FigureAxis MainView::Axis(Pane pane, int width, int text) const {
  if (pane == Pane::Analysis && ShowsRidges())
    return {{0, 1, 0, width}, RidgeTicks(document_.sampleRate), {}, {}};
  SampleScale columns = ScaleOf(pane);
  columns.start += document_.PartStart();
  FigureAxis axis = TimeAxis(columns, document_.sampleRate, width, text);
  axis.flags = MarkedColumns(pane);
  return axis;
}

std::vector<Tick> MainView::Ticks(Pane pane, int height) const {
  switch (pane) {
    case Pane::Amplitude: return AmplitudeTicks(amplitudeScale, height);
    case Pane::Pitch: return PitchTicks(ShownPitchSpan(pitchSpan, document_), height);
    case Pane::Analysis: return AnalysisTicks(document_, spectrogram_, height);
    case Pane::Chart: return {};
    case Pane::Labels: return LabelTicks(height);
    default: return WaveformTicks(document_, Pyramid(), height);
  }
}

Picture MainView::Overview(int width, int height) const {
  Picture picture = OverviewPicture(document_, Pyramid(), width, height);
  if (cursor) {
    const int x = OverviewScaleOf(document_, width).ColumnOf(*cursor);
    picture.Add(LineMark{{x, 0}, {x, height - 1}, colours::kCursor});
  }
  return picture;
}

int MainView::OverviewSampleAt(int x, int width) const {
  const std::int64_t sample = OverviewScaleOf(document_, width).SampleAt(x);
  return static_cast<int>(std::clamp<std::int64_t>(sample, 0, document_.sampleCount));
}

std::string MainView::SelectionLine() const {
  const double rate = std::max(1, document_.sampleRate);  // marks can be made before any sound is there
  // Seconds count from the file's start, as on the axis; samples from that of the part.
  const double first = document_.PartStart() / rate;
  const std::string part = PartText(document_);
  if (!document_.selectionDefined()) {
    if (document_.selectionStart >= 0)
      return Format(kStartOnly.Get(), first + document_.selectionStart / rate, document_.selectionStart) +
             part;
    if (document_.selectionEnd >= 0)
      return Format(kEndOnly.Get(), first + document_.selectionEnd / rate, document_.selectionEnd) + part;
    return std::string(kNothingSelected) + part;
  }
  const int length = document_.SelectionLength();
  return Format(kSelectionLine.Get(), first + document_.selectionStart / rate, length / rate, rate / length,
                first + document_.selectionEnd / rate, document_.selectionStart, length,
                document_.selectionEnd) +
         part;
}

std::string MainView::HoverLine(Pane pane, Point at, int paneHeight, const char* separator) const {
  if (pane == Pane::Chart && ChartShown()) {
    const double scale = ChartScale(document_.paneWidth, paneHeight);
    const Point own{TruncateToInt32(at.x / scale),
                    kChartStripBottom + TruncateToInt32((at.y - kChartStripBottom) / scale)};
    const std::string group = ShownChart() == Activity::GroupPlot ? GroupPlotHover(vowels_.plot, own) : "";
    return group.empty() ? PointChartHover(vowels_.chart, own) : group;
  }
  if (document_.sampleCount == 0 || document_.sampleRate <= 0) return {};
  const int sample = std::min(SampleAt(pane, at.x), document_.sampleCount - 1);
  const int frame = FrameOfSample(sample, document_.sampleRate);
  std::string line =
      Format(kHoverLine.Get(), (document_.PartStart() + std::int64_t{sample}) / double(document_.sampleRate),
             separator, sample, separator, document_.samples[sample], separator, LevelAt(document_, sample));
  const float period =
      frame < document_.ContourLength() ? document_.pitch[static_cast<std::size_t>(frame)] : kNoValue;
  if (period > 0) {
    const double frequency = document_.sampleRate / static_cast<double>(period);
    line += Format(kHoverPitch.Get(), separator, frequency, separator,
                   kSemitonesPerOctave * std::log2(frequency / kLowestTone));
  }
  // In three dimensions a row is no frequency.
  if (pane == Pane::Analysis && spectrogram_.shown && spectrogram_.ridges.empty() && paneHeight > 0) {
    const int rows = ShownRows(document_, spectrogram_);
    const int row = std::clamp((paneHeight - 1 - at.y) * rows / paneHeight, 0, rows - 1);
    const int column = ColumnUnder(spectrogram_, ScaleOf(pane), at.x);
    line += separator + SpectrogramRowText(spectrogram_, row, document_.sampleRate);
    if (column >= 0) line += Format(kHoverGrey.Get(), separator, spectrogram_.matrix.Column(column)[row]);
  }
  if (pane == Pane::Labels) {
    std::string tip = LabelTipAt(at);
    std::replace(tip.begin(), tip.end(), '\n', ' ');
    if (!tip.empty()) line += separator + tip;
  }
  return line;
}

std::string MainView::Hint() const {
  switch (listening) {
    case Listening::ForVoice: return kWaitingHint;
    case Listening::ToRecord: return kRecordingHint;
    case Listening::ToTestGain: return kGainTestHint;
    case Listening::No: break;
  }
  switch (document_.activity) {
    case Activity::Start: return kStartHint;
    case Activity::RegionDrag: return kRegionDragHint;
    case Activity::RegionChosen: return kRegionChosenHint;
    case Activity::PitchRepair: return RepairHint(pitchRepair_);
    case Activity::Intonation: return IntonationHint();
    case Activity::SegmentChart: return kSegmentChartHint;
    case Activity::PointChart: return kPointChartHint;
    case Activity::GroupPlot: return kGroupPlotHint;
    case Activity::GlottalWave: return kGlottalHint;
    case Activity::Annotation: return kAnnotationHint;
    case Activity::Characters: return kCharactersHint;
    case Activity::Palate: return kPalateHint;
    default: break;
  }
  if (spectrogram_.shown) return kSpectrogramHint;
  return kSoundHint;
}

}  // namespace parlowen
