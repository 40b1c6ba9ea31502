#include "prosody/ToneState.h"

#include <utility>

namespace parlowen {

void ToneState::SetItems(std::vector<ToneItem> newItems) {
  items = std::move(newItems);
  statistics = PoolTones(items, givenRange);
  // The last item of the group that is shown may have gone.
  if (view == ToneView::Group && statistics.GroupNamed(group) < 0) {
    view = ToneView::Pattern;
    picked = -1;
  }
}

void ToneState::SetGivenRange(const std::optional<ToneRange>& range) {
  givenRange = range;
  statistics = PoolTones(items, givenRange);
}

std::vector<int> ToneState::ShownItems() const {
  const int g = view == ToneView::Group ? statistics.GroupNamed(group) : -1;
  return g < 0 ? std::vector<int>{} : statistics.groups[static_cast<std::size_t>(g)].items;
}

}  // namespace parlowen
