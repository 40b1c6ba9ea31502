#pragma once
#include "base/FlagSet.h"
#include "ui/Text.h"

namespace parlowen {

/// What a command can wait for: facts that CommandStates is told. A command can be chosen while all that its row needs
/// holds; else the user is told the first that is missing, in this order.
enum class Need {
  Recording,       ///< a recording or gain test runs; then nothing else can be chosen
  Playing,         ///< a play runs
  Microphone,      ///< there is an input device
  TwoChannelFile,  ///< the last load or recording had two channels, whatever an edit has made of it since
  TwoChannels,     ///< the sound has two channels now
  PalateFile,      ///< the sound came with contacts of the palate
  Sound,           ///< a sound was opened or recorded, perhaps an empty one
  Samples,         ///< the sound is not empty
  LowRate,         ///< the rate of the last load or setting was below kHighRate
  LowRateOnce,  ///< it, or that of a sound before it, was: these rows have no rule for high rates and keep their state
  MarkedAtLowRate,  ///< the rate was below kHighRate when the edges of the selection were set last. A rejected file can
                    ///< leave another rate than the load had.
  Selection,           ///< the edges that were set last make a stretch
  EditableSelection,   ///< and neither a cut nor a paste came after them
  ClearableSelection,  ///< and no cut came after them; a paste can be cleared too
  PlayableSelection,   ///< and they are at least kLeastPlayed samples apart
  Contour,             ///< pitch was computed or read
  LongSound,           ///< the sound is longer than the view
  Clip,                ///< something was cut or copied, from this sound or one before it
  Undo,                ///< the last cut or paste can be taken back
  Region,              ///< a region of a pane is chosen
  VowelChart,          ///< a vowel chart is shown
  ChartedPoints,       ///< the point chart is shown and has points
  Points,              ///< the point chart has points, shown or not
  NoStatistics,        ///< no tone statistics are open
  Statistics,          ///< tone statistics are open
  Picture,             ///< the analysis pane shows a picture
  ContactFrames,       ///< contacts of the palate fit the sound as it is
  LongTermSpectrum,    ///< there is a long-term spectrum, with finite levels
  GlottalWave,         ///< the glottal wave of a stretch was estimated
  ToneItems,           ///< the run of tone statistics has items
  Intonation,          ///< the intonation of a stretch of this sound was analysed
  kCount
};

using Needs = FlagSet<Need>;
constexpr Needs operator|(Need a, Need b) { return Needs(a) | Needs(b); }

/// What to do about a need that is not met: "先用左、右键选定一段".
UiText ReasonOf(Need need);

}  // namespace parlowen
