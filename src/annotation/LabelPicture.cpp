#include "annotation/LabelPicture.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/Format.h"
#include "base/Utf8.h"
#include "document/SoundDocument.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr int kLargestType = 12, kSmallestType = 9, kGap = 3, kLeastRoom = 8;  // pixels
constexpr UiText kAnnotations = "注";

int TypeHeight(int height) { return std::clamp(height / kLabelRows - 6, 8, kLargestType); }

/// The texts of one row, each in what the ones before have left free.
class RowOfTexts {
 public:
  RowOfTexts(Picture& picture, int row)
      : picture_(picture),
        type_(TypeHeight(picture.height)),
        baseline_((LabelRowTop(row, picture.height) + LabelRowTop(row + 1, picture.height)) / 2 +
                  type_ * 3 / 8) {}

  /// In the widest free part of the columns from .. to − 1.
  void Add(const std::string& text, int from, int to, Anchor anchor, Colour colour) {
    const auto [left, right] = WidestGap(std::max(from, kPaneMargin), std::min(to, picture_.width));
    if (right - left < kLeastRoom) return;
    // A whole text in smaller letters says more than the beginning of it.
    int type = type_;
    while (type > kSmallestType && TextWidth(text, type) > right - left) --type;
    const bool whole = TextWidth(text, type) <= right - left;
    if (!whole) type = type_;
    const std::string shown = whole ? text : ElidedText(text, type, right - left);
    if (shown.empty()) return;
    // A cut text takes all the room there is; how wide its last sign is depends on the type.
    const int width = whole ? TextWidth(shown, type) : right - left;
    const int start = anchor == Anchor::Left ? left : (left + right - width) / 2;
    picture_.Add(TextMark{start, baseline_, shown, colour, type, Anchor::Left, Face::Ipa});
    taken_.insert(std::upper_bound(taken_.begin(), taken_.end(), std::pair(start, start + width)),
                  {start, start + width});
  }

 private:
  std::pair<int, int> WidestGap(int from, int to) const {
    std::pair<int, int> widest{from, from};
    const auto offer = [&](int left, int right) {
      if (right - left > widest.second - widest.first) widest = {left, right};
    };
    for (const auto& [left, right] : taken_) {
      offer(from, std::min(left - kGap, to));
      from = std::max(from, right + kGap);
    }
    offer(from, to);
    return widest;
  }

  Picture& picture_;
  const int type_, baseline_;
  std::vector<std::pair<int, int>> taken_;  // from the left
};

/// Where the texts of a band may not go on: its markers and the ends of its labels, as columns from the left.
std::vector<int> EdgesOf(const MarkerSet& set, int band, const SampleScale& columns) {
  std::vector<int> edges;
  for (const std::int32_t position : set.Markers(band)) edges.push_back(columns.ColumnOf(position));
  for (const MarkerLabel& label : set.Labels(band))
    for (const std::int32_t position : {label.start, label.end}) edges.push_back(columns.ColumnOf(position));
  std::sort(edges.begin(), edges.end());
  return edges;
}

void AddBandTexts(Picture& picture, const MarkerSet& set, int band, const SampleScale& columns) {
  const std::vector<int> edges = EdgesOf(set, band, columns);
  const auto labels = set.Labels(band);
  RowOfTexts row(picture, band);
  for (const MarkerLabel& label : labels) {
    const int x = columns.ColumnOf(label.start);
    if (!label.IsPoint() || x < kPaneMargin || x >= picture.width) continue;
    const auto next = std::upper_bound(edges.begin(), edges.end(), x);
    int end = next == edges.end() ? picture.width : *next;
    // Half of a stretch with a label of its own is left to that.
    if (std::any_of(labels.begin(), labels.end(), [&](const MarkerLabel& other) {
          return !other.IsPoint() && other.start <= label.start && label.start < other.end;
        }))
      end = x + (end - x) / 2;
    row.Add(label.text, x + kGap, end - kGap, Anchor::Left, colours::kMarkerBand[band]);
  }
  for (const MarkerLabel& label : labels)
    if (!label.IsPoint())
      row.Add(label.text, std::max(columns.ColumnOf(label.start), kPaneMargin) + kGap,
              std::min(columns.ColumnOf(label.end), picture.width) - kGap, Anchor::Middle, colours::kBlack);
}

