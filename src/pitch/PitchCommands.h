#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "pitch/FastPitch.h"
#include "pitch/PitchRepair.h"
#include "spectral/SpectrogramState.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

/// What the pitch commands keep between calls.
struct PitchState {
  PitchRange range = PitchRange::Automatic;
  int paneWidth = 1024;  ///< the pitch pane's width that the analysis counts with, whatever the window's is
  PitchRepair repair;
};

/// 220: the contour of the whole sound, both stages. Stopped: nothing changes.
bool PitchCommand(Window& window, SoundDocument& document, CommandStates& states, const PitchState& state);

/// 40005: the second stage, guided only by the level and noise test of the first.
bool PitchByCorrelationCommand(Window& window, SoundDocument& document, CommandStates& states,
                               const PitchState& state);

/// 40103: asks for the range and analyses the selection again, without one everything.
bool PitchAgainCommand(Window& window, SoundDocument& document, CommandStates& states, PitchState& state);

/// 40050: adds the selection's contour to a pitch data file.
void SavePitchSegment(Window& window, const SoundDocument& document);

inline constexpr UiText kBadPitchFile = "基频数据文件错误！";

/// Asks for a pitch data file and reads it; nothing when it was cancelled or is not there, which has been
/// said then.
std::optional<std::vector<std::uint8_t>> AskPitchFile(Window& window);

/// 40051: writes "Pitch.txt" from a pitch data file into `exportFolder` ("" is the current directory). 0, or
/// 1 when nothing was listed; after a broken record the text holds the records before it.
int ListPitchFile(Window& window, const SoundDocument& document, const std::string& exportFolder);
/// The full path of that file.
std::string PitchListingPath(const std::string& exportFolder);

/// 40042, and 40108 with the cepstrum: shows the picture of the selection and lets the contour be repaired
/// over it.
bool RepairPitchCommand(Window& window, SoundDocument& document, SpectrogramState& spectrogram,
                        PitchState& state, SpectrogramKind kind = SpectrogramKind::NarrowBand);

// The mouse and the keys while `activity` is 9. Points are in the picture.
void RepairClick(Window& window, SoundDocument& document, PitchRepair& repair, RepairPoint point,
                 MouseButton button);
/// A right drag.
void RepairMark(Window& window, const SoundDocument& document, PitchRepair& repair, int firstFrame,
                int lastFrame);
/// True when the key was used: 1–9, D, Up, Down, Z, R.
bool RepairKey(Window& window, SoundDocument& document, PitchRepair& repair, const std::string& key);
/// What to do while `activity` is 9.
UiText RepairHint(const PitchRepair& repair);

}  // namespace parlowen
