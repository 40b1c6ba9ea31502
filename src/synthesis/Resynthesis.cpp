#include "synthesis/Resynthesis.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/Arithmetic.h"
#include "document/Frames.h"
#include "dsp/Clones.h"

namespace parlowen {
namespace {

constexpr double kPi = 3.1415927;    // this many digits: pieces are compared to the bit
constexpr int kLowestFollowed = 80;  // Hz
constexpr int kLowestMoved = 64;     // Hz: longer periods are copied
constexpr int kPeak = 1000;          // what the largest smoothed value becomes
constexpr int kLeastFirstPeak = 100;
constexpr int kSmootherReach = 3;  // taps on either side

/// Coefficients for distance 0..3 from the middle.
struct Smoother {
  double c[kSmootherReach + 1];
};
constexpr Smoother kSlowRates{{0.2, 0.187098, 0.151365, 0.10091}};  // below 10000 Hz
constexpr Smoother kFastRates{{0.151516, 0.145858, 0.129644, 0.105023}};

/// Samples that are read behind the selection: the last marks lie up to two frames and 1.25 longest periods
/// behind it, and a piece reaches two periods on.
int ReadBehind(int sampleRate) { return sampleRate / 10 + 16; }

// --- Marks

/// Smoothed values centred on the sample; `x` points at the first of them and can be read three on either
/// side.
PARLOWEN_CLONES void Smooth(const std::int16_t* x, int count, const Smoother& taps, double* smoothed) {
  const double c0 = taps.c[0], c1 = taps.c[1], c2 = taps.c[2], c3 = taps.c[3];
  for (int k = 0; k < count; ++k)
    smoothed[k] =
        c0 * x[k] + c1 * (x[k - 1] + x[k + 1]) + c2 * (x[k - 2] + x[k + 2]) + c3 * (x[k - 3] + x[k + 3]);
}

PARLOWEN_CLONES double LargestMagnitude(const double* values, int count) {
  double largest = 0;
  for (int k = 0; k < count; ++k) largest = std::fabs(values[k]) > largest ? std::fabs(values[k]) : largest;
  return largest;
}

/// The selection and what is read behind it, smoothed, and the factor that makes its peak 1000.
struct SmoothedSamples {
  std::vector<double> values;  ///< kSmootherReach more before the first sample
  double factor = 0;           ///< 0 for silence

  int Count() const { return static_cast<int>(std::ssize(values)) - kSmootherReach; }
  int Scaled(std::int64_t k) const {
    return static_cast<int>(values[static_cast<std::size_t>(k + kSmootherReach)] * factor);
  }
};

SmoothedSamples Smoothed(const SynthesisJob& job) {
  // The filter delays by three samples. The peak is looked for from three before the first sample to two
  // behind the last one of the selection.
  const int before = kSmootherReach, behind = 2;
  const int count = static_cast<int>(std::ssize(job.samples)) - kSmootherReach;
  std::vector<std::int16_t> input(static_cast<std::size_t>(before + kSmootherReach),
                                  0);  // the empty delay line
  input.insert(input.end(), job.samples.begin(), job.samples.end());
  SmoothedSamples smoothed{std::vector<double>(static_cast<std::size_t>(before + count)), 0};
  double* const values = smoothed.values.data();
  Smooth(input.data() + kSmootherReach, before + count, job.sampleRate < 10000 ? kSlowRates : kFastRates,
         values);
  const double largest = LargestMagnitude(values, before + job.length + behind);
  if (largest > 0) smoothed.factor = kPeak / largest;
  return smoothed;
}

class MarkFinder {
 public:
  MarkFinder(SynthesisJob& job, std::span<const float> contour, int polarity)
      : job_(job), contour_(contour), polarity_(polarity), last_(job.firstFrame + job.frames - 1) {}

  void Run() {
    smoothed_ = Smoothed(job_);
    if (smoothed_.factor == 0) return;
    for (int frame = job_.firstFrame; frame <= last_;) {
      const bool begins = Voiced(frame) && (frame == job_.firstFrame || !Voiced(frame - 1));
      frame = begins && FindFirst(frame) ? Follow() : frame + 1;
    }
  }

 private:
  float Value(int frame) const {
    return frame >= 0 && frame < std::ssize(contour_) ? contour_[static_cast<std::size_t>(frame)] : 0.0f;
  }
  bool Voiced(int frame) const { return Value(frame) >= 1.0f; }
  /// In whole samples.
  int Period(int frame) const { return TruncateToInt32(static_cast<double>(Value(frame))); }

