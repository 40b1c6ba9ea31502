#include "synthesis/SynthesisCommands.h"

#include <charconv>

#include "base/Format.h"
#include "document/WavFile.h"
#include "pitch/PitchCommands.h"
#include "pitch/PitchFile.h"
#include "synthesis/SynthesisWindow.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kWhichRecord = "第几段（1--%d）";
constexpr UiText kFactorLabel = "音高的倍数（2 为高八度，0.5 为低八度）";
constexpr UiText kTooLong = "所选段太长，请重新设定！";
constexpr UiText kIsPitchRight = "合成之前必须将基频修正，本段基频值正确吗（Yes/No)？";
constexpr int kLongest = 1000;  // frames, counted in whole seconds
constexpr int kPolarity = -1;   // of the first mark of a run

constexpr const char* kWaveName = "Synth.wav";
constexpr UiText kSaved = "合成声音已存为文件--Synth.wav!";

constexpr UiText kNoRecord = "没有这一段！";

constexpr UiText kBadFactor = "比例应在 0.25--4 之间";
constexpr double kLeastFactor = 0.25, kLargestFactor = 4.0;

}  // namespace

void StartResynthesis(Window& window, const SynthesisDesk& desk) {
  const SoundDocument& document = desk.document;
  if (!document.selectionDefined() || document.sampleRate <= 0) return;
  if (document.SelectionLength() / document.sampleRate * 100 > kLongest)
    return window.Notify(kTooLong, Icon::Error);
  if (!window.AskYesNo(kIsPitchRight, window.Caption())) return;

  desk.player.stopPlayback();  // it may be of the output that is now replaced
  desk.state.job = MakeSynthesisJob(document.Samples(), document.sampleRate, document.selectionStart,
                                    document.selectionEnd);
  desk.state.sound = document.Stamp();
  const auto contourLength = static_cast<std::size_t>(document.ContourLength());
  FindPitchMarks(desk.state.job, std::span(document.pitch).first(contourLength), kPolarity);
  desk.state.target.assign(static_cast<std::size_t>(desk.state.job.frames), 0.0f);

  SynthesisWindow dialog(desk);
  window.RunModal(dialog);
  window.Repaint();
}

int SaveSynthWave(const SynthesisJob& job, Window& window, const std::string& exportFolder) {
  if (!job.ready) return 1;
  ByteWriter file;
  WriteWavHeader(file, job.sampleRate, 1, job.length);
  file.PutInt16sLE(std::span(job.output).first(static_cast<std::size_t>(job.length)));
  if (SaveFile(window, exportFolder.empty() ? kWaveName : exportFolder + "/" + kWaveName, file) < 0) {
    window.ShowError(messages::kBadNameOrSpace, messages::kBadNameCaption);
    return -1;
  }
  window.Notify(kSaved);
  window.Repaint();
  return 0;
}

std::optional<TargetCurve> AskRecordedTarget(Window& window) {
  const auto bytes = AskPitchFile(window);
  if (!bytes) return {};
  // Records before a broken one are good.
  std::vector<PitchRecord> records;
  const PitchFileEnd end = ReadPitchRecords(*bytes, records);
  if (end == PitchFileEnd::Broken || records.empty()) window.Notify(kBadPitchFile, Icon::Error);
  if (records.empty()) return {};
  InputForm form =
      OneFieldForm(kLoadRecordTitle, Format(kWhichRecord.Get(), static_cast<int>(records.size())), "1");
  if (!window.AskInput(form)) return {};
  const int number = form.CountOf(1000);
  if (number < 1 || number > std::ssize(records)) {
    window.Notify(kNoRecord, Icon::Error);
    return {};
  }
  return std::move(records[static_cast<std::size_t>(number - 1)].periods);
}

std::optional<double> AskTargetFactor(Window& window) {
  InputForm form = OneFieldForm(kScaleTitle, kFactorLabel, "1.0");
  if (!window.AskInput(form)) return {};
  const std::string& text = form.ValueOf(1000);
  double factor = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), factor);
  if (failure != std::errc() || end != text.data() + text.size() ||
      !(factor >= kLeastFactor && factor <= kLargestFactor)) {
    window.Notify(kBadFactor, Icon::Error);
    return {};
  }
  return factor;
}

}  // namespace parlowen
