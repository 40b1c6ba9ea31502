#include "shell/headless/ScriptRunner.h"

#include <algorithm>
#include <utility>

#include "base/Files.h"
#include "shell/CommandTable.h"
#include "shell/Workstation.h"
#include "shell/headless/Values.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

struct PaneName {
  const char* name;
  Pane pane;
  int height;  ///< pixels
};
constexpr PaneName kPanes[] = {{"amplitude", Pane::Amplitude, 110},
                               {"pitch", Pane::Pitch, 165},
                               {"analysis", Pane::Analysis, 330},
                               {"waveform", Pane::Waveform, 165},
                               {"labels", Pane::Labels, 120}};

const PaneName* FindPane(const std::string& name) {
  const auto found =
      std::find_if(std::begin(kPanes), std::end(kPanes), [&](const PaneName& p) { return name == p.name; });
  return found == std::end(kPanes) ? nullptr : found;
}

/// The chart over the lower panes: its rows count from the top of the amplitude pane.
constexpr int kChartHeight = 110 + 165 + 330 + 165;

/// Tool windows are drawn at this size in pictures.
constexpr int kToolHeight = 640;

/// Blocks of silence behind the microphone's file after which a recording that keeps nothing yet is stopped.
constexpr int kSilenceAtMost = 100;

bool IsKeyName(const std::string& key) {
  constexpr const char* kNames[] = {"Left",     "Right", "Up",     "Down", "Home",  "End", "PageUp",
                                    "PageDown", "Space", "Escape", "F1",   "F2",    "F3",  "F4",
                                    "F5",       "F6",    "F7",     "F8",   "Enter", "Tab", "Delete"};
  if (key.size() == 1) {
    const char c = key[0];
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  }
  return std::find(std::begin(kNames), std::end(kNames), key) != std::end(kNames);
}

}  // namespace

ScriptRunner::ScriptRunner(std::istream& script, std::ostream& errors, ScriptStage& stage)
    : reader_(script), errors_(errors), stage_(stage), window_(stage.Talk()), workstation_(stage.Station()) {
  window_.runModalSteps = [this] { RunModalSteps(); };
}

bool ScriptRunner::Report(const ScriptStep& step, const std::string& wrong) {
  if (wrong.empty() && window_.failure().empty()) return false;
  if (failed_) return true;
  failed_ = true;
  const std::string text = wrong.empty() ? window_.failure() : wrong;
  window_.PrintError(step.line, text);
  errors_ << "line " << step.line << ": " << text << std::endl;
  return true;
}

ScriptResult ScriptRunner::Run() {
  while (auto step = NextStep()) {
    if (Report(*step, step->error.empty() ? RunStep(*step) : step->error)) return ScriptResult::Error;
    if (window_.ended()) break;
  }
  return window_.ranOutOfAnswers() ? ScriptResult::AnswerMissing : ScriptResult::Ran;
}

std::string ScriptRunner::RunStep(const ScriptStep& step) {
  using Handler = std::string (ScriptRunner::*)(const ScriptStep&);
  static constexpr std::pair<const char*, Handler> kSteps[] = {
      {"command", &ScriptRunner::Command},
      {"answer", &ScriptRunner::Answer},
      {"select", &ScriptRunner::Select},
      {"click", &ScriptRunner::Click},
      {"key", &ScriptRunner::Key},
      {"button", &ScriptRunner::Button},
      {"close", &ScriptRunner::Close},
      {"sound-input", &ScriptRunner::SoundInput},
      {"sound-output", &ScriptRunner::SoundOutput},
      {"print", &ScriptRunner::Print},
      {"picture", &ScriptRunner::WritePicture},
  };
  const std::string& name = step.words[0];
  if (name != "click" && name != "answer") labelsClicked_.reset();
  if (name == "exit") {
    if (step.words.size() > 1) return "exit takes nothing more";
    window_.End();
    return {};
  }
  for (const auto& [known, handler] : kSteps) {
    if (name != known) continue;
    std::string wrong = (this->*handler)(step);
    stage_.Settle();
    if (wrong.empty()) RunSound();
    return wrong;
  }
  return "unknown step " + name;
}

std::optional<ScriptStep> ScriptRunner::NextStep() {
  return ahead_ ? std::exchange(ahead_, {}) : reader_.Next();
}