  std::int64_t SampleOf(int frame) const { return SampleOfFrame(frame - job_.firstFrame, job_.sampleRate); }
  int FrameOf(std::int64_t mark) const { return job_.firstFrame + FrameOfSample(mark, job_.sampleRate); }

  struct Peak {
    std::int64_t at = 0;
    int value = -30000;
  };
  /// The first of the largest values · sign in from .. end − 1; outside of what is read is 0.
  Peak Largest(std::int64_t from, std::int64_t end, int sign) const {
    Peak peak{from};
    for (std::int64_t k = from; k < end; ++k) {
      const int value = k >= 0 && k < smoothed_.Count() ? sign * smoothed_.Scaled(k) : 0;
      if (value > peak.value) peak = {k, value};
      if (k >= smoothed_.Count()) break;  // nothing but zeros follows
    }
    return peak;
  }

  bool Full() const { return std::ssize(job_.marks) >= kMostMarks; }

  /// The first mark of the run that begins with this frame, looked for from half a frame before it to the end
  /// of the run or of the selection.
  bool FindFirst(int frame) {
    int end = frame;
    while (end <= last_ && Voiced(end)) ++end;
    const int period = Period(frame);
    const std::int64_t stop = std::min<std::int64_t>(SampleOf(end), job_.length);
    for (std::int64_t at = std::max<std::int64_t>(0, SampleOf(frame) - job_.sampleRate / 200); at < stop;
         at += period) {
      const Peak peak = Largest(at, at + period, polarity_);
      if (peak.value < kLeastFirstPeak) continue;
      if (Full()) return false;
      job_.marks.push_back(static_cast<std::int32_t>(peak.at));
      return true;
    }
    return false;
  }

  /// The marks behind the first one of a run. Returns the frame at which the walk goes on.
  int Follow() {
    for (;;) {
      const std::int64_t mark = job_.marks.back();
      const int frame = FrameOf(mark);
      const int period =
          std::min(Period(Voiced(frame) ? frame : frame + 1), job_.sampleRate / kLowestFollowed);
      if (period < 1) return frame;
      if (frame >= last_ || Full()) return last_ + 1;
      const std::int64_t expected = mark + period;
      const int quarter = period / 4;
      const Peak peak =
          Largest(expected - quarter, expected + quarter, +1);  // without a quarter: what is expected
      job_.marks.push_back(static_cast<std::int32_t>(peak.at));
    }
  }

  SynthesisJob& job_;
  std::span<const float> contour_;
  const int polarity_;
  const int last_;
  SmoothedSamples smoothed_;
};

// --- Overlap-add

/// What lies at the first index goes to the second: output[i] += trunc(weight·samples), cut to both ends.
struct Piece {
  std::int64_t from = 0, to = 0;
  int count = 0;
};

bool CutToFit(Piece& piece, std::int64_t& skipped, const SynthesisJob& job) {
  skipped = std::max<std::int64_t>(0, -piece.to);
  const std::int64_t end = std::min<std::int64_t>(
      {piece.count, std::ssize(job.samples) - piece.from, std::ssize(job.output) - piece.to});
  piece.from += skipped;
  piece.to += skipped;
  piece.count = static_cast<int>(std::max<std::int64_t>(0, end - skipped));
  return piece.count > 0;
}

PARLOWEN_INLINE std::int16_t WrapAdd16(std::int16_t a, int b) {
  return static_cast<std::int16_t>(
      static_cast<std::uint16_t>(static_cast<unsigned>(a) + static_cast<unsigned>(b)));
}

PARLOWEN_CLONES void AddFalling(const double* cosines, const std::int16_t* in, int count, std::int16_t* out) {
  for (int n = 0; n < count; ++n)
    out[n] = WrapAdd16(out[n], static_cast<int>((cosines[n] + 1) * 0.5 * in[n]));
}

PARLOWEN_CLONES void AddPulse(const double* cosines, const std::int16_t* in, int count, std::int16_t* out) {
  for (int n = 0; n < count; ++n)
    out[n] = WrapAdd16(out[n], static_cast<int>((0.5 - 0.5 * cosines[n]) * in[n]));
}

PARLOWEN_CLONES void AddPlain(const std::int16_t* in, int count, std::int16_t* out) {
  for (int n = 0; n < count; ++n) out[n] = WrapAdd16(out[n], in[n]);
}

/// The cosines of every distance that is laid down, before the first piece.
void MakeCosines(SynthesisJob& job) {
  const int longest = std::max(0, job.sampleRate / kLowestMoved);
  job.cosinesOf.assign(static_cast<std::size_t>(longest) + 1, -1);
  int total = 0;
  for (std::size_t i = 1; i < job.marks.size(); ++i) {
    const int length = job.marks[i] - job.marks[i - 1];
    if (length > longest || job.cosinesOf[static_cast<std::size_t>(length)] >= 0) continue;
    job.cosinesOf[static_cast<std::size_t>(length)] = total;
    total += 2 * length;
  }
  job.cosines.resize(static_cast<std::size_t>(total));
  for (int length = 1; length <= longest; ++length) {
    const int begin = job.cosinesOf[static_cast<std::size_t>(length)];
    for (int n = 0; begin >= 0 && n < 2 * length; ++n)
      job.cosines[static_cast<std::size_t>(begin + n)] = std::cos(n * kPi / length);
  }
}

class OverlapAdd {
 public:
  OverlapAdd(SynthesisJob& job, const TargetCurve& target) : job_(job), target_(target) {}

