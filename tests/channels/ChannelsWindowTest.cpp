#include "channels/ChannelsWindow.h"

#include <gtest/gtest.h>

#include "dsp/SignalTables.h"
#include "support/FakeWindow.h"
#include "support/Samples.h"

namespace parlowen {
namespace {

using namespace testing;

bool Shows(const Picture& picture, const std::string& part) {
  for (const Mark& mark : picture.marks)
    if (const auto* text = std::get_if<TextMark>(&mark);
        text != nullptr && text->text.find(part) != std::string::npos)
      return true;
  return false;
}

TEST(ChannelsWindow, OutlivesTheTwoChannels) {
  InitSignalTables();
  FakeWindow window;
  CommandStates states;
  SoundDocument document;
  ChannelsState state;
  const std::string nowhere = "/nowhere";
  const PlayChannel play;
  const auto load = [&](const std::vector<std::int16_t>& first, const std::vector<std::int16_t>& second) {
    std::copy(first.begin(), first.end(), document.samples.data());
    std::copy(second.begin(), second.end(), document.samples2.data());
    document.twoChannel = !second.empty();
    document.resetForNewSound(static_cast<int>(first.size()), 16000, states);
  };
  const auto press = [&](int number) {
    for (const ToolControl& control : window.tool->Controls())
      if (control.number == number && control.enabled) return window.tool->Press(window, control);
    window.log.push_back("grey");
  };
  load(Sines(16000, 16000, {{500, 3000}}), Sines(16000, 16000, {{500, 4000}}));
  ShowTwoChannelsCommand(window, {document, states, state, nowhere, play});
  const Picture picture = window.tool->Draw(1024, 640);
  for (const Mark& mark : picture.marks)
    if (const auto* line = std::get_if<PolylineMark>(&mark); line != nullptr) {
      for (const Point point : line->points)
        ASSERT_TRUE(point.x >= 20 && point.x < 1024 && point.y >= 0 && point.y < 640);
    }
  EXPECT_NE(window.tool->Hover({522, 0}).find("鼻音能量比 36.0%"), std::string::npos);
  press(1205);
  EXPECT_EQ(window.Log(), Texts{"error|Parlowen(Tessiran)|文件打开错误！"});
  // A sound shorter than the window's columns, none, and one of one channel.
  load({1, 2, 3}, {4, 5, 6});
  EXPECT_FALSE(Shows(window.tool->Draw(1024, 640), "没有双声道数据！"));
  load({}, {1});
  window.tool->Draw(1024, 640);
  load({1, 2, 3}, {});
  EXPECT_TRUE(Shows(window.tool->Draw(25, 10), "没有双声道数据！"));
  for (const int button : {1, 2, 1201, 1202, 1203, 1205, 1206}) press(button);
  EXPECT_EQ(window.Log(), Texts(7, "grey"));
}

}  // namespace
}  // namespace parlowen
