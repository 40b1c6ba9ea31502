// One run of tone statistics that two programs have open.

#include <gtest/gtest.h>

#include "document/SoundDocument.h"
#include "prosody/ToneCommands.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

struct Program {
  explicit Program(const std::string& path) {
    CommandStates states;
    document->resetForNewSound(160000, 16000, states);
    document->resetPitch();
    document->pitchPresent = true;
    for (std::size_t frame = 0; frame < 1000; ++frame)
      document->pitch[frame] = static_cast<float>(80 + frame % 50);
    window.answers = {"file:" + path, "no"};
    EXPECT_TRUE(BeginTonesCommand(window, tones));
  }
  /// A tone of 20 frames from a frame on.
  void Add(int frame) {
    document->selectionStart = frame * 160;
    document->selectionEnd = (frame + 20) * 160;
    window.answers = {"ok:a"};
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
  EXPECT_EQ(first.window.log.back(), "status|没有已选语料") << "another was first";
  EXPECT_EQ(first.Frames(), (std::vector<int>{10}));
}

}  // namespace
}  // namespace parlowen
