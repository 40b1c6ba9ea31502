#pragma once
#include <cstdint>
#include <vector>

#include "document/SoundDocument.h"
#include "document/SoundStamp.h"
#include "prosody/GroupFlow.h"
#include "ui/CommandStates.h"
#include "vowel/GroupPlot.h"
#include "vowel/VowelChart.h"

namespace parlowen {

/// What the vowel commands keep for the whole run of the program, over all sounds.
struct VowelState {
  VowelChart chart;
  bool showNumbers = false;          ///< beside the points
  std::vector<int> averages;         ///< speaker classes drawn over the point chart
  std::vector<int> segmentAverages;  ///< and over the segment chart
  int lastClick = -1;                ///< sample; meant for that sound only
  SoundStamp lastClickSound;
  CurrentGroup group;  ///< of the statistics
  GroupPlot plot;
};

/// What the commands of the charts work on; all of it outlives them.
struct VowelDesk {
  SoundDocument& document;
  CommandStates& states;
  VowelState& vowels;
};

}  // namespace parlowen
