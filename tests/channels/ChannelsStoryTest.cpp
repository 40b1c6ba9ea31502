// Whole commands through the headless program: a script and the lines it prints.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "base/Gbk.h"
#include "palatography/NspBytes.h"
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
  EXPECT_EQ(ScriptRunner(in, out, errors, 1024).Run(), ScriptResult::Ran) << errors.str();
  fs::current_path(before);
  std::vector<std::string> lines;
  std::istringstream printed(out.str());
  for (std::string line; std::getline(printed, line);) {
    for (std::size_t at = 0; (at = line.find(folder.path())) != std::string::npos;) line.replace(at, folder.path().size(), "{folder}");
    lines.push_back(line);
  }
  return lines;
}

std::string Line(std::string text) {
  std::replace(text.begin(), text.end(), '\'', '"');
  return "{\"event\":" + text + "}";
}
std::string OpenDialog(const char* title, const char* file, const char* kind = "open", const char* filter = "['NSP文件(*.nsp)','*.nsp']") {
  return Line(std::string("'dialog','kind':'") + kind + "','title':'" + title + "','filter':[" + filter + "],'answer':'" + file + "'");
}

TEST(ChannelsStory, ANasalRecordingIsOpenedMeasuredAndKept) {
  const TempFolder folder;
  // Full band, steady values 3 and 4: every frame is exactly 100·9/25.
  const NspBytes file{.formLength = {}, .headerLength = {}, .rate = 16000,
                      .chunks = Speech("SDA_", std::vector<std::int16_t>(500, 3)) + Speech("SD_B", std::vector<std::int16_t>(500, 4))};
  WriteFile(folder / "n.nsp", file.TwoChannel());
  const std::string figures = "全频带  增益比 1.000  鼻音能量比：平均 36.0%  标准差 0.0%  最小 36.0%  最大 36.0%";
  const char* nas = "['鼻音能量比数据文件(*.nas)','*.nas']";
  const auto lines = Printed(folder,
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
  EXPECT_EQ(ReadFile(folder / "curve.nas"), "HEAD" + Little(16, 4) + Little(0, 4) + Little(160, 4) + Little(0x3F800000, 4) + Little(0x42100000, 4));
  EXPECT_NE(ReadFile(folder / "channels.svg").find("声道2：口"), std::string::npos);
}

TEST(ChannelsStory, AnEpgFileShowsItsMarkersAndTheNextSoundEndsThem) {
  const TempFolder folder;
  NspBytes file;
  file.chunks = Speech("SDA_", Ramp(3200)) + Preferences() + Chunk("PALA", "frames") + Marker("MKA_", 1600, ToGbk("标志")) + Marker("MK_B", 1000, "no");
  WriteFile(folder / "e.nsp", file.Epg(3200));
  file.chunks = Speech("SDA_", Ramp(3200));
  WriteFile(folder / "plain.nsp", file.Epg(3200));
  const std::string ask = "请用鼠标左、右键定义要进行统计的段";
  const auto lines = Printed(folder,
                         "command 40061\nanswer file e.nsp\ncommand 40060\ncommand 40087\n"
                         "picture waveform marked.svg\nanswer file plain.nsp\ncommand 40060\n"
                         "command 40061\ncommand 40088\npicture waveform plain.svg\n");
  const std::vector<std::string> expected = {
      Line("'refused','command':40061"),
      OpenDialog("打开腭位数据文件", "e.nsp"),
      Line("'caption','text':'Parlowen(Tessiran) -- {folder}/e.nsp'"),
      Line("'message','icon':'none','caption':'语音段未正确定义','text':'" + ask + "'"),
      OpenDialog("打开腭位数据文件", "plain.nsp"),
      Line("'caption','text':'Parlowen(Tessiran) -- {folder}/plain.nsp'"),
      Line("'refused','command':40061"),
      Line("'refused','command':40088"),
  };
  EXPECT_EQ(lines, expected);
  const std::string marked = ReadFile(folder / "marked.svg");
  EXPECT_NE(marked.find(">标志<"), std::string::npos);
  EXPECT_EQ(marked.find(">no<"), std::string::npos);
  EXPECT_EQ(ReadFile(folder / "plain.svg").find("标志"), std::string::npos);
}

}  // namespace
}  // namespace parlowen
