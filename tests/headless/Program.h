#pragma once
#include <sys/wait.h>

#include <cstdlib>
#include <sstream>

#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen::testing {

struct ProgramResult {
  int status = -1;
  std::vector<std::string> lines;   ///< of standard output; the folder's name stands as {folder}
  std::string errors;
};

inline std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) text.replace(at, what.size(), by);
  return text;
}

/// Runs the headless program in the folder; `input` is its standard input. `prefix` is shell text before it.
inline ProgramResult RunProgram(const TempFolder& folder, const std::string& arguments, const std::string& input, const std::string& prefix = "") {
  const TempFolder streams;
  WriteFile(streams / "in", input);
  WriteFile(streams / "out", std::string());
  WriteFile(streams / "err", std::string());
  const std::string line = "cd '" + folder.path() + "' && " + prefix + " '" PARLOWEN_HEADLESS "' " + arguments + " < '" + (streams / "in") +
                           "' > '" + (streams / "out") + "' 2> '" + (streams / "err") + "'";
  const int status = std::system(line.c_str());
  ProgramResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, {}, ReadFile(streams / "err")};
  std::istringstream out(ReadFile(streams / "out"));
  for (std::string text; std::getline(out, text);) {
    text = Replaced(std::move(text), folder.path(), "{folder}");
    result.lines.push_back(Replaced(std::move(text), PARLOWEN_VERSION, "{version}"));
  }
  return result;
}

/// The sounds that stories speak of.
inline void WriteSounds(const TempFolder& folder) {
  const auto write = [&](const std::string& name, std::uint32_t rate, std::vector<std::int16_t> samples, const std::string& behind = "") {
    WavBytes wav;
    wav.rate = rate;
    wav.samples = std::move(samples);
    wav.behind = behind;
    WriteFile(folder / name, wav.Bytes());
    return wav;
  };
  write("mono7.wav", 16000, Ramp(32000));
  write("mono8.wav", 11025, Ramp(500));
  write("high.wav", 44100, Ramp(1000));
  write("minute.wav", 8000, Ramp(480000));
  write("中文 名 3.wav", 8000, Ramp(10));
  write("pitch.wav", 16000, Ramp(1600), PitchTail({-1, 100, 0, 90, 80, 0, 0, 70, 60, 50, 0, 0}));
  WavBytes stereo = write("stereo.wav", 16000, {});
  stereo.blockAlign = 4;
  for (int i = 1; i <= 4000; ++i) {
    stereo.samples.push_back(static_cast<std::int16_t>(i));
    stereo.samples.push_back(static_cast<std::int16_t>(-i));
  }
  WriteFile(folder / "stereo.wav", stereo.Bytes());
  WavBytes bits = write("bits8.wav", 22050, Ramp(10));
  bits.bits = 8;
  WriteFile(folder / "bits8.wav", bits.Bytes());
  WriteFile(folder / "text.wav", std::string(100, 't'));
  std::filesystem::create_directory(folder / "folder");
  write("long.wav", 16000, {});
  WavBytes longSound = write("long.wav", 16000, {});
  longSound.dataSize = 200 * 32000;
  WriteFile(folder / "long.wav", longSound.Bytes());
  std::filesystem::resize_file(folder / "long.wav", 44 + 200 * 32000);
}

}  // namespace parlowen::testing
