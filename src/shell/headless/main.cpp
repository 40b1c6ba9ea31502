#include <fstream>
#include <iostream>
#include <string>

#include "shell/headless/HeadlessStage.h"
#include "shell/headless/Script.h"
#include "shell/headless/ScriptRunner.h"

namespace {

constexpr const char* kUsage =
    "Usage: parlowen-headless [--pane-width N] [SCRIPT|-]\n"
    "Runs the steps of SCRIPT (standard input for - or none) in the current directory and prints\n"
    "one JSON object a line.\n\n"
    "  --pane-width N   width of every pane in pixels (default 1024)\n"
    "  --help           this text\n"
    "  --version        the version\n\n"
    "Exit status: 0 the script ran, 1 a script error, 2 a dialog found no answer, 3 the script could not be opened.\n";

int UsageError(const std::string& text) {
  std::cerr << "parlowen-headless: " << text << "\n" << kUsage;
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace parlowen;
  std::ios::sync_with_stdio(false);
  constexpr int kNarrowestPane = 21, kWidestPane = 32767;
  int paneWidth = 1024;
  std::string script = "-";
  bool scriptNamed = false;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--help" || argument == "-h") {
      std::cout << kUsage;
      return 0;
    }
    if (argument == "--version") {
      std::cout << "parlowen-headless " PARLOWEN_VERSION "\n";
      return 0;
    }
    const bool joined = argument.starts_with("--pane-width=");
    if (argument == "--pane-width" || joined) {
      const std::string text = joined         ? argument.substr(argument.find('=') + 1)
                               : i + 1 < argc ? argv[++i]
                                              : "";
      const auto width = ParseInteger(text);
      if (!width || *width < kNarrowestPane || *width > kWidestPane)
        return UsageError("--pane-width needs a number from 21 to 32767");
      paneWidth = *width;
    } else if (argument.size() > 1 && argument[0] == '-') {
      return UsageError("unknown option " + argument);
    } else if (scriptNamed) {
      return UsageError("more than one script");
    } else {
      script = argument;
      scriptNamed = true;
    }
  }
  const auto run = [paneWidth](std::istream& steps) {
    HeadlessStage stage(std::cout, paneWidth);
    return static_cast<int>(ScriptRunner(steps, std::cerr, stage).Run());
  };
  if (script == "-") return run(std::cin);
  std::ifstream file(script, std::ios::binary);
  // A folder opens but cannot be read.
  if (!file || (file.peek(), file.bad())) {
    std::cerr << "parlowen-headless: cannot open " << script << "\n";
    return static_cast<int>(ScriptResult::NotOpened);
  }
  file.clear();
  return run(file);
}
