#pragma once
#include <functional>
#include <optional>
#include <string>

#include "annotation/Annotations.h"
#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"
#include "palatography/PalateState.h"
#include "pitch/PitchCommands.h"
#include "prosody/IntonationState.h"
#include "prosody/ToneState.h"
#include "spectral/LtaCommands.h"
#include "synthesis/TargetCurve.h"
#include "ui/Text.h"
#include "ui/Window.h"
#include "voice/GlottalCommands.h"
#include "vowel/VowelChart.h"

namespace parlowen {

/// What the commands about markers work on, and what they ask of the marker window.
struct MarkerDesk {
  const SoundDocument& document;
  MarkerState& markers;
  AnnotationState& annotations;
  /// Reads the marker file beside the sound while the set is another sound's.
  std::function<void()> ensureRead = [] {};
  /// Opens or repaints the marker window over the set as it is.
  std::function<void()> show = [] {};
};

/// The markers of the present sound, read when they were not yet.
const MarkerSet& MarkersOf(const MarkerDesk& desk);
/// Asks where a table goes: beside `source`, under its name with `ending` behind it. Nothing when it was cancelled.
std::optional<std::string> AskCsvPath(Window& window, UiText title, const std::string& source,
                                      const char* ending);

// Markers. An import takes the place of the whole marker set, of the annotations only where the file has a
// tier for them; a refused file changes nothing. What did not fit is said.

void ImportTextGridCommand(Window& window, const MarkerDesk& desk);  ///< 41020
/// The same for a file that was chosen otherwise.
void ImportTextGridFile(Window& window, const MarkerDesk& desk, const std::string& path);
void ExportTextGridCommand(Window& window, const MarkerDesk& desk);    ///< 41021
void ImportLabelTrackCommand(Window& window, const MarkerDesk& desk);  ///< 41022
void ExportLabelTrackCommand(Window& window, const MarkerDesk& desk);  ///< 41023
void ExportMarkersCsvCommand(Window& window, const MarkerDesk& desk);  ///< 41034

// Analyses.

void ExportPitchTierCommand(Window& window, const SoundDocument& document);                   ///< 41024
void ExportPitchCommand(Window& window, const SoundDocument& document, PitchRange range);     ///< 41025
void ExportFormantCommand(Window& window, const SoundDocument& document);                     ///< 41026
void ExportPitchCsvCommand(Window& window, const SoundDocument& document, PitchRange range);  ///< 41027
void ExportLevelsCsvCommand(Window& window, const SoundDocument& document);                   ///< 41028
void ExportFormantsCsvCommand(Window& window, const SoundDocument& document);                 ///< 41029
void ExportLtaCsvCommand(Window& window, const LtaState& lta);                                ///< 41030
void ExportVowelChartCsvCommand(Window& window, const SoundDocument& document,
                                const VowelChart& chart);  ///< 41031
void ExportGlottalCsvCommand(Window& window, const SoundDocument& document,
                             const GlottalState& glottal);  ///< 41038
/// 41032 and 41033: ask for a statistics file and for the table's name.
void ExportDurationsCsvCommand(Window& window, const SoundDocument& document);
void ExportVowelGroupsCsvCommand(Window& window, const SoundDocument& document);
void ExportTonesCsvCommand(Window& window, const SoundDocument& document, const ToneState& tones);  ///< 41036
void ExportIntonationCsvCommand(Window& window, const SoundDocument& document,
                                const IntonationState& state);  ///< 41037
void ExportIntonationTierCommand(Window& window, const SoundDocument& document,
                                 const IntonationState& state);              ///< 41040
void ExportStereoWavCommand(Window& window, const SoundDocument& document);  ///< 41035
void ExportPalateCsvCommand(Window& window, const SoundDocument& document,
                            const PalateState& palate);  ///< 41039

/// Asks for a PitchTier file and gives its melody on the document's frames firstFrame .. firstFrame +
/// frameCount − 1; nothing when it was cancelled or refused, with its message.
std::optional<TargetCurve> ReadPitchTierTarget(Window& window, int sampleRate, int firstFrame,
                                               int frameCount);

}  // namespace parlowen
