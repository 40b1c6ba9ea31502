#include "channels/ChannelsState.h"

#include <utility>

namespace parlowen {

const NasalanceCurve& ChannelsState::Curve(const SoundDocument& document) const {
  if (OpenedCounts(document)) return opened_->curve;
  Key key{document.samplesVersion, 0, 0, document.sampleRate, settings.fullBand, settings.gainRatio};
  if (document.twoChannel) {
    key.start = document.selectionDefined() ? document.selectionStart : 0;
    key.end = document.selectionDefined() ? document.selectionEnd : document.sampleCount;
  }
  if (key == key_) return measured_;
  key_ = key;
  measured_ = MeasureNasalance(document.Samples(), {document.samples2.data(), document.sampleCount},
                               document.sampleRate, key.start, key.end, settings);
  return measured_;
}

void ChannelsState::ShowOpened(NasalanceCurve curve, std::string fileName, const SoundDocument& document) {
  opened_ = Opened{std::move(curve), std::move(fileName), document.Stamp(), document.selectionStart,
                   document.selectionEnd};
}

std::string ChannelsState::OpenedName(const SoundDocument& document) const {
  return OpenedCounts(document) ? opened_->name : "";
}

bool ChannelsState::OpenedCounts(const SoundDocument& document) const {
  return opened_ && opened_->sound == document.Stamp() &&
         opened_->selectionStart == document.selectionStart && opened_->selectionEnd == document.selectionEnd;
}

}  // namespace parlowen
