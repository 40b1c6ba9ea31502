// Whole commands through the headless program: a script and the lines it prints.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "palatography/NspBytes.h"
#include "shell/headless/HeadlessStage.h"
#include "shell/headless/ScriptRunner.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using namespace testing;
namespace fs = std::filesystem;

/// Runs the script in the folder; the folder's name stands as {folder} in the lines.
std::vector<std::string> Printed(const TempFolder& folder, const std::string& script) {
  const fs::path before = fs::current_path();
  fs::current_path(folder.path());
  std::istringstream in(script);
  std::ostringstream out, errors;
  HeadlessStage stage(out, 1024);
  EXPECT_EQ(ScriptRunner(in, errors, stage).Run(), ScriptResult::Ran) << errors.str();
  fs::current_path(before);
  std::vector<std::string> lines;
  std::istringstream printed(out.str());
  for (std::string line; std::getline(printed, line);) {
    for (std::size_t at = 0; (at = line.find(folder.path())) != std::string::npos;)
      line.replace(at, folder.path().size(), "{folder}");
    lines.push_back(line);
  }
  return lines;
}

std::string Line(std::string text) {
  std::replace(text.begin(), text.end(), '\'', '"');
  return "{\"event\":" + text + "}";
}
std::string OpenDialog(const char* title, const char* file, const char* kind = "open",
                       const char* filter = "['NSP文件(*.nsp)','*.nsp']") {
  return Line(std::string("'dialog','kind':'") + kind + "','title':'" + title + "','filter':[" + filter +
              "],'answer':'" + file + "'");
}

TEST(ChannelsStory, ANasalRecordingIsOpenedMeasuredAndKept) {
  const TempFolder folder;
  // Full band, steady values 3 and 4: every frame is exactly 100·9/25.
  const NspBytes file{.formLength = {},
                      .headerLength = {},
                      .rate = 16000,
                      .chunks = Speech("SDA_", std::vector<std::int16_t>(500, 3)) +
                                Speech("SD_B", std::vector<std::int16_t>(500, 4))};
  WriteFile(folder / "n.nsp", file.TwoChannel());
  const std::string figures =
      "全频带  增益比 1.000  鼻音能量比：平均 36.0%  标准差 0.0%  最小 36.0%  最大 36.0%";
  const char* nas = "['鼻音能量比数据文件(*.nas)','*.nas']";
  const auto lines = Printed(
      folder,
      "print nasalance\n"
      "answer file n.nsp\ncommand 40116\ncommand 40111\n"
      "button 1201\nprint nasalance\n"
      "click channels 20 100\nclick channels 700 100 right\nprint nasalance\n"
      "answer file curve\nbutton 1203\nselect 0 500\nanswer file curve.nas\nbutton 1204\nbutton 1205\nbutton 2\n"
      "picture channels channels.svg\nclose\nprint samples 499 5 2\n");
  const std::string value = "'value','what':'nasalance','values':";
  const std::vector<std::string> expected = {
      Line(value + "[],'mean':null,'sd':null,'min':null,'max':null"),
      OpenDialog("打开NSP双声道文件", "n.nsp"),
      Line("'caption','text':'Parlowen(Tessiran) -- {folder}/n.nsp'"),
      Line("'window','name':'channels','state':'open'"),
      Line("'status','text':'" + figures + "'"),
      Line(value + "[36,36],'mean':36,'sd':0,'min':36,'max':36"),
      // Columns 0 and 680 of 1004: samples 0 to 338, room for one frame.
      Line(value + "[36],'mean':36,'sd':0,'min':36,'max':36"),
      OpenDialog("保存鼻音能量比数据文件", "curve", "save", nas),
      OpenDialog("打开鼻音能量比数据文件", "curve.nas", "open", nas),
      Line("'status','text':'curve.nas" + figures.substr(std::string("全频带").size()) + "'"),
      Line("'editor','file':'NasRatio.txt'"),
      Line("'status','text':'T 键停止放音'"),
      Line("'status','text':'放音结束'"),
      Line("'window','name':'channels','state':'closed'"),
      Line("'value','what':'samples','samples':[4]"),
  };
  EXPECT_EQ(lines, expected);
  EXPECT_EQ(ReadFile(folder / "curve.nas"), "HEAD" + Little(16, 4) + Little(0, 4) + Little(160, 4) +
                                                Little(0x3F800000, 4) + Little(0x42100000, 4));
  EXPECT_NE(ReadFile(folder / "channels.svg").find("声道2：口"), std::string::npos);
}

}  // namespace
}  // namespace parlowen
