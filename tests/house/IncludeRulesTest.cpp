// The rooms of src/ and what they may include; Qt in its two folders; command numbers in one file.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include "support/TempFolder.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;
using Rooms = std::set<std::string>;

const std::map<std::string, Rooms>& MayInclude() {
  static const auto table = [] {
    const Rooms document = {"base", "ui", "dsp", "document"};
    const auto with = [](Rooms rooms, const Rooms& more) {
      rooms.insert(more.begin(), more.end());
      return rooms;
    };
    std::map<std::string, Rooms> made = {
        {"base", {}},
        {"ui", {"base"}},
        {"dsp", {"base"}},
        {"document", {"base", "ui", "dsp"}},
        {"spectral", document},
        {"prosody", with(document, {"pitch"})},
        {"palatography", with(document, {"spectral"})},
        {"voice", with(document, {"spectral", "pitch"})},
        {"articulation", with(document, {"spectral"})},
        {"audio", {"base", "ui", "document"}},
        {"pitch", with(document, {"spectral"})},
        {"vowel", with(document, {"spectral", "prosody"})},
        {"annotation", with(document, {"audio"})},
        {"synthesis", with(document, {"pitch", "spectral", "audio"})},
        {"channels", with(document, {"audio", "palatography"})},
    };
    Rooms below;
    for (const auto& [room, unused] : made) below.insert(room);
    made["audio/file"] = made["audio/qt"] = with(made["audio"], {"audio"});
    made["interchange"] = made["measure"] = below;
    made["measure"].insert("interchange");
    made["shell"] = with(below, {"interchange", "measure", "audio/file"});
    made["shell/headless"] = with(made["shell"], {"shell"});
    made["shell/report"] = {"base", "ui"};
    made["shell/qt"] = with(made["shell"], {"shell", "audio/qt"});
    return made;
  }();
  return table;
}

/// "shell/qt" of "shell/qt/MainWindow.h", "document" of "document/WavFile.h"; "" of a name without a folder.
std::string RoomOf(const std::string& path) {
  std::string room = fs::path(path).parent_path().generic_string();
  while (!room.empty() && !MayInclude().contains(room)) room = fs::path(room).parent_path().generic_string();
  return room;
}

/// The names behind the include lines of a source file, with what stands around them: `<` or `"`.
std::vector<std::pair<char, std::string>> IncludesOf(const std::string& text) {
  static const std::regex kInclude(R"re(^\s*#\s*include\s*([<"])([^>"]+)[>"])re");
  std::vector<std::pair<char, std::string>> names;
  std::istringstream lines(text);
  std::smatch match;
  for (std::string line; std::getline(lines, line);)
    if (std::regex_search(line, match, kInclude)) names.emplace_back(*match[1].first, match[2]);
  return names;
}

/// What the include lines of a source file do against the table; `path` counts from src/.
std::vector<std::string> Violations(const std::string& path, const std::string& text) {
  std::vector<std::string> wrong;
  const std::string room = RoomOf(path);
  const auto allowed = MayInclude().find(room);
  if (allowed == MayInclude().end()) return {path + ": no such room"};
  for (const auto& [around, name] : IncludesOf(text)) {
    if (around == '<') {
      const bool qt = name.starts_with("Q") || name.starts_with("qt") || name.starts_with("private/q");
      if (qt && room != "shell/qt" && room != "audio/qt") wrong.push_back(path + ": " + name);
    } else {
      const std::string other = RoomOf(name);
      if (other != room && !allowed->second.contains(other)) wrong.push_back(path + ": " + name);
    }
  }
  return wrong;
}

/// Every source file with its text, by its path from src/; the main programs, which are no part of a room, apart.
std::map<std::string, std::string> Sources(bool mains = false) {
  std::map<std::string, std::string> sources;
  const fs::path root = fs::path(PARLOWEN_SOURCE_DIR) / "src";
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string kind = entry.path().extension();
    if ((kind == ".h" || kind == ".cpp") && (mains || entry.path().filename() != "main.cpp"))
      sources[fs::relative(entry.path(), root).generic_string()] = testing::ReadFile(entry.path());
  }
  return sources;
}

TEST(House, EveryIncludeGoesDownwards) {
  std::vector<std::string> wrong;
  for (const auto& [path, text] : Sources(true))
    for (std::string& line : Violations(path, text)) wrong.push_back(std::move(line));
  EXPECT_GT(Sources().size(), 50u);
  EXPECT_EQ(wrong, std::vector<std::string>{});
}

TEST(House, EveryRoomLinksWhatItIncludes) {
  std::map<std::string, Rooms> included;
  for (const auto& [path, text] : Sources())
    for (const auto& [around, name] : IncludesOf(text))
      if (around == '"' && RoomOf(name) != RoomOf(path)) included[RoomOf(path)].insert(RoomOf(name));
  static const std::regex kRoom(R"(parlowen_room\(\s*(\w+)[^)]*?LINKS([^)]*)\))");
  int rooms = 0;
  for (const auto& entry : fs::recursive_directory_iterator(fs::path(PARLOWEN_SOURCE_DIR) / "src")) {
    if (entry.path().filename() != "CMakeLists.txt") continue;
    const std::string text = testing::ReadFile(entry.path());
    for (std::sregex_iterator match(text.begin(), text.end(), kRoom), none; match != none; ++match, ++rooms) {
      const auto folderOf = [](std::string name) {
        const std::size_t cut = name.find('_');
        return cut == std::string::npos ? name : name.replace(cut, 1, "/");
      };
      std::istringstream links((*match)[2]);
      Rooms linked;
      for (std::string link; links >> link;) linked.insert(folderOf(link));
      EXPECT_EQ(linked, included[folderOf((*match)[1])]) << (*match)[1];
    }
  }
  EXPECT_GE(rooms, 15);
}