  void Run() {
    job_.output.assign(static_cast<std::size_t>(job_.length + kOutputMargin), 0);
    std::int64_t t = job_.marks.empty() ? job_.length : job_.marks[0];
    Copy(0, t);
    bool fresh = true;
    for (std::size_t next = 0;;) {
      const int period = NewPeriod(t);
      while (next + 1 < job_.marks.size() && job_.marks[next] < t + 2) ++next;
      if (next + 1 >= job_.marks.size()) break;
      const std::size_t i = std::max<std::size_t>(next, 1);
      const std::int64_t mark = job_.marks[i], before = job_.marks[i - 1];
      const auto length = static_cast<int>(mark - before);
      if (length > job_.sampleRate / kLowestMoved || period < 1) {
        Copy(t, mark);
        t = mark;
        fresh = true;
        continue;
      }
      const double* cosines = job_.cosines.data() + job_.cosinesOf[static_cast<std::size_t>(length)];
      if (fresh) Lay(AddFalling, {before, t, length}, cosines);
      t += period;
      Lay(AddPulse, {mark, t - length, 2 * length}, cosines);
      fresh = false;
    }
    if (t < job_.length)
      std::fill(job_.output.begin() + t, job_.output.begin() + job_.length, std::int16_t{0});
    job_.ready = true;
  }

 private:
  int NewPeriod(std::int64_t t) const {
    const int frame = FrameOfSample(t, job_.sampleRate);
    return frame < std::ssize(target_)
               ? TruncateToInt32(static_cast<double>(target_[static_cast<std::size_t>(frame)]))
               : 0;
  }
  void Copy(std::int64_t from, std::int64_t end) {
    Piece piece{from, from, static_cast<int>(end - from)};
    std::int64_t skipped = 0;
    if (CutToFit(piece, skipped, job_))
      AddPlain(job_.samples.data() + piece.from, piece.count, job_.output.data() + piece.to);
  }
  template <typename Add>
  void Lay(Add add, Piece piece, const double* cosines) {
    std::int64_t skipped = 0;
    if (!CutToFit(piece, skipped, job_)) return;
    add(cosines + skipped, job_.samples.data() + piece.from, piece.count, job_.output.data() + piece.to);
  }

  SynthesisJob& job_;
  const TargetCurve& target_;
};

}  // namespace

SynthesisJob MakeSynthesisJob(SampleSpan sound, int sampleRate, int start, int end) {
  SynthesisJob job;
  job.sampleRate = sampleRate;
  job.start = start;
  job.length = std::max(0, end - start);
  if (sampleRate <= 0) return job;
  job.firstFrame = FrameOfSample(start, sampleRate);
  job.frames = FrameOfSample(end, sampleRate) - job.firstFrame + 1;
  job.samples.resize(static_cast<std::size_t>(job.length + ReadBehind(sampleRate)));
  for (std::size_t i = 0; i < job.samples.size(); ++i)
    job.samples[i] = sound.At(start + static_cast<std::int64_t>(i));
  return job;
}

int FindPitchMarks(SynthesisJob& job, std::span<const float> contour, int polarity) {
  job.marks.clear();
  job.cosinesOf.clear();
  if (job.sampleRate > 0) MarkFinder(job, contour, polarity).Run();
  return static_cast<int>(job.marks.size());
}

void SynthesizeOverlapAdd(SynthesisJob& job, const TargetCurve& target) {
  if (job.sampleRate <= 0) return;
  if (job.cosinesOf.empty()) MakeCosines(job);
  OverlapAdd(job, target).Run();
}

}  // namespace parlowen
