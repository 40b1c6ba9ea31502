#include "document/ContourKeeper.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace parlowen {
namespace {

std::size_t Index(int frame) { return static_cast<std::size_t>(frame); }

template <typename Values>
auto FirstOf(const Values& values, int count) {
  return std::vector(values.begin(), values.begin() + count);
}

/// A frame and what lies between its centre and the sound of its value, in hundredths of a sample.
struct Place {
  int frame = 0;
  std::int32_t rest = 0;
};

/// Where a frame behind an edit goes.
Place MovedBehind(const Place& old, const Edit& edit) {
  const std::int64_t distance = std::int64_t{edit.inserted - edit.removed} * 100 + old.rest;
  const std::int64_t rate = edit.newRate;
  const std::int64_t frames = (2 * std::abs(distance) + rate) / (2 * rate) * (distance < 0 ? -1 : 1);
  return {static_cast<int>(old.frame + frames), static_cast<std::int32_t>(distance - frames * rate)};
}

}  // namespace

void ContourKeeper::Restart() {
  rest_.fill(0);
  before_.reset();
  ++version_;
}

void ContourKeeper::Computed(int first, int count) {
  std::fill_n(rest_.begin() + first, count, 0);
  if (before_) {
    const int known = std::min(first + count, static_cast<int>(before_->computed.size()));
    std::fill(before_->computed.begin() + std::min(first, known), before_->computed.begin() + known, true);
  }
  ++version_;
}

void ContourKeeper::Follow(const Edit& edit, PitchContour& pitch, PitchContour& backup) {
  before_.reset();
  ++version_;
  if (edit.newRate <= 0) return;
  const int oldLength = ContourLengthOf(edit.oldCount, edit.newRate);
  const int newLength = ContourLengthOf(edit.newCount, edit.newRate);
  const int touched = std::max(oldLength, newLength);
  Before before{FirstOf(pitch, touched), FirstOf(backup, touched), FirstOf(rest_, touched), {}, {}, {}};
  before.source.assign(Index(touched), -1);
  before.computed.assign(Index(touched), false);
  std::fill_n(pitch.begin(), touched, kUnvoiced);
  std::fill_n(backup.begin(), touched, kUnvoiced);
  std::fill_n(rest_.begin(), touched, 0);

  const auto put = [&](int source, const Place& place) {
    pitch[Index(place.frame)] = before.pitch[Index(source)];
    backup[Index(place.frame)] = before.backup[Index(source)];
    rest_[Index(place.frame)] = place.rest;
    before.source[Index(place.frame)] = source;
  };
  const std::int64_t rate = edit.newRate;
  const std::int64_t seam = std::int64_t{edit.at} * 100, behind = seam + std::int64_t{edit.inserted} * 100;
  for (int f = 0; f < std::min(oldLength, newLength) && (f + 2) * rate <= seam; ++f)
    put(f, {f, before.rest[Index(f)]});
  // A frame that begins behind the last seam in the new sound was centred behind the removed stretch: it lies
  // half a frame from its true place at most.
  for (int f = 0; f < oldLength; ++f) {
    const Place place = MovedBehind({f, before.rest[Index(f)]}, edit);
    if (place.frame < 0 || place.frame * rate < behind || place.frame >= newLength) continue;
    const int other = before.source[Index(place.frame)];
    // Two stretches between seams that were rounded apart may meet: a period goes before none.
    if (other < 0 || !(before.pitch[Index(other)] > 0)) put(f, place);
  }
  before.after = FirstOf(pitch, touched);
  before_ = std::move(before);
}

void ContourKeeper::Undo(const Edit& edit, PitchContour& pitch, PitchContour& backup) {
  if (!before_) {
    Follow(edit, pitch, backup);
    before_.reset();
    return;
  }
  const Before before = *std::exchange(before_, std::nullopt);
  ++version_;
  const auto touched = static_cast<int>(before.after.size());
  const std::vector<float> newPitch = FirstOf(pitch, touched), newBackup = FirstOf(backup, touched);
  std::copy(before.pitch.begin(), before.pitch.end(), pitch.begin());
  std::copy(before.backup.begin(), before.backup.end(), backup.begin());
  std::copy(before.rest.begin(), before.rest.end(), rest_.begin());

  // What was computed anew does not come back as it was before, not even where rounding leaves a frame free.
  for (int f = 0; f < touched; ++f)
    if (const int source = before.source[Index(f)]; source >= 0 && before.computed[Index(f)])
      pitch[Index(source)] = backup[Index(source)] = kUnvoiced;
  const std::int64_t rate = edit.newRate;
  const std::int64_t seam = std::int64_t{edit.at} * 100, behind = seam + std::int64_t{edit.removed} * 100;
  const int length = ContourLengthOf(edit.newCount, edit.newRate);
  for (int f = 0; f < touched; ++f) {
    const bool computed = before.computed[Index(f)];
    if (!computed && newPitch[Index(f)] == before.after[Index(f)]) continue;
    // A computed value speaks of its whole window, a repaired one stands where the user put it.
    const int reach = computed ? 1 : 0;
    Place place{f, 0};
    if (!computed && before.source[Index(f)] >= 0) {
      place.frame = before.source[Index(f)];
    } else if ((f + 1 - reach) * rate >= behind) {
      place = MovedBehind(place, edit);
    } else if ((f + 1 + reach) * rate > seam) {
      continue;
    }
    if (place.frame < 0 || place.frame >= length) continue;
    pitch[Index(place.frame)] = newPitch[Index(f)];
    if (!computed) continue;
    backup[Index(place.frame)] = newBackup[Index(f)];
    rest_[Index(place.frame)] = place.rest;
  }
}

void ContourKeeper::Convert(const Edit& edit, PitchContour& pitch, PitchContour& backup) {
  before_.reset();
  ++version_;
  if (edit.oldRate <= 0) return;
  const double ratio = static_cast<double>(edit.newRate) / edit.oldRate;
  for (PitchContour* contour : {&pitch, &backup})
    for (float& value : *contour)
      if (value > 0) value = static_cast<float>(value * ratio);
  for (std::int32_t& rest : rest_)
    rest = static_cast<std::int32_t>(std::int64_t{rest} * edit.newRate / edit.oldRate);
}

}  // namespace parlowen
