#include "interchange/FormantObject.h"

#include "interchange/FrameGrid.h"
#include "interchange/TextObject.h"

namespace parlowen {
namespace {

constexpr double kFullScale = 32768.0;

double FrameIntensity(const SoundDocument& document, int start, int length) {
  double sum = 0;
  for (int i = start; i < start + length; ++i) {
    const double sample = document.Samples().At(i) / kFullScale;
    sum += sample * sample;
  }
  return sum / length;
}

}  // namespace

std::string FormantText(const SoundDocument& document, const VowelTrack& track) {
  const int rate = document.sampleRate;
  TextObjectWriter out("Formant 2");
  out.PutNumber(0, "xmin", 0);
  out.PutNumber(0, "xmax", SecondsOf(document.sampleCount, rate));
  out.PutCount(0, "nx", track.frames.size());
  out.PutNumber(0, "dx", SecondsOf(track.step, rate));
  out.PutNumber(0, "x1", TimeOfFrameAt(track.start, rate));
  out.PutNumber(0, "maxnFormants", kMostFormants);
  out.PutLine(0, "frames []: ");
  for (std::size_t k = 0; k < track.frames.size(); ++k) {
    const FormantFrame& frame = track.frames[k];
    std::size_t used[kMostFormants], count = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(frame.count); ++i)
      if (frame.bandwidth[i] > 0) used[count++] = i;
    out.PutItem(1, "frames", k + 1);
    out.PutNumber(2, "intensity",
                  FrameIntensity(document, track.start + static_cast<int>(k) * track.step, rate / 50));
    out.PutCount(2, "nFormants", count);
    out.PutLine(2, "formant []: ");
    for (std::size_t i = 0; i < count; ++i) {
      out.PutItem(3, "formant", i + 1);
      out.PutNumber(4, "frequency", frame.frequency[used[i]]);
      out.PutNumber(4, "bandwidth", frame.bandwidth[used[i]]);
    }
  }
  return out.text();
}

}  // namespace parlowen
