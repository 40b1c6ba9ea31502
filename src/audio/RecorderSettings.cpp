#include "audio/RecorderSettings.h"

namespace parlowen {

int RecorderSettings::ThresholdPercent() const { return (voiceThreshold * voiceThreshold + 72) / 144; }

}  // namespace parlowen
