// Texts are constants on top of their file or rows of a table there: UiText what is shown, FileText what is written.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <vector>

#include "support/TempFolder.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;

std::map<std::string, std::string> Sources() {
  std::map<std::string, std::string> sources;
  for (const auto& entry : fs::recursive_directory_iterator(fs::path(PARLOWEN_SOURCE_DIR) / "src"))
    if (const auto ending = entry.path().extension(); ending == ".cpp" || ending == ".h")
      sources[entry.path().string()] = testing::ReadFile(entry.path());
  return sources;
}

/// "UiText|FileText|FileKind|…": the types with a text as a member are those of the tables.
std::string TextTypes(const std::map<std::string, std::string>& sources) {
  static const std::regex kTable(R"(struct (\w+) \{[^}]*\b(UiText|FileText)\b[^}(]*;)");
  std::string types = "UiText|FileText";
  for (const auto& [path, text] : sources)
    for (std::sregex_iterator table(text.begin(), text.end(), kTable), end; table != end; ++table)
      types += "|" + (*table)[1].str();
  return types;
}

/// Numbers of the lines with a bare text: a literal with Chinese outside of such a constant, or one of any language
/// handed to what shows it. A constant begins in the first column; its rows are indented.
std::vector<int> BareTexts(const std::string& source, const std::string& types) {
  static const std::regex kComment(R"re(^((?:[^"/]|"(?:[^"\\]|\\.)*"|/(?!/))*)//.*)re");
  static const std::regex kChinese("\"[^\"]*[\xE3-\xE9\xEF][^\"]*\"");
  static const std::regex kShown(
      R"re(\b(Notify|Refuse|ShowError|ShowMessage|ShowStatus|AskYesNo|OneFieldForm|set(Text|ToolTip|WindowTitle|AccessibleName|LabelText)|add(Action|Menu|Button|ToolBar|Tab)|SetText)\([^"()]*"[^"]*[A-Za-z]{2})re");
  const std::regex constant("^(inline )?constexpr (parlowen::)?(" + types + ") ");
  std::vector<int> bare;
  std::istringstream lines(source);
  bool inText = false;
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    line = std::regex_replace(line, kComment, "$1");
    if (!line.empty() && std::string(" }#").find(line[0]) == std::string::npos)
      inText = std::regex_search(line, constant);
    if ((std::regex_search(line, kChinese) && !inText) || std::regex_search(line, kShown))
      bare.push_back(number);
  }
  return bare;
}

TEST(Texts, AreNamedOnTopOfTheirFile) {
  const auto sources = Sources();
  const std::string types = TextTypes(sources);
  for (const auto& [path, source] : sources)
    for (const int line : BareTexts(source, types))
      ADD_FAILURE() << path << ':' << line << ": a text is a UiText (or a FileText) on top of its file";
}

TEST(Texts, TheCheckSeesWhatItIsFor) {
  const std::string types = TextTypes({{"a.h", "struct Row {\n  int number;\n  UiText label;\n};\n"}});
  EXPECT_EQ(BareTexts("constexpr UiText kA = \"放音\",\n    kB = \"停\";\ninline constexpr Row kRows[] = {\n"
                      "    {1, \"文件\"},\n};\n  Say(kA);  // \"放音\"\n",
                      types),
            std::vector<int>{});
  EXPECT_EQ(
      BareTexts(
          "constexpr const char* kA = \"放音\";\nvoid F() {\n  Say(\"放音\");\n  Say(\"//\");  // 是\n}\n"
          "  window.Notify(\"Error in it\");\n",
          types),
      (std::vector<int>{1, 3, 6}));
}

}  // namespace
}  // namespace parlowen
