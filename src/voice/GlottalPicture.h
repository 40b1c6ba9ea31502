#pragma once
#include "dsp/SampleSpan.h"
#include "ui/Picture.h"
#include "voice/GlottalAnalysis.h"

namespace parlowen {

/// Column of a sample of the stretch in a window `width` pixels wide: 60 + trunc((n − start)·(width − 80)/length), and
/// back: the sample under a column, held to the stretch.
int GlottalColumn(const GlottalWave& wave, int sample, int width);
int GlottalSampleAt(const GlottalWave& wave, int x, int width);

/// From the top: speech, flow and derivative with the moments of closure over one axis of time, the second channel
/// (often a laryngograph) in grey below them; at the foot the mean harmonics and the table of measures. `chosen` is a
/// period or −1.
Picture GlottalPicture(const GlottalWave& wave, SampleSpan speech, SampleSpan second, int chosen, int width,
                       int height);

}  // namespace parlowen
