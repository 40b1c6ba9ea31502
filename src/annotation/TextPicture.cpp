#include "annotation/TextPicture.h"

#include <algorithm>

namespace parlowen {
namespace {

constexpr int kGap = 3;  // pixels between a line and its text, and between texts
constexpr int kMostRows = 6;

/// Rows of the pane that a text takes, its accents included.
int RoomFor(int height) { return height * 5 / 4; }

void AddText(Picture& picture, int x, int middle, const std::string& text, int height, Colour colour) {
  const int baseline = middle + height * 3 / 8, room = RoomFor(height);
  picture.Add(BoxMark{x - 1, middle - room / 2, TextWidth(text, height) + 2, room, colours::kWhite, 0.7});
  picture.Add(TextMark{x, baseline, text, colour, height, Anchor::Left, Face::Ipa});
}

}  // namespace

void AddAnnotations(Picture& picture, std::span<const Annotation> annotations, int left, int top,
                    const std::function<int(int)>& columnOf) {
  struct Place {
    int x;
    const Annotation* annotation;
  };
  std::vector<Place> places;
  for (const Annotation& annotation : annotations) {
    const int x = columnOf(annotation.position);
    if (x >= left && x < picture.width) places.push_back({x, &annotation});
  }
  std::stable_sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.x < b.x; });
  for (const Place& place : places)
    picture.Add(
        LineMark{{place.x, 0}, {place.x, picture.height - 1}, colours::kAnnotation, 1, LineStyle::Dashed});
  int rowHeight = 0;
  for (const Place& place : places) rowHeight = std::max(rowHeight, RoomFor(place.annotation->height));
  std::vector<int> rowEnds;  // where the last text of each row ends
  for (const Place& place : places) {
    const int height = place.annotation->height, x = place.x + kGap;
    auto row = std::find_if(rowEnds.begin(), rowEnds.end(), [&](int end) { return end <= place.x; });
    if (row == rowEnds.end() && rowEnds.size() < kMostRows) row = rowEnds.insert(rowEnds.end(), 0);
    // Where every row is taken the emptiest is written over.
    if (row == rowEnds.end()) row = std::min_element(rowEnds.begin(), rowEnds.end());
    *row = x + TextWidth(place.annotation->text, height) + kGap;
    const int middle = top + static_cast<int>(row - rowEnds.begin()) * rowHeight + rowHeight / 2;
    AddText(picture, x, middle, place.annotation->text, height, colours::kAnnotation);
  }
}

void AddCharacters(Picture& picture, const InsertedCharacters& characters, Pane pane, int left,
                   const std::function<int(int)>& columnOf) {
  if (!characters.shown) return;
  for (const PlacedText& item : characters.items) {
    if (item.pane != pane) continue;
    const int x = columnOf(item.sample);
    if (x < left || x >= picture.width) continue;
    AddText(picture, x, std::min(item.row, picture.height - 1), item.text, item.height, colours::kCharacters);
  }
}

}  // namespace parlowen