void AddBand(Picture& picture, const MarkerSet& set, int band, const SampleScale& columns,
             const std::optional<ChosenPlace>& chosen) {
  const int top = LabelRowTop(band, picture.height), bottom = LabelRowTop(band + 1, picture.height);
  const bool mine = chosen && chosen->band == band;
  if (mine && chosen->start < chosen->end) {
    const int from = std::max(columns.ColumnOf(chosen->start), kPaneMargin);
    const int to = std::min(columns.ColumnOf(chosen->end), picture.width);
    if (from < to) picture.Add(BoxMark{from, top, to - from, bottom - top, colours::kSelection});
  }
  for (const std::int32_t position : set.Markers(band)) {
    const int x = columns.ColumnOf(position);
    if (x < kPaneMargin || x >= picture.width) continue;
    const bool inHand = mine && chosen->start == position && chosen->end == position;
    picture.Add(LineMark{{x, top}, {x, bottom - 1}, colours::kMarkerBand[band], inHand ? 4 : 2});
  }
  AddBandTexts(picture, set, band, columns);
}

void AddAnnotationRow(Picture& picture, std::span<const Annotation> annotations, const SampleScale& columns) {
  std::vector<std::pair<int, const std::string*>> texts;
  for (const Annotation& annotation : annotations)
    texts.emplace_back(columns.ColumnOf(annotation.position), &annotation.text);
  std::stable_sort(texts.begin(), texts.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  const int top = LabelRowTop(kAnnotationRow, picture.height);
  RowOfTexts row(picture, kAnnotationRow);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const int x = texts[i].first;
    if (x < kPaneMargin || x >= picture.width) continue;
    picture.Add(LineMark{{x, top}, {x, picture.height - 1}, colours::kAnnotation, 1, LineStyle::Dashed});
    const auto next = std::find_if(texts.begin() + static_cast<std::ptrdiff_t>(i), texts.end(),
                                   [x](const auto& text) { return text.first > x; });
    row.Add(*texts[i].second, x + kGap, (next == texts.end() ? picture.width : next->first) - kGap,
            Anchor::Left, colours::kAnnotation);
  }
}

}  // namespace

int LabelRowAt(int y, int height) {
  int row = kLabelRows - 1;
  while (row > 0 && y < LabelRowTop(row, height)) --row;
  return row;
}

Picture LabelsPicture(const LabelledSound& sound, const MarkerView& view, const SampleScale& columns,
                      int width, int height) {
  Picture picture{width, height, {}};
  const int tinted = LabelRowTop(view.band, height);
  picture.Add(BoxMark{kPaneMargin, tinted, std::max(0, width - kPaneMargin),
                      LabelRowTop(view.band + 1, height) - tinted, colours::kBandFill});
  picture.Add(LineMark{{kPaneMargin - 1, 0}, {kPaneMargin - 1, height - 1}, colours::kGrid});
  for (int band = 0; band < kMarkerBands; ++band) AddBand(picture, sound.set, band, columns, view.chosen);
  if (view.chosen && view.clicked) {
    const int x = columns.ColumnOf(*view.clicked), top = LabelRowTop(view.chosen->band, height);
    if (x >= kPaneMargin && x < width)
      picture.Add(LineMark{{x, top},
                           {x, LabelRowTop(view.chosen->band + 1, height) - 1},
                           colours::kCursor,
                           1,
                           LineStyle::Dashed});
  }
  AddAnnotationRow(picture, sound.annotations, columns);
  for (int row = 1; row < kLabelRows; ++row)
    picture.Add(LineMark{
        {kPaneMargin, LabelRowTop(row, height)}, {width - 1, LabelRowTop(row, height)}, colours::kGrid});
  return picture;
}

std::vector<Tick> LabelTicks(int height) {
  std::vector<Tick> ticks;
  ticks.reserve(kLabelRows);
  for (int row = 0; row < kLabelRows; ++row)
    ticks.push_back({(LabelRowTop(row, height) + LabelRowTop(row + 1, height)) / 2, row + 1.0,
                     row == kAnnotationRow ? kAnnotations.Get() : Format("%d", row + 1)});
  return ticks;
}

std::string ElidedText(const std::string& text, int height, int room) {
  if (TextWidth(text, height) <= room) return text;
  const std::string rest = "…";
  std::string shown;
  for (std::size_t at = 0; at < text.size();) {
    TakeUtf8(text, at);
    const std::string longer = text.substr(0, at);
    if (TextWidth(longer, height) + height > room) break;  // the sign is as wide as it is high at most
    shown = longer;
  }
  return shown.empty() ? shown : shown + rest;
}

}  // namespace parlowen
