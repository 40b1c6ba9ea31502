#pragma once
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "document/Activity.h"
#include "document/ContourKeeper.h"
#include "document/Edit.h"
#include "document/PitchContour.h"
#include "document/SoundStamp.h"
#include "dsp/LevelCurve.h"
#include "dsp/SampleSpan.h"
#include "ui/CommandStates.h"

namespace parlowen {

/// Samples a document may hold: 98.3 s at 16000 Hz.
inline constexpr int kMaxSamples = 1572864;
/// Room behind the capacity, always zero.
inline constexpr int kSampleHeadroom = 10000;
/// Both ends of the selection when there is none.
inline constexpr int kNoSelection = -1000;
/// The margin of a pane, in pixels.
inline constexpr int kPaneMargin = 20;
inline constexpr int kLargestSamplesPerPixel = 16384;
/// Sampling rates that a file may have, in Hz.
inline constexpr int kSmallestRate = 1000, kLargestRate = 384000;

/// The edit that can be taken back. The numbers are told to scripts.
enum class UndoKind : std::int16_t { None = 0, Cut = 1, Paste = 2 };

/// kMaxSamples + kSampleHeadroom samples, all zero at first; pages that are never written cost no memory.
class SampleBuffer {
 public:
  SampleBuffer() : data_(static_cast<std::int16_t*>(std::calloc(kCapacity, sizeof(std::int16_t)))) {
    if (!data_) std::abort();  // nothing works without the document's memory
  }
  std::int16_t* data() { return data_.get(); }
  const std::int16_t* data() const { return data_.get(); }
  std::int16_t& operator[](int i) { return data_[static_cast<std::size_t>(i)]; }
  std::int16_t operator[](int i) const { return data_[static_cast<std::size_t>(i)]; }

  static constexpr std::size_t kCapacity = kMaxSamples + kSampleHeadroom;

 private:
  struct Free {
    void operator()(std::int16_t* memory) const { std::free(memory); }
  };
  std::unique_ptr<std::int16_t[], Free> data_;
};

/// The one loaded sound. A new load replaces it; it is never closed. All positions are samples, ends are
/// exclusive. Samples at and behind `sampleCount` are zero.
class SoundDocument {
 public:
  SoundDocument();

  SampleBuffer samples;   ///< channel 1
  SampleBuffer samples2;  ///< channel 2, meaningful while `twoChannel`
  int sampleCount = 0;    ///< 0..kMaxSamples, in each channel
  int sampleRate = 0;     ///< Hz; 0 until a sound has been seen
  bool twoChannel = false;
  std::string filePath;  ///< "" until a file is opened or saved
  std::string nextDigitPath;
  /// The file at `filePath` holds more than was loaded and a save would write again: a second channel, what
  /// lies before or behind a stretch, records of another kind.
  bool partOfFile = false;
  bool fileTwoChannel = false;  ///< that file has two channels, which were both loaded
  int selectionStart = kNoSelection, selectionEnd = kNoSelection;
  int viewStart = 0, viewLength = 0;
  int pixelsPerSecond = 100;
  int samplesPerPixel = 1;   ///< 1..16384
  int paneWidth = 1024;      ///< pixels, the margin included
  SampleBuffer viewSamples;  ///< copy of `samples` from viewStart for viewLength: what drawing reads
  std::vector<std::int16_t> clipSamples;
  UndoKind undoKind = UndoKind::None;
  int undoPosition = 0, undoLength = 0;
  std::vector<std::int16_t> undoSamples;  ///< removed by the cut, or pushed over the capacity by the paste
  PitchContour pitch{}, pitchBackup{};
  PitchContour savedPitch{};  ///< as a file was given it last
  bool pitchPresent = false;
  ContourKeeper contourKeeper;
  int longFileSeconds = 0;  ///< whole seconds of a file too long to load whole, at most 32767
  int longFileStart = 0;    ///< its first loaded sample
  Activity activity = Activity::Start;
  int insertPoint = 0;
  bool pasteReady = false;

