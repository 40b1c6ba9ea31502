#include "shell/CommandTable.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "audio/file/FileLoudspeaker.h"
#include "audio/file/FileMicrophone.h"
#include "document/SoundFileCommands.h"
#include "shell/Station.h"

namespace parlowen {
namespace {

using namespace testing;

/// A workstation with a loudspeaker and, when it is wanted, a microphone.
struct Booth {
  testing::TempFolder folder;
  testing::FakeWindow window;
  FileLoudspeaker speaker;
  FileMicrophone microphone;
  Workstation w{window, folder.path(), {&speaker, &microphone}};

  void Open(std::uint32_t rate, ChannelMode mode = ChannelMode::One, std::size_t count = 60000) {
    WavBytes wav;
    wav.rate = rate;
    wav.channels = mode == ChannelMode::Two ? 2 : 1;
    wav.blockAlign = 2 * wav.channels;
    wav.samples.assign(count, 1000);
    window.answers = {"file:" + testing::WriteFile(folder / "sound1.wav", wav.Bytes())};
    EXPECT_TRUE(w.dispatchCommand(mode == ChannelMode::Two ? 40110 : 110));
  }
  void AddPoint() {
    w.Act([&] { w.vowels.chart.Add(500, 1500, 2500); });
  }
  void ClickRegion() {
    Do(40010);
    for (const int x : {30, 90}) w.Click(Pane::Waveform, {x, x}, MouseButton::Left, false);
  }
  void Listen() {
    EXPECT_EQ(microphone.Listen(folder / "sound1.wav"), "");
    w.InputDevicesChanged();
  }
  template <typename... Numbers>
  void Do(Numbers... numbers) {
    for (const int number : {numbers...}) EXPECT_TRUE(w.dispatchCommand(number)) << number;
  }
};

/// Ways to come to a state in which some rows are enabled, each with its letter.
const std::pair<char, std::function<void(Booth&)>> kSituations[] = {
    {'s', [](Booth&) {}},                                              // the start
    {'l', [](Booth& b) { b.Open(22050); }},                            // a sound of a low rate
    {'H', [](Booth& b) { b.Open(22100); }},                            // of a high rate
    {'L', [](Booth& b) { b.Open(22100, ChannelMode::One, 300000); }},  // longer than the view
    {'h', [](Booth& b) { b.Open(22050), b.Open(22100); }},             // of a high rate after a low one
    {'5', [](Booth& b) { b.Open(16000), b.w.Select(0, 50); }},         // too short to be played
    {'6', [](Booth& b) { b.Open(16000), b.w.Select(0, 51); }},         // just long enough
    {'7', [](Booth& b) { b.Open(22100), b.w.Select(0, 51); }},         // the same at a high rate
    {'f', [](Booth& b) { b.Open(16000), b.Do(220); }},                 // a contour
    {'F', [](Booth& b) { b.Open(16000), b.w.Select(0, 51), b.Do(220); }},
    {'c', [](Booth& b) { b.Open(16000), b.w.Select(0, 51), b.Do(40002), b.Open(16000); }},  // an old clip
    {'x', [](Booth& b) { b.Open(16000), b.w.Select(0, 51), b.Do(40001); }},
    {'v', [](Booth& b) { b.Open(16000), b.w.Select(0, 99), b.Do(40002, 40003); }},
    {'u', [](Booth& b) { b.Open(16000), b.w.Select(0, 99), b.Do(40001, 40036); }},
    {'t', [](Booth& b) { b.Open(44100, ChannelMode::Two); }},
    {'m', [](Booth& b) { b.Open(16000), b.Listen(); }},
    {'r', [](Booth& b) { b.Open(16000), b.Listen(), b.Do(272); }},  // recording
    {'p', [](Booth& b) { b.Open(16000), b.Do(40023); }},            // playing
    {'w', [](Booth& b) { b.Open(16000), b.Do(170); }},              // a picture
    {'k', [](Booth& b) { b.Open(16000), b.w.states.Tell(Need::Statistics); }},
    {'e', [](Booth& b) { b.w.states.Tell(Need::PalateFile); }},
    {'a', [](Booth& b) { b.Open(16000), b.Do(40090); }},  // a long-term spectrum
    {'o', [](Booth& b) { b.Open(16000), b.Do(40057); }},  // the point chart, empty
    {'V', [](Booth& b) { b.Open(16000), b.Do(40057), b.AddPoint(); }},
    {'g', [](Booth& b) { b.Open(16000), b.ClickRegion(); }},
};

/// Whether a play of the whole sound ends when the command is chosen and every question cancelled.
const char* OnPlay(int number) {
  Booth b;
  b.Open(16000, ChannelMode::Two);
  b.Listen();
  b.w.Select(1000, 30000);
  b.Do(220, 170, 40002, 40090, 40057);
  b.w.vowels.chart.Add(500, 1500, 2500);
  b.w.states.Tell(Need::Undo);
  b.Do(40023);
  return !b.w.dispatchCommand(number) ? "?" : b.w.player.playing() ? "-" : "stop";
}

std::string Asks(DoesSet does) {
  std::string asks;
  for (const auto& [flag, word] : {std::pair{Does::OpenSound, "sound"},
                                   {Does::RecordSound, "sound"},
                                   {Does::ReplaceContour, "contour"},
                                   {Does::ReplaceMarkers, "markers"},
                                   {Does::ReplaceAnnotations, "annotations"},
                                   {Does::ReplaceChart, "chart"}})
    if (does.Has(flag)) asks += std::string(asks.empty() ? "" : "+") + word;
  return asks.empty() ? "-" : asks;
}

/// Against rows.txt, which says what a line holds.
TEST(CommandTable, EveryRowIsEnabledStopsAndAsksAsItShould) {
  std::vector<std::unique_ptr<Booth>> booths;
  for (const auto& [letter, come] : kSituations) come(*booths.emplace_back(std::make_unique<Booth>()));
  std::istringstream file(testing::ReadFile(PARLOWEN_SOURCE_DIR "/tests/shell/rows.txt"));
  std::map<std::string, Texts> expected;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    const Texts fields{std::istream_iterator<std::string>(words), {}};
    expected[fields[0]] = fields;
  }
  for (const CommandRow& row : CommandTable()) {
    std::string when;
    for (std::size_t i = 0; i < booths.size(); ++i)
      when += booths[i]->w.states.IsEnabled(row.number) ? kSituations[i].first : '.';
    const auto missing = [&](int situation) {
      const std::string text = booths[static_cast<std::size_t>(situation)]->w.states.MissingFor(row.number);
      return text.empty() ? "-" : text;
    };
    const std::string number = std::to_string(row.number);
    EXPECT_EQ((Texts{number, *row.keys ? row.keys : "-", when, OnPlay(row.number), Asks(row.does), missing(0),
                     missing(2)}),
              expected[number]);
  }
}

/// The repair of a contour, the placing of a text, a region (chosen from the point chart, too) and the point chart end
/// when their successor has done something, not before.
TEST(CommandTable, AToolEndsWhenItsSuccessorHasDoneSomething) {
  const struct {
    Activity in;
    int command;
    std::deque<std::string> answers;
    Activity after;
  } cases[] = {
      {Activity::PointChart, 40066, {}, Activity::PointChart},  // the stretch is too long
      {Activity::PointChart, 170, {}, Activity::Waveform},
      {Activity::RegionChosen, 40096, {}, Activity::RegionChosen},  // a rate too high
      {Activity::RegionChosen, 40070, {"ok:"}, Activity::PointChart},
      {Activity::RegionChosen, 40070, {"cancel"}, Activity::RegionChosen},
      {Activity::RegionChosen, 170, {}, Activity::Waveform},
      {Activity::PitchRepair, 40103, {"cancel"}, Activity::PitchRepair},
      {Activity::PitchRepair, 40103, {"ok:"}, Activity::Waveform},
      {Activity::PitchRepair, 40042, {}, Activity::PitchRepair},
      {Activity::PitchRepair, 40062, {}, Activity::PitchRepair},  // no point chart is shown
      {Activity::PitchRepair, 40117, {}, Activity::PitchRepair},
      {Activity::PitchRepair, 40067, {}, Activity::PitchRepair},  // too long
      {Activity::PitchRepair, 40080, {}, Activity::Annotation},
      {Activity::PitchRepair, 110, {"cancel"}, Activity::PitchRepair},
      {Activity::PitchRepair, 110, {"file:/no/such.wav"}, Activity::PitchRepair},
      {Activity::PitchRepair, 40060, {"file:/no/such.nsp"}, Activity::PitchRepair},
      {Activity::PitchRepair, 40050, {"file:/tmp/none/p.pdt"}, Activity::PitchRepair},
      {Activity::Annotation, 40074, {"cancel"}, Activity::Annotation},
      {Activity::Annotation, 40109, {"cancel"}, Activity::Annotation},
      {Activity::Annotation, 212, {}, Activity::Frame},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.command));
    Booth b;
    b.Open(c.command == 40096 ? 11025 : 16000, ChannelMode::One, 400000);
    b.w.Select(0, 350000);
    b.Do(220);
    if (c.in == Activity::PointChart || c.in == Activity::RegionChosen) b.Do(40057);
    if (c.in == Activity::PitchRepair) b.Do(40042);
    if (c.in == Activity::Annotation) b.Do(40080);
    if (c.in == Activity::RegionChosen) b.ClickRegion();
    ASSERT_EQ(b.w.document.activity, c.in);
    b.window.answers = c.answers;
    b.Do(c.command);
    EXPECT_EQ(b.w.document.activity, c.after);
  }
}

/// The page of a menu in both languages has a row for each of its commands, with its keys, and promises no other.
TEST(CommandTable, TheHelpDescribesEveryCommandWithItsKeys) {
  constexpr const char* kPages[] = {"file",     "sound",  "pitch",    "tones",     "spectrum",
                                    "vowel",    "palate", "channels", "edit",      "marking",
                                    "settings", "region", "help",     "extension", "extension"};
  for (const std::string language : {"zh/", "en/"}) {
    for (const CommandRow& row : CommandTable()) {
      const std::string label = row.label, name = label.substr(0, label.find_last_of("[("));
      std::string cell = "<td>" + name.substr(0, name.find_last_not_of(' ') + 1);
      const std::string keys = row.keys;
      if (!keys.empty()) cell += " (" + (keys.starts_with("Page") ? "Page " + keys.substr(4) : keys) + ")";
      const std::string page = language + kPages[static_cast<int>(row.menu)] + ".html";
      const std::string text = testing::ReadFile(PARLOWEN_SOURCE_DIR "/data/help/" + page);
      EXPECT_NE(text.find(cell + "</td>"), std::string::npos) << page << ": " << cell;
    }
  }
}

}  // namespace
}  // namespace parlowen
