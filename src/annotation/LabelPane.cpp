#include "annotation/LabelPane.h"

#include <algorithm>

#include "base/Format.h"
#include "document/EditCommands.h"
#include "document/ViewScale.h"

namespace parlowen {
namespace {

constexpr UiText kNoCursor = "请先单击波形，指定标志的位置";
constexpr UiText kNothingInHand = "请先在标注窗中单击一个标志或一段";
constexpr UiText kNoNextStretch = "后面没有别的段";
constexpr UiText kTipBand = "标志带 %d  %.3f s  %s";
constexpr UiText kTipStretch = "标志带 %d  %.3f–%.3f s  %s";
constexpr UiText kTipAnnotation = "注释  %.3f s  %s";
constexpr int kSnapMilliseconds = 20;
constexpr int kLeastEditor = 60;  // pixels

MarkerScale ScaleOf(const LabelDesk& desk) {
  return {desk.document.viewStart, desk.document.sampleCount,
          double(std::max(1, desk.document.samplesPerPixel))};
}

int SampleAt(const LabelDesk& desk, int x) {
  return ScaleOf(desk).SampleAt(std::clamp(x, kPaneMargin, 100000));
}

/// Of a row of the bands.
MarkerPoint PointAt(const LabelDesk& desk, Point at) {
  return {std::min(LabelRowAt(at.y, desk.height), kMarkerBands - 1), std::max(at.x, kPaneMargin),
          SampleAt(desk, at.x)};
}

int Snapped(const LabelDesk& desk, int sample) {
  const SoundDocument& document = desk.document;
  return NearestZeroCrossing(
      {document.samples.data(), static_cast<std::size_t>(std::max(0, document.sampleCount))}, sample,
      static_cast<std::int32_t>(std::int64_t{document.sampleRate} * kSnapMilliseconds / 1000));
}

void Select(const LabelDesk& desk, int start, int end) {
  MarkStart(desk.document, desk.states, start);
  MarkEnd(desk.document, desk.states, end);
}

void Choose(const LabelDesk& desk, const ChosenPlace& place) {
  desk.markers.view.band = place.band;
  desk.markers.view.chosen = place;
  desk.markers.view.clicked.reset();
  if (place.start < place.end) Select(desk, place.start, place.end);
}

void Take(const LabelDesk& desk, const MarkerSet& before, const MarkerOutcome& outcome) {
  if (outcome.refusal) desk.window.Notify(*outcome.refusal);
  if (!outcome.changed) return;
  desk.markers.Changed(before);
  desk.window.Repaint(Pane::Labels);
}

/// What is in hand, as long as it is still there.
std::optional<ChosenPlace> InHand(const LabelDesk& desk) {
  const auto chosen = desk.markers.view.chosen;
  if (!chosen) return {};
  const MarkerSet& set = desk.markers.set;
  const auto markers = set.Markers(chosen->band);
  const auto stands = [&](std::int32_t position) {
    return std::binary_search(markers.begin(), markers.end(), position);
  };
  const bool there = chosen->start == chosen->end
                         ? stands(chosen->start)
                         : (chosen->start == 0 || stands(chosen->start)) &&
                               (chosen->end == desk.document.sampleCount || stands(chosen->end));
  return there || LabelOn(set, *chosen) >= 0 ? chosen : std::nullopt;
}

void MoveInHand(const LabelDesk& desk, const ChosenPlace& marker, int to) {
  const MarkerSet before = desk.markers.set;
  const int now = MoveMarker(desk.markers.set, marker.band, marker.start, to, desk.document.sampleCount);
  if (desk.markers.set == before) return;
  desk.markers.Changed(before, true);
  desk.markers.view.chosen = {marker.band, now, now};
  desk.window.Repaint(Pane::Labels);
}

/// A marker at each of the places where none stands yet.
void AddMarkers(const LabelDesk& desk, std::initializer_list<int> places) {
  MarkerState& state = desk.markers;
  const MarkerSet before = state.set;
  const MarkerScale scale = ScaleOf(desk);
  std::optional<UiText> refusal;
  for (const int place : places) {
    const auto markers = state.set.Markers(state.view.band);
    // Where the sound ends no marker is missing.
    const bool stands = std::binary_search(markers.begin(), markers.end(), place) || place <= 0 ||
                        place >= desk.document.sampleCount;
    if (places.size() > 1 && stands) continue;
    const MarkerOutcome outcome = AddMarker(state.set, scale, {state.view.band, scale.Column(place), place});
    if (!refusal) refusal = outcome.refusal;
  }
  if (state.set == before && !refusal) desk.window.ShowStatus(kMarkerNear);
  Take(desk, before, {!(state.set == before), refusal});
}

void AddMarkersAtCursor(const LabelDesk& desk) {
  const SoundDocument& document = desk.document;
  if (desk.cursor) return AddMarkers(desk, {*desk.cursor});
  const auto place = InHand(desk);
  const bool wholeStretch =
      place && place->start == document.selectionStart && place->end == document.selectionEnd;
  if (wholeStretch && desk.markers.view.clicked) return AddMarkers(desk, {*desk.markers.view.clicked});
  if (document.selectionDefined()) return AddMarkers(desk, {document.selectionStart, document.selectionEnd});
  if (document.selectionStart >= 0) return AddMarkers(desk, {document.selectionStart});
  desk.window.ShowStatus(kNoCursor);
}

void DeleteInHand(const LabelDesk& desk) {
  const auto place = InHand(desk);
  if (!place) return desk.window.ShowStatus(kNothingInHand);
  const MarkerSet before = desk.markers.set;
  const int label = LabelOn(before, *place);
  if (label >= 0) {
    RemoveLabel(desk.markers.set, place->band, label);
    return Take(desk, before, {true, {}});
  }
  if (place->start < place->end) return desk.window.Notify(kNoLabel);
  Take(desk, before, DeleteMarkerAt(desk.markers.set, place->band, place->start));
}

/// The stretch behind what is in hand, or behind the selection's start, becomes the selection; false at the end.
bool ChooseNext(const LabelDesk& desk) {
  const int band = desk.markers.view.band, count = desk.document.sampleCount;
  const auto place = InHand(desk);
  int start = 0;
  if (place && place->band == band) {
    start = place->end;
  } else if (desk.document.selectionStart >= 0) {
    start = StretchAt(desk.markers.set, {band, 0, desk.document.selectionStart}, count).start;
  }
  const MarkerStretch next = StretchAt(desk.markers.set, {band, 0, start}, count);
  if (start >= count || desk.markers.set.Markers(band).empty()) {
    desk.window.ShowStatus(kNoNextStretch);
    return false;
  }
  Choose(desk, {band, next.start, next.end});
  desk.reveal(next.start, next.end);
  desk.window.Repaint();
  if (desk.play) desk.play(desk.window, next.start, next.end);
  return true;
}

FormPlace PlaceOfText(const LabelDesk& desk, const ChosenPlace& chosen) {
  const SampleScale columns = WaveformScaleOf(desk.document);
  const int width = desk.document.paneWidth, top = LabelRowTop(chosen.band, desk.height);
  const int from =
      std::clamp(columns.ColumnOf(chosen.start), kPaneMargin, std::max(kPaneMargin, width - kLeastEditor));
  const int to =
      std::clamp(columns.ColumnOf(chosen.end), from + kLeastEditor, std::max(from + kLeastEditor, width));
  return {from, top, to - from, LabelRowTop(chosen.band + 1, desk.height) - top};
}

/// Asks for the label of what is in hand; goes on with the next stretch as long as the user does.
void EditInHand(const LabelDesk& desk) {
  MarkerState& state = desk.markers;
  while (const auto place = InHand(desk)) {
    const int present = LabelOn(state.set, *place);
    if (present < 0 && std::ssize(state.set.Labels(place->band)) >= kLabelsPerBand)
      return desk.window.Notify(kMarkersFull);
    FormPlace where = PlaceOfText(desk, *place);
    const auto text = AskLabelText(
        desk.window, present < 0 ? "" : state.set.Labels(place->band)[static_cast<std::size_t>(present)].text,
        &where);
    if (!text) return;
    const MarkerSet before = state.set;
    if (present >= 0) RemoveLabel(state.set, place->band, present);
    if (!text->empty()) AppendLabel(state.set, place->band, {place->start, place->end, *text});
    Take(desk, before, {!(state.set == before), {}});
    if (!where.next || !ChooseNext(desk)) return;
  }
}

}  // namespace

void LabelClick(const LabelDesk& desk, Point at, MouseButton button, bool shift) {
  EnsureMarkersRead(desk.document, desk.markers);
  MarkerState& state = desk.markers;
  const bool inBand = LabelRowAt(at.y, desk.height) < kMarkerBands;
  const MarkerPoint point = PointAt(desk, at);
  const int sample = shift ? Snapped(desk, point.sample) : point.sample;
  if (button == MouseButton::Right) {
    const auto place = InHand(desk);
    if (place && place->start == place->end) return MoveInHand(desk, *place, sample);
    MarkEnd(desk.document, desk.states, sample);
    return desk.window.Repaint();
  }
  if (state.step) state.step->moves = false;
  state.view.chosen.reset();
  if (inBand) state.view.band = point.band;
  if (const auto marker = inBand ? MarkerNear(state.set, ScaleOf(desk), point) : std::nullopt) {
    Choose(desk, {point.band, *marker, *marker});
  } else if (inBand && !shift && !state.set.Markers(point.band).empty()) {
    const MarkerStretch stretch = StretchAt(state.set, point, desk.document.sampleCount);
    Choose(desk, {point.band, stretch.start, stretch.end});
    state.view.clicked = point.sample;
  } else {
    MarkStart(desk.document, desk.states, sample);
  }
  desk.window.Repaint();
}

void EditLabelAt(const LabelDesk& desk, Point at) {
  EnsureMarkersRead(desk.document, desk.markers);
  if (LabelRowAt(at.y, desk.height) == kAnnotationRow) return;
  const MarkerPoint point = PointAt(desk, at);
  const int found = FindLabel(desk.markers.set, ScaleOf(desk), point);
  if (found >= 0) {
    const MarkerLabel& label = desk.markers.set.Labels(point.band)[static_cast<std::size_t>(found)];
    Choose(desk, {point.band, label.start, label.end});
  } else {
    const LabelPlace place = PlaceOfLabel(desk.markers.set, ScaleOf(desk), point);
    if (place.refusal) return desk.window.Notify(*place.refusal);
    Choose(desk, {point.band, place.stretch.start, place.stretch.end});
  }
  desk.window.Repaint();
  EditInHand(desk);
}

bool LabelKey(const LabelDesk& desk, const std::string& key) {
  if (desk.document.sampleCount == 0) return false;
  EnsureMarkersRead(desk.document, desk.markers);
  MarkerState& state = desk.markers;
  const int digit = key.size() == 1 ? key[0] - '0' : 0;
  const int move = key == "Up" ? -1 : key == "Down" ? +1 : 0;
  if ((digit >= 1 && digit <= kMarkerBands) || move != 0) {
    state.view.band = move != 0 ? std::clamp(state.view.band + move, 0, kMarkerBands - 1) : digit - 1;
    state.view.chosen.reset();
    desk.window.Repaint(Pane::Labels);
  } else if (key == "Enter") {
    AddMarkersAtCursor(desk);
  } else if (key == "Delete") {
    DeleteInHand(desk);
  } else if (key == "Tab") {
    ChooseNext(desk);
  } else if (key == "F2") {
    InHand(desk) ? EditInHand(desk) : desk.window.ShowStatus(kNothingInHand);
  } else if (key == "Z" || key == "z") {
    if (!state.UndoStep()) return false;
    desk.window.Repaint(Pane::Labels);
  } else if (key == "Escape" && state.view.chosen && !desk.cursor) {
    state.view.chosen.reset();
    desk.window.Repaint(Pane::Labels);
  } else {
    return false;
  }
  return true;
}

std::optional<int> LabelMarkerAt(const LabelDesk& desk, Point at) {
  if (LabelRowAt(at.y, desk.height) == kAnnotationRow) return {};
  return MarkerNear(desk.markers.set, ScaleOf(desk), PointAt(desk, at));
}

std::string LabelTip(const LabelDesk& desk, Point at) {
  if (desk.document.sampleRate <= 0) return {};
  const double rate = desk.document.sampleRate;
  std::string tip;
  const auto add = [&tip](const std::string& line) { tip += (tip.empty() ? "" : "\n") + line; };
  if (LabelRowAt(at.y, desk.height) == kAnnotationRow) {
    // The texts at the last moment before the pixel.
    const int sample = SampleAt(desk, at.x);
    int last = -1;
    for (const Annotation& annotation : desk.annotations)
      if (annotation.position <= sample) last = std::max(last, annotation.position);
    for (const Annotation& annotation : desk.annotations)
      if (annotation.position == last)
        add(Format(kTipAnnotation.Get(), last / rate, annotation.text.c_str()));
    return tip;
  }
  const MarkerPoint point = PointAt(desk, at);
  const MarkerScale scale = ScaleOf(desk);
  const auto marker = MarkerNear(desk.markers.set, scale, point);
  for (const MarkerLabel& label : desk.markers.set.Labels(point.band)) {
    if (label.IsPoint() && marker == label.start)
      add(Format(kTipBand.Get(), point.band + 1, label.start / rate, label.text.c_str()));
    if (!label.IsPoint() && label.start <= point.sample && point.sample < label.end)
      add(Format(kTipStretch.Get(), point.band + 1, label.start / rate, label.end / rate,
                 label.text.c_str()));
  }
  return tip;
}

}  // namespace parlowen