/// A header and its source count as one. Files that include each other are taken away from the bottom upwards; what is
/// left over goes round in a circle.
TEST(House, TheFilesOfTheShellIncludeEachOtherOneWay) {
  const auto stem = [](const std::string& path) { return path.substr(0, path.rfind('.')); };
  std::map<std::string, std::set<std::string>> above;
  for (const auto& [path, text] : Sources())
    if (path.starts_with("shell/"))
      for (const auto& [around, name] : IncludesOf(text))
        if (name.starts_with("shell/") && stem(name) != stem(path)) above[stem(path)].insert(stem(name));
  for (bool taken = true; std::exchange(taken, false);)
    std::erase_if(above, [&](const auto& file) {
      const bool bottom = std::none_of(file.second.begin(), file.second.end(),
                                       [&](const std::string& name) { return above.contains(name); });
      taken = taken || bottom;
      return bottom;
    });
  for (const auto& [file, unused] : above) ADD_FAILURE() << file;
}

TEST(House, EverySourceIsBuilt) {
  for (const char* folder : {"src", "tests", "bench", "fuzz"}) {
    std::map<fs::path, std::string> lists;  // by the folder that a list names its files from
    std::vector<fs::path> sources;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(PARLOWEN_SOURCE_DIR) / folder)) {
      if (entry.path().filename() == "CMakeLists.txt")
        lists[entry.path().parent_path()] = testing::ReadFile(entry.path());
      if (entry.path().extension() == ".cpp") sources.push_back(entry.path());
    }
    EXPECT_FALSE(sources.empty()) << folder;
    for (const fs::path& source : sources)
      EXPECT_TRUE(std::any_of(lists.begin(), lists.end(), [&](const auto& list) {
        const std::string name = fs::relative(source, list.first).generic_string();
        return std::regex_search(list.second, std::regex("(^|[\\s(])" + name + "($|[\\s)])"));
      })) << source;
  }
}

/// Comments may name a command by its number; code uses the names of ui/CommandNumbers.h.
TEST(House, ACommandNumberStandsInOnePlace) {
  static const std::regex kNumber(R"(\b4[01]\d{3}\b)"), kComment(R"(//[^\n]*)");
  for (const auto& [path, text] : Sources(true))
    EXPECT_EQ(std::regex_search(std::regex_replace(text, kComment, ""), kNumber),
              path == "ui/CommandNumbers.h")
        << path;
}

/// What is written in the user's name is told to the window (ui/Saving.h); these write for nobody, or tell it
/// themselves.
TEST(House, ARoomSavesThroughTheWindow) {
  static const std::regex kBare(R"(\b(ReplaceFile|AppendToFile)\(|\.Commit\()");
  const std::set<std::string> mayWrite = {"base/Files.cpp",
                                          "base/Files.h",
                                          "ui/Saving.cpp",
                                          "ui/Saving.h",
                                          "audio/file/FileLoudspeaker.cpp",
                                          "measure/main.cpp",
                                          "shell/headless/ScriptRunner.cpp",
                                          "shell/report/main.cpp",
                                          "shell/qt/PictureExport.cpp"};
  const fs::path root = fs::path(PARLOWEN_SOURCE_DIR) / "src";
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file()) continue;
    const std::string text = testing::ReadFile(entry.path());
    if (!std::regex_search(text, kBare) || text.find("window.Saved(") != std::string::npos) continue;
    EXPECT_TRUE(mayWrite.contains(fs::relative(entry.path(), root).generic_string())) << entry.path();
  }
}

TEST(House, TheCheckSeesWhatItIsFor) {
  const struct {
    const char *path, *line;
    bool wrong;
  } cases[] = {
      {"base/Files.cpp", "#include \"ui/Window.h\"", true},
      {"ui/Svg.cpp", "#include \"dsp/Fft.h\"", true},
      {"audio/Player.cpp", "#include \"dsp/Fft.h\"", true},
      {"spectral/Lpc.cpp", "  #  include \"shell/Workstation.h\"", true},
      {"spectral/Lpc.cpp",
       "#include \"spectral/Lpc.h\"\n#include <vector>\n#include \"document/SoundDocument.h\"", false},
      {"shell/MainView.cpp", "#include \"shell/headless/Script.h\"", true},
      {"shell/MainView.cpp", "#include <QWidget>", true},
      {"shell/headless/main.cpp", "#include <QtCore/QString>", true},
      {"shell/qt/main.cpp", "#include <QWidget>\n#include \"shell/MainView.h\"", false},
      {"audio/file/NullDevice.cpp", "#include \"audio/SoundDevice.h\"", false},
      {"audio/Player.cpp", "#include \"audio/file/NullDevice.h\"", true},
      {"attic/Old.cpp", "", true},
  };
  for (const auto& c : cases)
    EXPECT_EQ(!Violations(c.path, c.line).empty(), c.wrong) << c.path << ' ' << c.line;
}

}  // namespace
}  // namespace parlowen
