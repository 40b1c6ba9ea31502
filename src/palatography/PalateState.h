#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "palatography/ContactFrames.h"
#include "palatography/NspFile.h"
#include "palatography/PalateFile.h"
#include "ui/Text.h"

namespace parlowen {

/// What is wrong with a recording, or with what an edit has left of it.
inline constexpr UiText kPalateDamaged = "数据错误！", kPalateEdited = "波形已改变，腭位数据不再对应！";

/// What to do in the window of the palates.
inline constexpr UiText kPalateHint = "左键：选帧；←→：逐帧；D：总接触；Z：重心";

/// Why the contact frames of the loaded sound cannot be shown.
enum class ContactFault {
  None,
  Damaged,  ///< no frames, a length that is none of whole frames, or no sound that they could belong to
  Edited    ///< the sound has another number of samples than when they were read
};

/// The palate recording whose speech is in the document. It lasts until another sound is loaded.
struct PalateState {
  bool loaded = false;
  EpgRecording recording;     ///< without its samples: those are the document's
  SoundStamp sound;           ///< the load that it belongs to
  int toldRate = 0;           ///< frames a second as the import was told; 0: they fill the sound
  std::string libraryFolder;  ///< of the palate file opened last, whatever sound has come since; "" for none

  /// Speech, preference record and palate frames, or frames that were imported: what the displays need.
  bool IsComplete() const {
    return loaded && recording.hasPalate && (recording.hasPreferences || toldRate > 0);
  }
  /// True while a sample of the document is the sample of the file: not after a cut, paste or rate
  /// conversion.
  bool FitsSamples(const SoundDocument& document) const {
    return loaded && sound == document.Stamp() && recording.sampleCount == document.sampleCount &&
           recording.sampleRate == document.sampleRate;
  }
  /// All but the folder.
  void DropRecording() {
    PalateState none;
    none.libraryFolder = std::move(libraryFolder);
    *this = std::move(none);
  }
};

ContactFault FaultOf(const PalateState& palate, const SoundDocument& document);

/// When the contact frames of the document's sound begin; no frames while there is something against them.
ContactTiming TimingOf(const PalateState& palate, const SoundDocument& document);
/// Those frames.
std::span<const ContactFrame> FramesOf(const PalateState& palate, const SoundDocument& document);

/// The statistics that are shown, and what the window was told about them.
struct PalateStatistics {
  std::vector<PalateRecord> records;       ///< of a file, or the one just made; none: nothing to show
  bool ofFile = false;                     ///< then the mean over the records stands before them
  int shown = 0;                           ///< 0 the mean, 1 .. the records
  std::string name;                        ///< of the file; "" for a stretch of the sound
  std::optional<ContactStatistics> other;  ///< the means of a second file, to compare with
  std::string otherName;

  bool ShowsMean() const { return ofFile && shown == 0; }
  /// The numbers shown; needs a record.
  ContactStatistics Shown() const;
  int ShownRecords() const {
    return ShowsMean() ? static_cast<int>(records.size()) : records.empty() ? 0 : 1;
  }
  std::int64_t ShownFrames() const;  ///< of those records together
};

/// What the window "palate" shows. It has one of two faces: the frames over the sound or the statistics.
struct PalateView {
  bool framesOpen = false;    ///< the window shows frames now
  bool withSpectrum = false;  ///< and the wide-band picture
  int current = 0;            ///< the frame looked at
  bool showTotal = true, showGravity = true;
  PalateStatistics statistics;
  SoundStamp sound;  ///< that they belong to
};

/// The stretch that the window shows: the selection, without one the whole sound.
struct PalateStretch {
  int start = 0, end = 0;  ///< samples
};
PalateStretch ShownStretchOf(const SoundDocument& document);

/// The frames of that stretch; empty without frames.
ContactSpan ShownFramesOf(const ContactTiming& timing, const SoundDocument& document);

/// To be called when the selection or the sound has changed: a frame looked at that is not shown any more gives way
/// to the first one shown.
void FollowShownFrames(PalateView& view, const PalateState& palate, const SoundDocument& document);

/// The sample at which the frame looked at begins, while the window shows frames; nothing otherwise.
std::optional<int> CurrentFrameSample(const PalateView& view, const PalateState& palate,
                                      const SoundDocument& document);

}  // namespace parlowen