/// Lets a play or a recording that the last step began run to its end, or to the stop that the next step is.
void ScriptRunner::RunSound() {
  const Recorder& recording = workstation_.recording;
  for (bool first = true; workstation_.player.playing() || recording.running(); first = false) {
    const bool limitReached = blockLimit_ && stage_.microphone.Delivered() >= *blockLimit_;
    const bool neverBegins = !recording.keeping() && stage_.microphone.DeliveredSilent() >= kSilenceAtMost;
    if (limitReached || neverBegins) workstation_.recording.stopRecording();
    const bool played = stage_.speaker.Deliver(), heard = stage_.microphone.Deliver();
    if (!played && !heard) return;
    if (first) TakeStopStep();
  }
}

/// The step behind the one that began a play or a recording, when it is a stop: it is used up.
void ScriptRunner::TakeStopStep() {
  ahead_ = reader_.Next();
  if (!ahead_ || !ahead_->error.empty() || ahead_->words.size() != 2) return;
  const std::string& name = ahead_->words[0];
  const std::string& what = ahead_->words[1];
  const bool keyStop = name == "key" && (what == "T" || what == "t");
  const auto number = name == "command" ? ParseInteger(what) : std::nullopt;
  const bool commandStop = number &&
                           (*number == commands::kStopRecording || *number == commands::kStopPlaying) &&
                           !window_.InModal();
  if (keyStop) Key(*ahead_);
  if (commandStop) stage_.Choose(*number);
  if (keyStop || commandStop) ahead_.reset();
}

std::string ScriptRunner::Command(const ScriptStep& step) {
  const auto number = step.words.size() == 2 ? ParseInteger(step.words[1]) : std::nullopt;
  if (!number) return "command needs one number";
  if (FindCommand(*number) == nullptr) return "no command has the number " + step.words[1];
  if (!stage_.Choose(*number))
    window_.PrintEvent(JsonObject().Text("event", "refused").Integer("command", *number));
  return {};
}

std::string ScriptRunner::Answer(const ScriptStep& step) {
  auto answer = ParseAnswer({step.words.begin() + 1, step.words.end()});
  if (!answer) return "answer takes yes, no, cancel, file PATH or ok FIELD=VALUE ...";
  window_.Queue(std::move(*answer));
  return {};
}

std::string ScriptRunner::Select(const ScriptStep& step) {
  const auto start = step.words.size() == 3 ? ParseInteger(step.words[1]) : std::nullopt;
  const auto end = step.words.size() == 3 ? ParseInteger(step.words[2]) : std::nullopt;
  if (!start || !end) return "select needs START END";
  stage_.Select(*start, *end);
  return {};
}

std::string ScriptRunner::Click(const ScriptStep& step) {
  const std::size_t count = step.words.size();
  const auto x = count >= 4 ? ParseInteger(step.words[2]) : std::nullopt;
  const auto y = count >= 4 ? ParseInteger(step.words[3]) : std::nullopt;
  if (!x || !y) return "click needs PANE X Y [right] [shift]";
  MouseButton button = MouseButton::Left;
  bool shift = false;
  for (std::size_t i = 4; i < count; ++i) {
    if (step.words[i] == "right") {
      button = MouseButton::Right;
    } else if (step.words[i] == "shift") {
      shift = true;
    } else {
      return "click knows right and shift, not " + step.words[i];
    }
  }
  const auto labelsBefore = std::exchange(labelsClicked_, {});
  if (ToolWindow* tool = window_.ToolNamed(step.words[1])) {
    window_.GiveKeysToTools();
    stage_.ClickTool(*tool, {*x, *y}, button, shift);
    return {};
  }
  const PaneName* pane = FindPane(step.words[1]);
  if (pane == nullptr) return "no pane or open window is called " + step.words[1];
  const Point at{*x, *y};
  labelsHaveKeys_ = pane->pane == Pane::Labels;
  if (labelsHaveKeys_) window_.TakeKeysFromTools();
  if (labelsHaveKeys_ && button == MouseButton::Left && !shift) labelsClicked_ = at;
  const bool twice = labelsClicked_ && labelsBefore == labelsClicked_;
  twice ? stage_.EditLabel(at) : stage_.Click(pane->pane, at, button, shift);
  return {};
}

std::string ScriptRunner::Key(const ScriptStep& step) {
  if (step.words.size() != 2 || !IsKeyName(step.words[1])) return "key needs the name of one key";
  if (labelsHaveKeys_ && !window_.ToolHasKeys() && stage_.KeyInLabels(step.words[1])) return {};
  stage_.Key(step.words[1]);
  return {};
}

