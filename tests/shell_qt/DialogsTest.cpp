#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>

#include "base/Gbk.h"
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

TEST_F(DialogsTest, AnErrorWithoutACaptionIsCalledAnError) {
  BoxWatcher watcher("确定");
  Dialogs().ShowError("文件打开错误");
  Dialogs().Notify("没有双声道数据！");
  Dialogs().ShowMessage("显示器分辨率不低于1024*720!", "警告", Icon::Warning);
  EXPECT_EQ(watcher.captions, QStringList({"错误", "Parlowen(Tessiran)", "警告"}));
  EXPECT_EQ(Dialogs().Setbacks(), 1);
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

TEST_F(DialogsTest, AFormGivesBackRadioGroupsAndSteppedFieldsAndLeavesTheOldValuesWhenCancelled) {
  InputForm form;
  form.title = "参数设置";
  FormField gain;
  gain.control = 1001;
  gain.kind = FieldKind::Number;
  gain.value = "2";
  gain.step = [](const std::string& value, int direction) { return std::to_string(std::stoi(value) + direction); };
  form.fields.push_back(gain);
  for (int i = 0; i < 4; ++i) {
    FormField radio;
    radio.control = 1010 + i;
    radio.kind = FieldKind::Radio;
    radio.label = "选 " + std::to_string(i);
    radio.group = i / 2;
    radio.checked = i % 2 == 0;
    form.fields.push_back(radio);
  }
  const auto fill = [&](bool accept) {
    BoxWatcher watcher([&](QWidget& dialog) {
      const auto arrows = dialog.findChildren<QToolButton*>();
      ASSERT_EQ(arrows.size(), 2);
      arrows[0]->click();
      arrows[0]->click();
      arrows[1]->click();
      QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Up);
      for (auto* button : dialog.findChildren<QAbstractButton*>())
        if (button->text() == "选 3") button->click();
      for (auto* button : dialog.findChildren<QAbstractButton*>())
        if (button->text() == (accept ? "确定" : "取消")) return button->click();
    });
    return Dialogs().AskInput(form);
  };
  EXPECT_FALSE(fill(false));
  EXPECT_EQ(form.ValueOf(1001), "2");
  EXPECT_EQ(form.CheckedIndex(1), 0);
  EXPECT_TRUE(fill(true));
  EXPECT_EQ(form.ValueOf(1001), "4");
  EXPECT_EQ(form.CheckedIndex(0), 0);
  EXPECT_EQ(form.CheckedIndex(1), 1);
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
    return Dialogs().AskOpenFile({"打开声音文件", {{"声音文件(*.wav)", "*.wav"}, {"无格式(*.*)", "*.*"}}, "", ""});
  };
  const auto first = choose("UPPER.WAV", 0);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->path, upper.toStdString());
  EXPECT_EQ(first->filter, 0);
  const auto second = choose("not there yet", 1);   // a missing file is the reader's to refuse
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

TEST_F(DialogsTest, AnExportThatNothingOpensIsShownInItsOwnWindow) {
  const QString path = folder.filePath("Pitch.txt");
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(QByteArray::fromStdString(ToGbk("基频数据\r\n123\r\n")));
  file.close();
  QUrl asked;
  Dialogs().openExternally = [&](const QUrl& url) {
    asked = url;
    return false;
  };
  Dialogs().OpenInEditor(path.toStdString());
  EXPECT_EQ(asked, QUrl::fromLocalFile(path));
  auto* view = window->findChild<QPlainTextEdit*>();
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(view->toPlainText(), "基频数据\n123\n");
  EXPECT_TRUE(view->isReadOnly());
  view->close();
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

TEST_F(DialogsTest, LongWorkShowsProgressThatCanBeCancelled) {
  ActionGate gate;
  Preferences other(folder.filePath("other.ini"));
  QWidget host;
  QtWindow dialogs(host, gate, other);
  bool went = true, shownAtOnce = true;
  gate.Run([&] {
    EXPECT_TRUE(dialogs.Progress(0.1));
    shownAtOnce = host.findChild<QProgressDialog*>() != nullptr;
    QTest::qSleep(520);
    EXPECT_TRUE(dialogs.Progress(0.2));
    auto* box = host.findChild<QProgressDialog*>();
    ASSERT_NE(box, nullptr);
    box->cancel();
    went = dialogs.Progress(0.3);
  });
  EXPECT_FALSE(shownAtOnce);
  EXPECT_FALSE(went);
  EXPECT_EQ(host.findChild<QProgressDialog*>(), nullptr);
}

}  // namespace
}  // namespace parlowen
