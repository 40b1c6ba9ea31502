#pragma once
#include <sys/wait.h>

#include <cstdlib>
#include <sstream>
#include <utility>

#include "headless/Stories.h"

namespace parlowen::testing {

struct ProgramResult {
  int status = -1;
  std::vector<std::string> lines;  ///< of standard output; the folder's name stands as {folder}
  std::string errors;
};

/// Runs the headless program in the folder; `input` is its standard input. `prefix` is shell text before it.
inline ProgramResult RunProgram(const TempFolder& folder, const std::string& arguments,
                                const std::string& input, const std::string& prefix = "") {
  const TempFolder streams;
  WriteFile(streams / "in", input);
  WriteFile(streams / "out", std::string());
  WriteFile(streams / "err", std::string());
  const std::string line = "cd '" + folder.path() + "' && " + prefix + " '" PARLOWEN_HEADLESS "' " +
                           arguments + " < '" + (streams / "in") + "' > '" + (streams / "out") + "' 2> '" +
                           (streams / "err") + "'";
  const int status = std::system(line.c_str());
  ProgramResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, {}, ReadFile(streams / "err")};
  std::istringstream out(ReadFile(streams / "out"));
  for (std::string text; std::getline(out, text);) {
    text = Replaced(std::move(text), folder.path(), "{folder}");
    result.lines.push_back(Replaced(std::move(text), PARLOWEN_VERSION, "{version}"));
  }
  return result;
}

}  // namespace parlowen::testing