std::string ScriptRunner::Button(const ScriptStep& step) {
  if (step.words.size() != 2) return "button needs the number or the text of one control";
  ToolWindow* tool = window_.CurrentTool();
  if (tool == nullptr) return "no tool window is open";
  const auto number = ParseInteger(step.words[1]);
  for (const ToolControl& control : tool->Controls()) {
    const bool named =
        control.number == 0 ? control.text == step.words[1] : number && *number == control.number;
    if (!named) continue;
    if (control.enabled) stage_.Press(*tool, control);
    return {};
  }
  return "the window has no control " + step.words[1];
}

std::string ScriptRunner::Close(const ScriptStep& step) {
  if (step.words.size() != 1) return "close takes nothing more";
  if (window_.CurrentTool() == nullptr) return "no tool window is open";
  stage_.CloseTool();
  return {};
}

std::string ScriptRunner::SoundInput(const ScriptStep& step) {
  const std::size_t count = step.words.size();
  const auto blocks = count == 3 ? ParseInteger(step.words[2]) : std::nullopt;
  if (count < 2 || count > 3 || (count == 3 && (!blocks || *blocks < 0)))
    return "sound-input needs FILE.wav [BLOCKS]";
  const std::string wrong = stage_.microphone.Listen(AbsolutePath(step.words[1]));
  if (!wrong.empty()) return wrong + " " + step.words[1];
  blockLimit_ = blocks;
  stage_.InputDevicesChanged();
  return {};
}

std::string ScriptRunner::SoundOutput(const ScriptStep& step) {
  if (step.words.size() != 2) return "sound-output needs FILE.wav";
  stage_.speaker.WriteTo(AbsolutePath(step.words[1]));
  return {};
}

std::string ScriptRunner::Print(const ScriptStep& step) {
  JsonObject event;
  std::string wrong = PrintedValue(workstation_, {step.words.begin() + 1, step.words.end()}, event);
  if (wrong.empty()) window_.PrintEvent(event);
  return wrong;
}

std::string ScriptRunner::WritePicture(const ScriptStep& step) {
  if (step.words.size() != 3) return "picture needs PANE FILE.svg";
  const int width = workstation_.document.paneWidth;
  Picture picture;
  if (step.words[1] == "all") {
    std::vector<MainView::PaneRows> rows;
    for (const PaneName& pane : kPanes)
      if (pane.pane != Pane::Labels || workstation_.markers.paneShown)
        rows.push_back({pane.pane, pane.height});
    picture = workstation_.view.Figure(rows, width, FigureStyle{}.text);
  } else if (const ToolWindow* tool = window_.ToolNamed(step.words[1])) {
    picture = tool->Draw(tool->WholeWidth(width), kToolHeight);
  } else if (step.words[1] == "chart") {
    if (!workstation_.view.ChartShown()) return "no chart is shown";
    picture = workstation_.view.Whole(Pane::Chart, width, kChartHeight);
  } else if (const PaneName* pane = FindPane(step.words[1])) {
    if (pane->pane == Pane::Labels) workstation_.ReadLabels();
    picture = workstation_.view.Whole(pane->pane, width, pane->height);
  } else {
    return "no pane or open window is called " + step.words[1];
  }
  const std::string svg = ToSvg(picture);
  const ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(svg.data()), svg.size());
  return ReplaceFile(AbsolutePath(step.words[2]), bytes) < 0 ? "cannot write " + step.words[2] : "";
}

void ScriptRunner::RunModalSteps() {
  constexpr const char* kAllowed[] = {"click", "button", "key", "answer", "print", "picture"};
  while (auto step = NextStep()) {
    if (!step->error.empty()) {
      Report(*step, step->error);
      return;
    }
    const std::string& name = step->words[0];
    if (name == "close" && step->words.size() == 1) return;
    const std::string clicked = name == "click" && step->words.size() > 1 ? step->words[1] : "";
    const ToolWindow* other = window_.ToolNamed(clicked);
    const bool elsewhere =
        FindPane(clicked) != nullptr || (other != nullptr && other != window_.CurrentTool());
    if (elsewhere || std::find(std::begin(kAllowed), std::end(kAllowed), name) == std::end(kAllowed)) {
      // Only a command has a number.
      const auto number =
          name == "command" && step->words.size() == 2 ? ParseInteger(step->words[1]) : std::nullopt;
      window_.PrintEvent(
          JsonObject().Text("event", "refused").Raw("command", number ? IntegerText(*number) : "null"));
      continue;
    }
    if (Report(*step, RunStep(*step))) return;
    const ToolWindow* tool = window_.CurrentTool();
    if (tool != nullptr && tool->WantsToClose()) return;
  }
}

}  // namespace parlowen
