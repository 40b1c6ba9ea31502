#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTextBrowser>

#include "shell/qt/FormDialog.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class DialogsTest : public WindowTest {
 protected:
  QtWindow& Dialogs() { return window->Dialogs(); }
};

TEST_F(DialogsTest, EscapeIsNo) {
  {
    BoxWatcher escape("");
    EXPECT_FALSE(Dialogs().AskYesNo("继续吗？", ""));
    EXPECT_EQ(escape.captions, QStringList("Parlowen(Tessiran)"));
  }
  BoxWatcher yes("是(&Y)");
  EXPECT_TRUE(Dialogs().AskYesNo("继续吗？", "问"));
}

TEST_F(DialogsTest, AFormStaysOpenUntilItsEntriesCanBeStored) {
  InputForm form;
  form.title = "组名";
  FormField name;
  name.control = 1000;
  name.label = "组名";
  name.maxGbkBytes = 6;
  form.fields.push_back(name);
  int shown = 0;
  BoxWatcher watcher([&](QWidget& widget) {
    auto* dialog = qobject_cast<FormDialog*>(&widget);
    ASSERT_NE(dialog, nullptr);
    // Four hanzi are 8 bytes; the next has no GBK code (an emoji); three fit exactly.
    for (const char* refused : {"普通话组", "🙂"}) {
      dialog->Edit(1000)->setText(refused);
      dialog->accept();
      EXPECT_TRUE(dialog->isVisible());
      EXPECT_EQ(dialog->result(), QDialog::Rejected);
      ++shown;
    }
    dialog->Edit(1000)->setText("普通话");
    dialog->accept();
  });
  EXPECT_TRUE(Dialogs().AskInput(form));
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(form.ValueOf(1000), "普通话");
}

TEST_F(DialogsTest, FileDialogsTakeBothCasesAndTellWhichFilterWasChosen) {
  const QString upper = WriteRamp("UPPER.WAV", 16000, 100);
  preferences->SetFolder(folder.path());
  QStringList filters;
  const auto choose = [&](const char* name, int filter) {
    BoxWatcher watcher([&, name, filter](QWidget& widget) {
      auto* dialog = qobject_cast<QFileDialog*>(&widget);
      ASSERT_NE(dialog, nullptr);
      filters = dialog->nameFilters();
      dialog->selectNameFilter(filters[filter]);
      dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
      QMetaObject::invokeMethod(dialog, "accept");
    });
    return Dialogs().AskOpenFile(
        {"打开声音文件", {{"声音文件(*.wav)", "*.wav"}, {"无格式(*.*)", "*.*"}}, "", ""});
  };
  const auto first = choose("UPPER.WAV", 0);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->path, upper.toStdString());
  EXPECT_EQ(first->filter, 0);
  const auto second = choose("not there yet", 1);  // a missing file is the reader's to refuse
  ASSERT_TRUE(second);
  EXPECT_EQ(second->path, folder.filePath("not there yet").toStdString());
  EXPECT_EQ(second->filter, 1);
  ASSERT_EQ(filters.size(), 2);
  EXPECT_EQ(filters[0], "声音文件(*.wav) (*.wav *.WAV)");
  EXPECT_EQ(filters[1], "无格式(*.*) (*)");
}

TEST_F(DialogsTest, ASaveDialogAddsTheExtensionOnlyToANameWithoutADot) {
  preferences->SetFolder(folder.path());
  const auto choose = [&](const char* name) {
    BoxWatcher watcher([&, name](QWidget& widget) {
      widget.findChild<QLineEdit*>("fileNameEdit")->setText(name);
      QMetaObject::invokeMethod(&widget, "accept");
    });
    const auto choice = Dialogs().AskSaveFile({"保存", {{"基频(*.pdt)", "*.pdt"}}, "pdt", ""});
    return choice ? QString::fromStdString(choice->path) : QString();
  };
  EXPECT_EQ(choose("a"), folder.filePath("a.pdt"));
  EXPECT_EQ(choose("a.b"), folder.filePath("a.b"));
}

TEST_F(DialogsTest, HelpPagesAreFoundAndShown) {
  Dialogs().openExternally = [](const QUrl&) { return false; };
  ASSERT_TRUE(window->Dispatch(270));
  auto* view = window->findChild<QTextBrowser*>();
  ASSERT_NE(view, nullptr);
  EXPECT_TRUE(view->toPlainText().contains("Parlowen"));
  // Every link of every page leads to a page that is there.
  for (const char* language : {"zh", "en"}) {
    const QDir pages(QString(PARLOWEN_SOURCE_DIR "/data/help/") + language);
    const QStringList names = pages.entryList({"*.html"});
    EXPECT_GE(names.size(), 5);
    for (const QString& name : names) {
      QFile page(pages.filePath(name));
      ASSERT_TRUE(page.open(QIODevice::ReadOnly));
      const QString text = QString::fromUtf8(page.readAll());
      static const QRegularExpression link("href=\"([^\"#]+)");
      for (auto match = link.globalMatch(text); match.hasNext();)
        EXPECT_TRUE(QFile::exists(pages.filePath(match.next().captured(1)))) << name.toStdString();
    }
  }
  view->close();
}

}  // namespace
}  // namespace parlowen
