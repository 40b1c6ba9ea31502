// One run of tone statistics that two programs have open.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "document/SoundDocument.h"
#include "prosody/ToneCommands.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

struct Program {
  explicit Program(const std::string& path, const std::string& anew = "no") {
    CommandStates states;
    document->resetForNewSound(160000, 16000, states);
    document->resetPitch();
    document->pitchPresent = true;
    for (std::size_t frame = 0; frame < 1000; ++frame)
      document->pitch[frame] = static_cast<float>(80 + frame % 50);
    window.answers = {"file:" + path, anew};
    EXPECT_TRUE(BeginTonesCommand(window, tones));
  }
  /// A tone of 20 frames from a frame on.
  void Add(int frame, const std::string& group = "a") {
    document->selectionStart = frame * 160;
    document->selectionEnd = (frame + 20) * 160;
    window.answers = {"ok:" + group};
    AddToneCommand(window, desk, tones);
  }
  void Remove() { RemoveToneCommand(window, tones); }
  std::vector<int> Frames() const {
    std::vector<int> frames;
    for (const ToneItem& item : tones.items) frames.push_back(item.start / 160);
    return frames;
  }

  testing::FakeWindow window;
  std::unique_ptr<SoundDocument> document = std::make_unique<SoundDocument>();
  std::string folder;
  ProsodyDesk desk{*document, folder};
  ToneState tones;
};

TEST(ToneRun, TakesWhatAnotherProgramAddedAndRemoved) {
  const testing::TempFolder folder;
  Program first(folder / "run.pit");
  first.Add(10);
  first.Add(60);
  Program second(folder / "run.pit");
  first.Remove();
  first.Add(110);
  second.Add(160);
  EXPECT_EQ(second.Frames(), (std::vector<int>{10, 110, 160}));
  first.Remove();  // of what it shows, the last
  EXPECT_EQ(first.Frames(), (std::vector<int>{10, 160}));
  second.Remove();
  first.Remove();
  EXPECT_EQ(first.window.log.back(), "status|已撤消 a 第2个") << "another was first";
  EXPECT_EQ(first.Frames(), (std::vector<int>{10}));
  first.Add(10);
  first.Add(60);
  first.Add(10);
  first.Remove();  // of equal ones the last
  EXPECT_EQ(first.Frames(), (std::vector<int>{10, 10, 60}));
}

TEST(ToneRun, TwoThatBeginTheSameFileKeepBoth) {
  const testing::TempFolder folder;
  Program first(folder / "run.pit"), second(folder / "run.pit");
  first.Add(10);
  second.Add(60);
  EXPECT_EQ(second.Frames(), (std::vector<int>{10, 60}));
  testing::WriteFile(folder / "run.pit", std::string("damaged"));
  first.Add(110);
  EXPECT_EQ(first.Frames(), (std::vector<int>{10, 110}));
  Program third(folder / "run.pit", "yes");
  third.Add(160);
  first.Add(210);
  EXPECT_EQ(first.Frames(), (std::vector<int>{10, 110, 160, 210})) << "begun anew by the third";
  // What is refused changes nothing.
  third.document->pitch.fill(0);
  third.Add(260);
  EXPECT_EQ(third.window.log.back(), "none|Parlowen(Tessiran)|所选段没有基频！");
  EXPECT_EQ(third.Frames(), (std::vector<int>{160}));
  EndTonesCommand(third.window, third.tones);
  const std::string result = testing::ReadFile(folder / "run.bin");
  EXPECT_FALSE(result.empty());
  EndTonesCommand(first.window, first.tones);
  EXPECT_EQ(testing::ReadFile(folder / "run.bin"), result) << "both end what the file holds";
}

TEST(ToneRun, TwoThatDoNotFitIntoOneFileSpoilNothing) {
  const testing::TempFolder folder;
  Program first(folder / "run.pit");
  for (int i = 0; i < 20; ++i) first.Add(20 * i, std::string(1, static_cast<char>('a' + i)));
  Program second(folder / "run.pit", "yes");
  for (int i = 0; i < 20; ++i) second.Add(400 + 20 * i, std::string(1, static_cast<char>('A' + i)));
  first.Add(900, "a");  // of 32 groups there would be 40
  EXPECT_EQ(first.window.log.back(), "none|Parlowen(Tessiran)|数据太多，不能再加入！");
  EXPECT_EQ(first.Frames().size(), 20u);
  first.window.log.clear();
  EndTonesCommand(first.window, first.tones);
  EXPECT_EQ(first.window.log.back(), "none|Parlowen(Tessiran)|数据太多，不能再加入！");
  EXPECT_FALSE(first.tones.open);
  EXPECT_EQ(Program(folder / "run.pit").Frames(), second.Frames());
}

TEST(ToneRun, AnEndThatIsRefusedChangesNothingAndOneThatIsNotLosesNothing) {
  const testing::TempFolder folder;
  Program first(folder / "run.pit");
  first.Add(10);
  Program second(folder / "run.pit", "yes");
  second.Add(60);
  const std::string seconds = testing::ReadFile(folder / "run.pit");
  std::filesystem::create_directory(folder / "run.bin");
  EndTonesCommand(first.window, first.tones);
  EXPECT_TRUE(first.tones.open);
  EXPECT_EQ(first.Frames(), (std::vector<int>{10}));
  EXPECT_EQ(testing::ReadFile(folder / "run.pit"), seconds);
  std::filesystem::remove(folder / "run.bin");
  std::filesystem::remove(folder / "run.pit");
  EndTonesCommand(first.window, first.tones);
  EXPECT_EQ(Program(folder / "run.pit").Frames(), (std::vector<int>{10}));
  Program third(folder / "run.pit");
  std::filesystem::resize_file(folder / "run.pit", kLargestToneFile + 1);  // what cannot be read stays
  third.Add(110);
  EndTonesCommand(third.window, third.tones);
  EXPECT_TRUE(third.tones.open);
  EXPECT_EQ(third.Frames(), (std::vector<int>{10}));
  EXPECT_EQ(std::filesystem::file_size(folder / "run.pit"), kLargestToneFile + 1);
}

TEST(ToneRun, WhatAnotherProgramAddsBehindMovesNothing) {
  const testing::TempFolder folder;
  Program first(folder / "run.pit");
  first.Add(5);
  first.Remove();
  EXPECT_TRUE(first.Frames().empty());
  first.Add(10);
  first.tones.picked = 0;
  Program second(folder / "run.pit");
  second.document->filePath = "/b.wav";
  second.Add(60);
  first.Add(110);
  EXPECT_EQ(first.Frames(), (std::vector<int>{10, 60, 110}));
  EXPECT_EQ(first.tones.picked, 0);
  EXPECT_EQ(first.tones.unsavedSound, first.document->Stamp());
  second.Remove();
  first.Add(160);
  EXPECT_EQ(first.tones.picked, -1);
}

}  // namespace
}  // namespace parlowen