  /// Counts loads, recordings and conversions. Results keep it as their stamp.
  std::uint64_t soundGeneration = 0;
  SoundStamp Stamp() const { return {soundGeneration}; }
  /// Counts changes of the samples, for everything that is derived from them.
  std::uint64_t samplesVersion = 0;

  /// Takes the samples already in place as a new sound: start scale, no selection, nothing to undo,
  /// `activity` 1, and the command states of a loaded sound. The contour is the caller's to set.
  void resetForNewSound(int count, int rate, CommandStates& states);

  /// A tool window has opened: its activity is in hand until another's begins. One that was open before under the same
  /// name has ended its own by then.
  void BeginTool(Activity tool);
  /// A tool window has closed. Was its activity in hand, then the one that was opened last of those still open is.
  void EndTool(Activity tool);
  /// What is in hand when a mode of the panes ends: the tool window opened last, 1 without any.
  Activity OpenTool() const { return openTools_.empty() ? Activity::Waveform : openTools_.back(); }

  /// Brings viewStart into the sound, recomputes viewLength and the copy that is drawn, and the states of the
  /// commands that page. Without a selection start the insert point follows a view that moved or was zoomed.
  void setView(CommandStates& states);

  /// Reads the samples that there are at another rate, as the settings and a rejected file do: the contour and
  /// whatever was derived go, and the scale stays the start scale unless the user has zoomed.
  void TakeRate(int rate, CommandStates& states);

  bool selectionDefined() const { return selectionStart >= 0 && selectionEnd > selectionStart; }
  int SelectionLength() const { return selectionDefined() ? selectionEnd - selectionStart : 0; }
  CommandStates::SelectionFacts SelectionFacts() const;
  void ClearSelection() { selectionStart = selectionEnd = kNoSelection; }

  /// 10 ms frames of the sound: sampleCount·100/sampleRate.
  int frameCount() const;
  /// Frames that the contour can speak of: at most kUsableContourFrames.
  int ContourLength() const;
  /// True when the contour was changed by hand since it was computed or loaded, and is in no file so.
  bool HasRepairedContour() const;
  /// To be called when the contour was written to a file.
  void ContourSaved() { savedPitch = pitch; }
  /// True when the file at `filePath` would lose something if the document took its place.
  /// Samples of its file before the loaded part; 0 for a whole file.
  int PartStart() const { return longFileSeconds > 0 ? longFileStart : 0; }
  bool IsPartOfFile() const { return !filePath.empty() && (partOfFile || (fileTwoChannel && !twoChannel)); }
  /// All values −1.0, no contour present; the backup too.
  void resetPitch();
  /// Takes periods computed for these frames into the contour and its backup.
  void TakePeriods(int firstFrame, std::span<const float> periods);

  /// True while a column of the time panes is 10 ms.
  bool AtStartScale() const { return samplesPerPixel == StartSamplesPerPixel(); }
  int StartSamplesPerPixel() const;
  /// Samples that a whole pane shows at the present scale.
  int FullViewLength() const;
  bool IsLongerThanView() const { return sampleCount > FullViewLength(); }

  SampleSpan Samples() const { return {samples.data(), sampleCount}; }

  /// The amplitude curve: 300 levels in dB a second from sample 0 on. Made when it is asked for, dropped when
  /// the samples change. Needs InitSignalTables().
  const LevelCurve& Levels() const;

  /// An edit that begins at a sample: the sound as it is now.
  Edit BeginEdit(EditKind kind, int at) const;
  /// To be called when its samples are in place and the rest of it is filled in: adds the sound as it has
  /// become and lets the contour follow.
  void EndEdit(Edit& edit);

  /// To be called by whoever changed samples: zeroes what lies behind the end, renews the drawn copy.
  void SamplesChanged();

 private:
  void CopyView();
  std::vector<Activity> openTools_;      ///< of the open tool windows, the last opened last
  int shownStart_ = 0, shownScale_ = 0;  ///< the view as it was set last
  mutable LevelCurve levels_;
  mutable std::uint64_t levelsVersion_ = ~std::uint64_t{0};
  mutable int levelsRate_ = 0;
  int dirtyEnd_ = 0;  ///< samples from here on were never written since they were last zeroed
};

}  // namespace parlowen
