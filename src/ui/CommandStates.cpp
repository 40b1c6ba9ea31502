#include "ui/CommandStates.h"

namespace parlowen {

CommandStates::CommandStates() {
  Enable({110, 140, 270, 40008});
  // Offered by the annotation, palatography and two-channel services without a sound.
  Enable({40078, 40060, 40083, 40084, 40110, 40116});
}

void CommandStates::enableCommand(int command, bool enable) {
  if (enable) {
    enabled_.insert(command);
  } else {
    enabled_.erase(command);
  }
}

std::vector<int> CommandStates::Enabled() const {
  if (recording_) return {kStopRecording};
  return {enabled_.begin(), enabled_.end()};
}

void CommandStates::onSoundLoaded(int sampleRate, bool pitchStatisticsOpen) {
  Enable({220, 170, 180, 190, 200, 205, 40066, 210, 120, 130, 40093, 40023, 40077, 40042, 40108, 40005, 40109,
          40102});
  EnableByRate(sampleRate);
  Enable({40053, 40055, 40054, 215, 40104, 40041, 40021, 40010});
  Grey({160, 40081, 40024, 40050, 40068, 274, 40001, 40040, 40002, 40006, 40007, 40036, 40074});
  Enable({40076, 40026, 40105, 40117, 40106, 40115});
  enableCommand(40029, !pitchStatisticsOpen && sampleRate < kHighRate);
  Grey({40004, 40061, 40049, 40087, 40088});
  Enable({40090});
  // The annotation service's own rows.
  Enable({40079, 40080});
  Grey({40015});
}

void CommandStates::onRateChanged(int sampleRate, bool pitchStatisticsOpen) {
  EnableByRate(sampleRate);
  enableCommand(40029, !pitchStatisticsOpen && sampleRate < kHighRate);
}

void CommandStates::EnableByRate(int sampleRate) {
  if (sampleRate >= kHighRate) {
    // 40095, 40096, 40062, 40063 and 40064 keep their state.
    Grey({212, 40089, 40057, 40051, 40069, 40073, 40082, 40070, 40058, 40033});
  } else {
    Enable({212, 40089, 40057, 40051, 40069, 40073, 40082, 40070, 40058, 40033, 40095, 40096, 40062, 40063,
            40064});
  }
}

void CommandStates::onSelectionChanged(const SelectionFacts& facts) {
  for (const int command : {40001, 40002, 40040, 40004, 40006, 40007, 40074})
    enableCommand(command, facts.defined);
  const bool playable = facts.defined && facts.length >= 51;
  const bool lowRate = facts.sampleRate < kHighRate;
  enableCommand(160, playable);
  enableCommand(40024, playable);
  enableCommand(40081, playable && lowRate);
  for (const int command : {40056, 40067, 40068, 41026, 41029})
    enableCommand(command, facts.defined && lowRate);
  onContourChanged(facts);
}

void CommandStates::onContourChanged(const SelectionFacts& facts) {
  for (const int command : {40050, 40052}) enableCommand(command, facts.defined && facts.pitchPresent);
  for (const int command : {40103, 41024, 41025, 41027}) enableCommand(command, facts.pitchPresent);
}

void CommandStates::onViewChanged(bool soundIsLonger) {
  for (const int command : {40013, 40027, 40014}) enableCommand(command, soundIsLonger);
}

void CommandStates::onTwoChannelChanged(bool twoChannel) {
  for (const int command : {40111, 40113, 40114}) enableCommand(command, twoChannel);
}

void CommandStates::onCut() {
  Enable({40003, 40036});
  Grey({40001, 40040, 40002, 40004, 40006, 40007, 40074});
}

void CommandStates::onCopy() { Enable({40003}); }

void CommandStates::onPaste() {
  Grey({40001, 40002, 40040, 40006, 40007, 40074});
  Enable({40004, 40036});
}

void CommandStates::onUndo() { Grey({40036}); }

}  // namespace parlowen
