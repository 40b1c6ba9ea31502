#pragma once
#include <istream>
#include <optional>
#include <ostream>
#include <string>

#include "shell/headless/Script.h"
#include "shell/headless/ScriptStage.h"

namespace parlowen {

/// Exit statuses of the headless program.
enum class ScriptResult { Ran = 0, Error = 1, AnswerMissing = 2, NotOpened = 3 };

/// Runs a script on a stage.
class ScriptRunner {
 public:
  ScriptRunner(std::istream& script, std::ostream& errors, ScriptStage& stage);

  ScriptResult Run();

 private:
  /// Runs one step; "" or what is wrong with it.
  std::string RunStep(const ScriptStep& step);
  std::string Command(const ScriptStep& step);
  std::string Answer(const ScriptStep& step);
  std::string Select(const ScriptStep& step);
  std::string Click(const ScriptStep& step);
  std::string Key(const ScriptStep& step);
  std::string Button(const ScriptStep& step);
  std::string Close(const ScriptStep& step);
  std::string SoundInput(const ScriptStep& step);
  std::string SoundOutput(const ScriptStep& step);
  std::string Print(const ScriptStep& step);
  std::string WritePicture(const ScriptStep& step);
  void RunModalSteps();
  std::optional<ScriptStep> NextStep();
  void RunSound();
  void TakeStopStep();
  bool Report(const ScriptStep& step, const std::string& wrong);

  ScriptReader reader_;
  std::ostream& errors_;
  ScriptStage& stage_;
  ScriptTalk& window_;
  Workstation& workstation_;
  std::optional<int> blockLimit_;    ///< the stop of a recording is pressed when so many blocks are delivered
  std::optional<ScriptStep> ahead_;  ///< a step that was looked at before its time
  bool failed_ = false;
  bool labelsHaveKeys_ = false;         ///< the label pane was clicked last
  std::optional<Point> labelsClicked_;  ///< where; a second click there is a double click
};

}  // namespace parlowen
