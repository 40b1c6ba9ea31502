#pragma once
#include "base/JsonLine.h"
#include "prosody/IntonationState.h"
#include "prosody/ToneState.h"

namespace parlowen {

// The fields of `print degree`, `print tones` and `print intonation`. What is not defined is null.

void DegreeValue(const DegreeState& degree, JsonObject& event);
void TonesValue(const ToneState& tones, JsonObject& event);
void IntonationValue(const IntonationState& state, JsonObject& event);

}  // namespace parlowen
