#include "document/SoundDocument.h"

#include <algorithm>

#include "base/Arithmetic.h"
#include "document/Frames.h"

namespace parlowen {

SoundDocument::SoundDocument() { resetPitch(); }

void SoundDocument::resetForNewSound(int count, int rate, CommandStates& states) {
  sampleCount = count;
  sampleRate = rate;
  pixelsPerSecond = 100;
  samplesPerPixel = StartSamplesPerPixel();
  ClearSelection();
  undoKind = UndoKind::None;
  undoPosition = undoLength = 0;
  undoSamples.clear();
  viewStart = insertPoint = 0;
  ++soundGeneration;
  SamplesChanged();
  setView(states);
  activity = Activity::Waveform;
  states.onSoundLoaded(sampleRate);
  states.onSelectionChanged(SelectionFacts());
}

void SoundDocument::BeginTool(Activity tool) {
  std::erase(openTools_, tool);
  openTools_.push_back(tool);
  activity = tool;
}

void SoundDocument::EndTool(Activity tool) {
  std::erase(openTools_, tool);
  if (activity == tool) activity = OpenTool();
}

void SoundDocument::setView(CommandStates& states) {
  viewStart = std::clamp(viewStart, 0, std::max(0, sampleCount - 1));
  viewLength = std::min(sampleCount - viewStart, FullViewLength());
  const bool moved = viewStart != shownStart_ || samplesPerPixel != shownScale_;
  if (moved && selectionStart < 0) insertPoint = viewStart;
  shownStart_ = viewStart;
  shownScale_ = samplesPerPixel;
  CopyView();
  states.onViewChanged(IsLongerThanView());
}

void SoundDocument::TakeRate(int rate, CommandStates& states) {
  if (rate == sampleRate) return;
  const bool zoomed = !AtStartScale();
  sampleRate = rate;
  if (!zoomed) samplesPerPixel = StartSamplesPerPixel();
  resetPitch();
  SamplesChanged();
  setView(states);
}

CommandStates::SelectionFacts SoundDocument::SelectionFacts() const {
  return {selectionDefined(), SelectionLength(), sampleRate, pitchPresent};
}

int SoundDocument::frameCount() const { return FrameOfSample(sampleCount, sampleRate); }

int SoundDocument::ContourLength() const { return ContourLengthOf(sampleCount, sampleRate); }

bool SoundDocument::HasRepairedContour() const {
  const auto end = pitch.begin() + ContourLength();
  return !std::equal(pitch.begin(), end, pitchBackup.begin()) &&
         !std::equal(pitch.begin(), end, savedPitch.begin());
}

void SoundDocument::resetPitch() {
  pitch.fill(kNoValue);
  pitchBackup.fill(kNoValue);
  savedPitch.fill(kNoValue);
  pitchPresent = false;
  contourKeeper.Restart();
}

void SoundDocument::TakePeriods(int firstFrame, std::span<const float> periods) {
  std::copy(periods.begin(), periods.end(), pitch.begin() + firstFrame);
  std::copy(periods.begin(), periods.end(), pitchBackup.begin() + firstFrame);
  pitchPresent = true;
  contourKeeper.Computed(firstFrame, static_cast<int>(periods.size()));
}

Edit SoundDocument::BeginEdit(EditKind kind, int at) const {
  Edit edit;
  edit.kind = kind;
  edit.at = at;
  edit.oldCount = edit.newCount = sampleCount;
  edit.oldRate = edit.newRate = sampleRate;
  edit.soundBefore = Stamp();
  return edit;
}

void SoundDocument::EndEdit(Edit& edit) {
  edit.newCount = sampleCount;
  edit.newRate = sampleRate;
  SamplesChanged();
  if (!pitchPresent) return;
  switch (edit.kind) {
    case EditKind::None: break;
    case EditKind::Cut:
    case EditKind::Paste: contourKeeper.Follow(edit, pitch, pitchBackup); break;
    case EditKind::Undo: contourKeeper.Undo(edit, pitch, pitchBackup); break;
    case EditKind::RateConversion: contourKeeper.Convert(edit, pitch, pitchBackup); break;
  }
}

int SoundDocument::StartSamplesPerPixel() const {
  return std::clamp(sampleRate / 100, 1, kLargestSamplesPerPixel);
}

int SoundDocument::FullViewLength() const {
  const std::int64_t columns = std::max(0, paneWidth - kPaneMargin);
  return SaturateInt32(AtStartScale() ? columns * sampleRate / pixelsPerSecond : columns * samplesPerPixel);
}

void SoundDocument::SamplesChanged() {
  for (SampleBuffer* channel : {&samples, &samples2})
    if (sampleCount < dirtyEnd_)
      std::fill(channel->data() + sampleCount, channel->data() + dirtyEnd_, std::int16_t{0});
  dirtyEnd_ = sampleCount;
  ++samplesVersion;
  CopyView();
}

const LevelCurve& SoundDocument::Levels() const {
  constexpr int kLevelsPerSecond = 300;
  // A rejected file may have left another rate.
  if (levelsVersion_ != samplesVersion || levelsRate_ != sampleRate) {
    const std::int64_t count =
        sampleRate > 0 ? std::int64_t{sampleCount} * kLevelsPerSecond / sampleRate + 1 : 0;
    levels_ = MakeLevelCurve(Samples(), sampleRate, kLevelsPerSecond, 0, static_cast<int>(count));
    levelsVersion_ = samplesVersion;
    levelsRate_ = sampleRate;
  }
  return levels_;
}

void SoundDocument::CopyView() {
  const int length = std::clamp(sampleCount - viewStart, 0, std::max(0, viewLength));
  std::copy_n(samples.data() + viewStart, length, viewSamples.data());
}

}  // namespace parlowen
