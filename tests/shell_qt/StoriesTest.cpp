// Every story of tests/headless/stories once more, in the real window: the same lines, the same files. What the desktop
// asks beside them, about loss, is NAME.asked: the question and the button that was pressed. What the pointer would
// read, and the overview, are NAME.seen; what the widgets painted is NAME.painted.

#include <QEventLoop>
#include <QTimer>
#include <filesystem>
#include <sstream>
#include <string>

#include "headless/Stories.h"
#include "shell/headless/ScriptRunner.h"
#include "shell_qt/DesktopStage.h"
#include "shell_qt/PaintRecord.h"

namespace parlowen {
namespace {

using namespace testing;

int PaneWidthOf(const std::string& script) {
  const std::string arguments = testing::HeadValue(script, "arguments"), option = "--pane-width ";
  return arguments.starts_with(option) ? std::stoi(arguments.substr(option.size())) : 1024;
}

class WindowStory : public ::testing::TestWithParam<std::string> {};

TEST_P(WindowStory, SaysAndLeavesTheSame) {
  const testing::TempFolder folder, settings;
  testing::WriteSounds(folder);
  const testing::FileStates before = testing::StatesOf(folder);
  const std::string script = testing::ScriptOf(GetParam());
  std::filesystem::current_path(folder.path());
  // The user's documents, where exports go before a sound is opened, are the folder too.
  std::filesystem::create_directory_symlink(folder.path(), settings / "Documents");
  qputenv("HOME", settings.path().c_str());
  std::istringstream steps(script);
  std::ostringstream events, errors;
  {
    DesktopStage stage(events, QString::fromStdString(settings / "settings.ini"), PaneWidthOf(script),
                       GetParam());
    // Inside an event loop, as everything in the desktop is.
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
      ScriptRunner(steps, errors, stage).Run();
      loop.quit();
    });
    loop.exec();
    const auto placeless = [&](const std::string& text) {
      std::string said = Replaced(text, folder.path(), "{folder}");
      said = Replaced(std::move(said), settings.path(), "{home}");
      said = Replaced(std::move(said), PARLOWEN_SOURCE_DIR, "{source}");
      return Replaced(std::move(said), PARLOWEN_VERSION, "{version}");
    };
    EXPECT_EQ(placeless(events.str()), ReadFile(kStories + GetParam() + ".jsonl"));
    testing::ExpectKept(kStories + GetParam() + ".asked", placeless(stage.Asked()));
    testing::ExpectKept(kStories + GetParam() + ".seen", stage.Seen());
    ExpectPainted(kStories + GetParam() + ".painted", placeless(stage.Painted()));
  }
  EXPECT_EQ(testing::ChangesOf(before, testing::StatesOf(folder)),
            ReadFile(kStories + GetParam() + ".files"));
  std::filesystem::current_path("/");
}

INSTANTIATE_TEST_SUITE_P(Window, WindowStory, ::testing::ValuesIn(testing::StoryNames()),
                         testing::TestNameOf);

}  // namespace
}  // namespace parlowen
