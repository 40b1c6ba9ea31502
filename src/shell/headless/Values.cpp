#include "shell/headless/Values.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "annotation/AnnotationCommands.h"
#include "shell/Workstation.h"
#include "shell/headless/ProsodyValues.h"
#include "shell/headless/Script.h"
#include "vowel/VowelFormants.h"

namespace parlowen {
namespace {

using Words = std::vector<std::string>;

void StateValue(const Workstation& w, JsonObject& event) {
  const SoundDocument& d = w.document;
  event.Integer("maxSamples", kMaxSamples)
      .Integer("sampleCount", d.sampleCount)
      .Integer("sampleRate", d.sampleRate)
      .Integer("twoChannel", d.twoChannel)
      .Text("filePath", d.filePath)
      .Text("nextDigitPath", d.nextDigitPath)
      .Integer("selectionStart", d.selectionStart)
      .Integer("selectionEnd", d.selectionEnd)
      .Integer("viewStart", d.viewStart)
      .Integer("viewLength", d.viewLength)
      .Integer("pixelsPerSecond", d.pixelsPerSecond)
      .Integer("samplesPerPixel", d.samplesPerPixel)
      .Integer("paneWidth", d.paneWidth)
      .Integer("clipLength", static_cast<long long>(d.clipSamples.size()))
      .Integer("undoKind", static_cast<int>(d.undoKind))
      .Integer("undoPosition", d.undoPosition)
      .Integer("undoLength", d.undoLength)
      .Integer("pitchPresent", d.pitchPresent)
      .Integer("longFileSeconds", d.longFileSeconds)
      .Integer("longFileStart", d.longFileStart)
      .Integer("activity", static_cast<int>(d.activity))
      .Text("caption", w.window.Caption())
      .Integer("insertPoint", d.insertPoint)
      .Integer("pasteReady", d.pasteReady)
      .Number("recordGain", w.recorder.recordGain)
      .Integer("voiceThreshold", w.recorder.voiceThreshold)
      .Integer("thresholdPercent", w.recorder.ThresholdPercent())
      .Integer("spectrogramShading", w.recorder.spectrogramShading);
}

/// The samples first .. last − 1 that exist, as a list.
std::string SamplesJson(const std::int16_t* samples, std::int64_t first, std::int64_t last,
                        std::int64_t count) {
  first = std::clamp<std::int64_t>(first, 0, count);
  last = std::clamp<std::int64_t>(last, first, count);
  return JsonList(std::span(samples + first, samples + last), IntegerText);
}

std::string SamplesValue(const Workstation& w, const Words& words, JsonObject& event) {
  const auto first = words.size() > 1 ? ParseInteger(words[1]) : std::nullopt;
  const auto count = words.size() > 2 ? ParseInteger(words[2]) : std::nullopt;
  const bool second = words.size() == 4 && words[3] == "2";
  if (!first || !count || words.size() > 4 || (words.size() == 4 && !second && words[3] != "1"))
    return "print samples needs FIRST COUNT [2]";
  const SampleBuffer& channel = second ? w.document.samples2 : w.document.samples;
  event.Raw("samples",
            SamplesJson(channel.data(), *first, std::int64_t{*first} + *count, w.document.sampleCount));
  return {};
}

std::string PitchValue(const Workstation& w, const Words& words, JsonObject& event) {
  std::int64_t first = 0, last = std::int64_t{w.document.ContourLength()} - 1;
  if (words.size() != 1) {
    const auto from = words.size() == 3 ? ParseInteger(words[1]) : std::nullopt;
    const auto to = words.size() == 3 ? ParseInteger(words[2]) : std::nullopt;
    if (!from || !to) return "print pitch takes FIRST LAST or nothing";
    first = *from;
    last = *to;
  }
  first = std::clamp<std::int64_t>(first, 0, kContourFrames);
  last = std::clamp<std::int64_t>(last + 1, first, kContourFrames);
  const float* values = w.document.pitch.data();
  event.Raw("values",
            JsonList(std::span(values + first, values + last), [](float v) { return ShortestNumber(v); }));
  return {};
}

void SpectrogramValue(const Workstation& w, JsonObject& event) {
  const SpectrogramMatrix& matrix = w.spectrogram.matrix;
  std::string columns = "[";
  for (int column = 0; column < matrix.columns; ++column) {
    if (column > 0) columns += ',';
    columns += JsonList(std::span(matrix.Column(column), kSpectrogramRows), IntegerText);
  }
  event.Text("kind", w.spectrogram.shown ? SpectrogramKindName(w.spectrogram.kind) : "")
      .Raw("columns", columns + "]");
}

void NasalanceValue(const Workstation& w, JsonObject& event) {
  const NasalanceCurve& curve = w.channels.Curve(w.document);
  const NasalanceFigures figures = FiguresOf(curve.values);
  event.Raw("values", JsonList(curve.values, [](float v) { return ShortestNumber(v); }))
      .Number("mean", figures.mean)
      .Number("sd", figures.deviation)
      .Number("min", figures.smallest)
      .Number("max", figures.largest);
}

// --- Spectra

template <typename Range>
std::string NumbersJson(const Range& values) {
  return JsonList(values, [](double value) { return ShortestNumber(value); });
}

void FrameValue(const Workstation& w, JsonObject& event) {
  const FrameParameters frame = w.frames.hasFrame ? w.frames.frame : FrameParameters{};
  const auto count = static_cast<std::size_t>(frame.formants.count);
  event.Number("time", frame.time)
      .Number("level", frame.level)
      .Number("f0", frame.f0)
      .Integer("f0Cepstral", frame.f0Cepstral)
      .Raw("f", NumbersJson(std::span(frame.formants.frequency.data(), count)))
      .Raw("b", NumbersJson(std::span(frame.formants.bandwidth.data(), count)))
      .Raw("narrow", NumbersJson(frame.narrow))
      .Raw("lpc", NumbersJson(frame.lpc));
}

void CompareValue(const Workstation& w, JsonObject& event) {
  const FrameComparison both = w.frames.hasComparison ? w.frames.comparison : FrameComparison{};
  event.Number("timeA", both.a.time)
      .Number("timeB", both.b.time)
      .Raw("a", NumbersJson(both.a.curve))
      .Raw("b", NumbersJson(both.b.curve))
      .Raw("fA", NumbersJson(both.a.frequency))
      .Raw("bA", NumbersJson(both.a.bandwidth))
      .Raw("fB", NumbersJson(both.b.frequency))
      .Raw("bB", NumbersJson(both.b.bandwidth));
}

void LtaValue(const Workstation& w, JsonObject& event) {
  event.Integer("frames", w.lta.frames)
      .Raw("levels", NumbersJson(w.lta.levels))
      .Raw("previous", NumbersJson(w.lta.previous));
  if (!w.lta.difference) return;
  event.Number("deviation", w.lta.difference->deviation)
      .Number("largest", w.lta.difference->largest)
      .Integer("largestHz", w.lta.difference->largestHz);
}

void ConsonantValue(const Workstation& w, JsonObject& event) {
  const ConsonantFrame& frame = w.consonant.frame;
  event.Raw("bands", NumbersJson(frame.bands))
      .Number("gravity", frame.gravity)
      .Number("dispersion", frame.dispersion)
      .Number("intensity", frame.intensity);
  if (w.consonant.stretch.empty()) return;
  event.Raw("stretch", JsonList(w.consonant.stretch, [](const ConsonantFrame& f) {
              return JsonObject()
                  .Number("gravity", f.gravity)
                  .Number("dispersion", f.dispersion)
                  .Number("intensity", f.intensity)
                  .Done();
            }));
}

/// The measures' names, in the order of kGlottalMeasures.
constexpr const char* kGlottalNames[] = {"f0", "oq", "qoq", "sq", "naq", "h1h2", "hrf"};

JsonObject& AddGlottalMeasures(JsonObject& object, const GlottalMeasures& measures) {
  int index = 0;
  for (const auto measure : kGlottalMeasures) object.Number(kGlottalNames[index++], measures.*measure);
  return object;
}

/// The wave of the last estimate; without one all its figures are undefined.
GlottalWave PrintedWave(const GlottalState& state) {
  GlottalWave wave = state.wave;
  if (state.shown) return wave;
  wave.jitter = wave.shimmer = std::nan("");
  for (const auto measure : kGlottalMeasures) wave.mean.*measure = wave.sd.*measure = std::nan("");
  return wave;
}

void GlottalValue(const GlottalState& state, bool withWave, JsonObject& event) {
  const GlottalWave wave = PrintedWave(state);
  const auto place = [&state](int sample) { return state.shown ? IntegerText(sample) : std::string("null"); };
  const auto means = [](const GlottalMeasures& measures) {
    JsonObject object;
    return AddGlottalMeasures(object, measures).Done();
  };
  event.Raw("start", place(wave.start))
      .Raw("end", place(wave.end))
      .Integer("inverted", wave.inverted)
      .Raw("marks", JsonList(wave.marks, IntegerText))
      .Raw("periods", JsonList(wave.periods,
                               [](const GlottalPeriod& period) {
                                 JsonObject object;
                                 object.Integer("start", period.start).Integer("n", period.length);
                                 return AddGlottalMeasures(object, period.measures).Done();
                               }))
      .Raw("mean", means(wave.mean))
      .Raw("sd", means(wave.sd))
      .Number("jitter", wave.jitter)
      .Number("shimmer", wave.shimmer);
  if (withWave) event.Raw("derivative", NumbersJson(wave.derivative)).Raw("flow", NumbersJson(wave.flow));
}

void ResynthesisValue(const SynthesisState& state, JsonObject& event) {
  const SynthesisJob& job = state.job;
  const std::span made(job.output.data(), job.ready ? static_cast<std::size_t>(job.length) : 0);
  event.Raw("marks", JsonList(job.marks, IntegerText))
      .Raw("target", JsonList(state.target, [](float period) { return ShortestNumber(period); }))
      .Raw("output", JsonList(made, IntegerText));
}

void VowelsValue(const VowelChart& chart, JsonObject& event) {
  const std::span points(chart.points.data(), static_cast<std::size_t>(chart.count));
  event.Integer("referenceF0", chart.referenceF0)
      .Integer("bark", chart.barkMode)
      .Raw("points", JsonList(points, [](const VowelPoint& point) {
             return JsonObject()
                 .Integer("x", point.x)
                 .Integer("y", point.y)
                 .Integer("x3", point.x3)
                 .Integer("shape", static_cast<int>(point.shape))
                 .Number("f1", point.f1)
                 .Number("f2", point.f2)
                 .Number("f3", point.f3)
                 .Done();
           }));
}

void MarkersValue(const Workstation& w, JsonObject& event) {
  const bool ofThisSound = w.markers.sound == w.document.Stamp();
  const MarkerState state = ofThisSound ? w.markers : MarkerState{};
  std::string bands;
  for (int band = 0; band < kMarkerBands; ++band) {
    bands += band == 0 ? "[" : ",";
    bands += JsonObject()
                 .Raw("markers", JsonList(state.set.Markers(band), IntegerText))
                 .Raw("labels", JsonList(state.set.Labels(band),
                                         [](const MarkerLabel& label) {
                                           return JsonObject()
                                               .Integer("start", label.start)
                                               .Integer("end", label.end)
                                               .Text("text", label.text)
                                               .Done();
                                         }))
                 .Done();
  }
  event.Raw("bands", bands + "]")
      .Integer("viewStart", state.view.start)
      .Integer("zoom", state.view.zoom)
      .Number("samplesPerPixel", MarkerScale(state.view, w.document.sampleCount).samplesPerPixel);
}

void FormantsValue(const SoundDocument& document, JsonObject& event) {
  const VowelTrack track = SelectionTrack(document);
  int start = track.start;
  event.Raw("frames", JsonList(track.frames, [&](const FormantFrame& frame) {
              const auto list = [&](const auto& values) {
                return JsonList(std::span(values.data(), static_cast<std::size_t>(frame.count)),
                                [](double value) { return ShortestNumber(value); });
              };
              const double time = start / static_cast<double>(document.sampleRate);
              start += track.step;
              return JsonObject()
                  .Number("time", time)
                  .Raw("f", list(frame.frequency))
                  .Raw("b", list(frame.bandwidth))
                  .Done();
            }));
}

void AnnotationsValue(const Workstation& w, JsonObject& event) {
  event.Raw(
      "items", JsonList(AnnotationsOf(w.annotations, w.document), [](const Annotation& annotation) {
        return JsonObject().Text("text", annotation.text).Integer("position", annotation.position).Done();
      }));
}

constexpr const char* kContactNames[] = {"total", "front", "middle", "back", "ca", "cc", "cog", "asymmetry"};

std::string IndicesJson(const ContactIndices& indices) {
  JsonObject object;
  for (std::size_t i = 0; i < kContactIndices; ++i) object.Number(kContactNames[i], indices[i]);
  return object.Done();
}

void PalateValue(const Workstation& w, JsonObject& event) {
  const ContactTiming timing = TimingOf(w.palate, w.document);
  const std::span<const ContactFrame> frames = FramesOf(w.palate, w.document);
  const ContactSpan shown = ShownFramesOf(timing, w.document);
  const bool any = shown.Holds(w.palateView.current);
  const double none = std::numeric_limits<double>::quiet_NaN();
  event.Integer("frames", timing.frames)
      .Number("rate", timing.rate)
      .Number("first", any ? shown.first : none)
      .Number("last", any ? shown.last : none)
      .Number("current", any ? w.palateView.current : none);
  ContactIndices indices;
  indices.fill(none);
  if (any) {
    const ContactFrame& frame = frames[static_cast<std::size_t>(w.palateView.current)];
    event.Raw("rows", JsonList(frame, IntegerText));
    indices = MeasureContact(frame);
  } else {
    event.Raw("rows", "[]");
  }
  for (std::size_t i = 0; i < kContactIndices; ++i) event.Number(kContactNames[i], indices[i]);
  std::vector<ContactIndices> all;
  all.reserve(frames.size());
  for (const ContactFrame& frame : frames) all.push_back(MeasureContact(frame));
  JsonObject curves;
  for (const ContactIndex index : {kTotalContact, kAnteriority, kCentrality, kGravityCentre})
    curves.Raw(kContactNames[index],
               JsonList(all, [&](const ContactIndices& one) { return ShortestNumber(one[index]); }));
  event.Raw("curves", curves.Done());
}

void PalateStatisticsValue(const PalateStatistics& statistics, JsonObject& event) {
  ContactStatistics shown;
  const bool any = !statistics.records.empty();
  if (any) {
    shown = statistics.Shown();
  } else {
    shown.mean.fill(std::numeric_limits<double>::quiet_NaN());
    shown.deviation = shown.mean;
    shown.variability = shown.mean[0];
  }
  event.Integer("records", statistics.ShownRecords())
      .Integer("frames", statistics.ShownFrames())
      .Raw("percent", any ? NumbersJson(shown.percent) : "[]")
      .Raw("mean", IndicesJson(shown.mean))
      .Raw("sd", IndicesJson(shown.deviation))
      .Number("variability", shown.variability);
}

std::string LipsJson(const LipShape& lips) {
  return NumbersJson(std::array<double, 3>{lips.opening, lips.width, lips.protrusion});
}

void ArticulationValue(const ArticulationState& state, JsonObject& event) {
  const MandarinSound& sound = state.Sound();
  const Articulation now = ArticulationAt(sound, state.step);
  event.Text("key", sound.key)
      .Integer("step", state.step)
      .Integer("steps", LastStepOf(sound))
      .Raw("tongue", NumbersJson(now.tongue))
      .Raw("lips", LipsJson(now.lips))
      .Integer("velum", now.velumDown)
      .Text("text", sound.description.Get());
  if (!state.estimate) return;
  const TractEstimate& estimate = *state.estimate;
  event.Raw("formants", NumbersJson(estimate.formants))
      .Number("length", estimate.length)
      .Raw("estimated", NumbersJson(estimate.tongue))
      .Raw("estimatedLips", LipsJson(estimate.lips))
      .Text("nearest", estimate.nearest)
      .Raw("areas", estimate.areas ? NumbersJson(*estimate.areas) : "null");
}

}  // namespace

std::string PrintedValue(const Workstation& workstation, const Words& words, JsonObject& event) {
  if (words.empty()) return "print needs the name of a value";
  const std::string& what = words[0];
  event.Text("event", "value").Text("what", what);
  if (what == "samples") return SamplesValue(workstation, words, event);
  if (what == "pitch") return PitchValue(workstation, words, event);
  if (what == "glottal" && (words.size() == 1 || (words.size() == 2 && words[1] == "wave"))) {
    GlottalValue(workstation.glottal, words.size() == 2, event);
    return {};
  }
  if (what == "palate" && words.size() == 2 && words[1] == "statistics") {
    PalateStatisticsValue(workstation.palateView.statistics, event);
    return {};
  }
  if (words.size() > 1) return "print " + what + " takes nothing more";
  if (what == "state") {
    StateValue(workstation, event);
  } else if (what == "commands") {
    event.Raw("enabled", JsonList(workstation.states.Enabled(), IntegerText));
  } else if (what == "clip") {
    event.Raw("samples", JsonList(workstation.document.clipSamples, IntegerText));
  } else if (what == "spectrogram") {
    SpectrogramValue(workstation, event);
  } else if (what == "frame") {
    FrameValue(workstation, event);
  } else if (what == "compare") {
    CompareValue(workstation, event);
  } else if (what == "lta") {
    LtaValue(workstation, event);
  } else if (what == "consonant") {
    ConsonantValue(workstation, event);
  } else if (what == "resynthesis") {
    ResynthesisValue(workstation.synthesis, event);
  } else if (what == "nasalance") {
    NasalanceValue(workstation, event);
  } else if (what == "articulation") {
    ArticulationValue(workstation.articulation, event);
  } else if (what == "palate") {
    PalateValue(workstation, event);
  } else if (what == "annotations") {
    AnnotationsValue(workstation, event);
  } else if (what == "vowels") {
    VowelsValue(workstation.vowels.chart, event);
  } else if (what == "degree") {
    DegreeValue(workstation.degree, event);
  } else if (what == "tones") {
    TonesValue(workstation.tones, event);
  } else if (what == "intonation") {
    IntonationValue(workstation.intonation, event);
  } else if (what == "markers") {
    MarkersValue(workstation, event);
  } else if (what == "formants") {
    FormantsValue(workstation.document, event);
  } else {
    return "no value is called " + what;
  }
  return {};
}

}  // namespace parlowen
