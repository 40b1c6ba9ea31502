#include "document/Editing.h"

#include <algorithm>
#include <span>

namespace parlowen {
namespace {

void OpenGap(SoundDocument& document, int at, int length, int newCount) {
  std::int16_t* data = document.samples.data();
  std::copy_backward(data + at, data + newCount - length, data + newCount);
}

std::span<std::int16_t> SelectedSamples(SoundDocument& document) {
  if (!document.selectionDefined()) return {};
  const int end = std::min(document.selectionEnd, document.sampleCount);
  const int start = std::min(document.selectionStart, end);
  return {document.samples.data() + start, static_cast<std::size_t>(end - start)};
}

}  // namespace

bool CopySelection(SoundDocument& document) {
  const auto selected = SelectedSamples(document);
  if (selected.empty()) return false;
  document.clipSamples.assign(selected.begin(), selected.end());
  document.pasteReady = true;
  return true;
}

Edit CutSelection(SoundDocument& document) {
  if (!CopySelection(document)) return {};
  Edit edit = document.BeginEdit(EditKind::Cut, document.selectionStart);
  const auto length = static_cast<int>(document.clipSamples.size());
  document.undoKind = UndoKind::Cut;
  document.undoPosition = document.selectionStart;
  document.undoLength = length;
  document.undoSamples = document.clipSamples;
  std::int16_t* data = document.samples.data();
  std::copy(data + document.selectionStart + length, data + document.sampleCount,
            data + document.selectionStart);
  document.sampleCount -= length;
  document.ClearSelection();
  edit.removed = length;
  document.EndEdit(edit);
  return edit;
}

Edit PasteClip(SoundDocument& document) {
  const auto clipLength = static_cast<int>(document.clipSamples.size());
  const int oldCount = document.sampleCount;
  const int newCount = std::min(oldCount + clipLength, kMaxSamples);
  const int lost = oldCount + clipLength - newCount;
  std::int16_t* data = document.samples.data();
  document.insertPoint = std::clamp(document.insertPoint, 0, oldCount);
  const int at = document.insertPoint;
  Edit edit = document.BeginEdit(EditKind::Paste, at);

  // The end of the old sound that no longer fits. Where the clip itself reaches over the capacity, all behind
  // the insert point is lost, and no more.
  const int lostOfSound = std::min(lost, oldCount - at);
  document.undoSamples.assign(data + oldCount - lostOfSound, data + oldCount);
  document.undoKind = UndoKind::Paste;
  document.undoPosition = at;
  document.undoLength = clipLength;

  const int inserted = std::min(clipLength, newCount - at);
  OpenGap(document, at, inserted, newCount);
  std::copy_n(document.clipSamples.begin(), inserted, data + at);
  document.sampleCount = newCount;
  edit.inserted = inserted;
  document.EndEdit(edit);
  return edit;
}

Edit UndoEdit(SoundDocument& document) {
  if (document.undoKind == UndoKind::None) return {};
  std::int16_t* data = document.samples.data();
  const int at = document.undoPosition;
  Edit edit = document.BeginEdit(EditKind::Undo, at);
  if (document.undoKind == UndoKind::Cut) {
    const int newCount = document.sampleCount + document.undoLength;
    OpenGap(document, at, document.undoLength, newCount);
    std::copy(document.undoSamples.begin(), document.undoSamples.end(), data + at);
    document.sampleCount = newCount;
    edit.inserted = document.undoLength;
  } else {
    const int inserted = std::min(document.undoLength, document.sampleCount - at);
    std::int16_t* const end = std::copy(data + at + inserted, data + document.sampleCount, data + at);
    document.sampleCount =
        static_cast<int>(std::copy(document.undoSamples.begin(), document.undoSamples.end(), end) - data);
    edit.removed = inserted;
  }
  document.undoKind = UndoKind::None;
  document.undoSamples.clear();
  document.EndEdit(edit);
  return edit;
}

bool AmplifySelection(SoundDocument& document) {
  bool clipped = false;
  for (std::int16_t& sample : SelectedSamples(document)) {
    if (sample > -16384 && sample < 16384) {
      sample = static_cast<std::int16_t>(2 * sample);
    } else {
      sample = sample > 0 ? INT16_MAX : INT16_MIN;
      clipped = true;
    }
  }
  document.SamplesChanged();
  return clipped;
}

void AttenuateSelection(SoundDocument& document) {
  for (std::int16_t& sample : SelectedSamples(document)) sample = static_cast<std::int16_t>(sample / 2);
  document.SamplesChanged();
}

}  // namespace parlowen
