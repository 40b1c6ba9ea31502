#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QTextBrowser>
#include <utility>

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

TEST_F(DialogsTest, ATallFormScrollsAndItsTicksAndStepsAreTaken) {
  InputForm form = OneFieldForm("", std::string(60, 'm'), "5");
  form.fields[0].step = [](const std::string& value, int direction) {
    return std::to_string(std::stoi(value) + 10 * direction);
  };
  EXPECT_EQ(FormDialog(form, nullptr).findChild<QScrollArea*>(), nullptr);
  for (int i = 1; i < 80; ++i) form.fields.push_back({0, FieldKind::Tick, std::to_string(i), "", i % 2 == 0});
  FormDialog dialog(form, nullptr);
  dialog.show();
  const auto* area = dialog.findChild<QScrollArea*>();
  ASSERT_NE(area, nullptr);
  EXPECT_EQ(area->widget()->width(), area->viewport()->width());
  EXPECT_GE(area->height(), dialog.screen()->availableGeometry().height() * 3 / 4);
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left})
    QTest::keyClick(dialog.Edit(1000), key);
  for (auto* button : dialog.findChildren<QAbstractButton*>())
    if (button->accessibleName() == "减" || button->text() == "1" || button->text() == "2") button->click();
  dialog.accept();
  EXPECT_EQ(form.ValueOf(1000), "5");
  std::string ticked;
  for (const FormField& field : form.fields)
    if (field.checked && ticked.size() < 6) ticked += field.label + " ";
  EXPECT_EQ(ticked, "1 4 6 ");
}

TEST_F(DialogsTest, TheSpanOfThePitchPaneIsRememberedUnlessItCannotBeShown) {
  const struct {
    int kind;
    double low, high;
    bool usable;
  } spans[] = {{2, 20, 2000, true},  {2, 19, 2000, false},  {2, 20, 2001, false}, {0, 100, 125, true},
               {2, 100, 124, false}, {-1, 100, 200, false}, {3, 100, 200, false}};
  for (const auto& [kind, low, high, usable] : spans) {
    const PitchSpanChoice span{static_cast<PitchSpanChoice::Kind>(kind), {low, high}};
    preferences->SetPitchSpan({});
    window->Station().view.pitchSpan = span;
    Dialogs().Repaint({});
    QCoreApplication::processEvents();
    Restart();
    EXPECT_EQ(Station().view.pitchSpan, usable ? span : PitchSpanChoice())
        << kind << " " << low << " " << high;
  }
}

TEST_F(DialogsTest, TheBarAboutTheRateConvertsWithoutAQuestionOrGoesForThisSound) {
  const QWidget* bar = nullptr;
  const auto press = [&](const char* text) {
    for (auto* button : window->findChildren<QPushButton*>())
      if (button->text() == text) bar = button->parentWidget(), button->click();
  };
  BoxWatcher asked("是(&Y)");
  Open(WriteRamp("a.wav", 44100, 44100));
  press("不转换");
  EXPECT_FALSE(bar->isVisible());
  Station().Select(100, 300);
  QCoreApplication::processEvents();
  EXPECT_FALSE(bar->isVisible());
  Open(WriteRamp("b.wav", 44100, 44100));
  EXPECT_TRUE(bar->isVisible());
  press("转换为 11025 Hz");
  EXPECT_EQ(Document().sampleRate, 11025);
  Restart();
  Open(folder.filePath("b.wav"));
  press("转换为 16000 Hz");
  EXPECT_EQ(Document().sampleRate, 16000);
  EXPECT_EQ(asked.texts, QStringList());
}

TEST_F(DialogsTest, LinesDivideGroupsOfRadioButtonsFromEachOtherAndFromFields) {
  const auto lines = [](std::initializer_list<std::pair<FieldKind, int>> fields) {
    InputForm form;
    for (const auto& [kind, group] : fields) {
      FormField field;
      field.control = 1000 + static_cast<int>(form.fields.size());
      field.kind = kind;
      field.group = group;
      field.label = "x";
      form.fields.push_back(field);
    }
    const FormDialog dialog(form, nullptr);
    std::string rows;
    for (const QFrame* frame : dialog.findChildren<QFrame*>())
      if (frame->frameShape() == QFrame::HLine) rows += '|';
    return rows;
  };
  constexpr auto kRadio = FieldKind::Radio, kText = FieldKind::Text, kLabel = FieldKind::Label;
  EXPECT_EQ(lines({{kText, 0}, {kText, 0}, {kLabel, 0}, {kRadio, 1}, {kRadio, 1}}), "");
  EXPECT_EQ(lines({{kRadio, 1}, {kRadio, 1}, {kRadio, 2}, {kRadio, 2}}), "|");
  EXPECT_EQ(lines({{kLabel, 0}, {kRadio, 1}, {kLabel, 0}, {kLabel, 0}, {kRadio, 2}, {kText, 0}, {kText, 0}}),
            "||");
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
        {"打开声音文件", {{"声音文件(*.wav)", "*.wav"}, {"无格式(*.*)", "*.*"}, FileKindNamed("TextGrid")}});
  };
  const auto first = choose("UPPER.WAV", 0);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->path, upper.toStdString());
  EXPECT_EQ(first->filter, 0);
  const auto second = choose("not there yet", 1);  // a missing file is the reader's to refuse
  ASSERT_TRUE(second);
  EXPECT_EQ(second->path, folder.filePath("not there yet").toStdString());
  EXPECT_EQ(second->filter, 1);
  ASSERT_EQ(filters.size(), 3);
  EXPECT_EQ(filters[0], "声音文件(*.wav) (*.wav *.WAV)");
  EXPECT_EQ(filters[1], "无格式(*.*) (*)");
  EXPECT_EQ(filters[2], "TextGrid文件(*.TextGrid) (*.textgrid *.TEXTGRID *.TextGrid)");
}

TEST_F(DialogsTest, ASaveAsksAboutTheFileThatItWouldReplaceUnlessItIsAddedTo) {
  preferences->SetFolder(folder.path());
  QStringList asked;
  // Takes the name; after a question that is answered by "cancel" the dialog is there again, and is left.
  const auto save = [&](const FileDialog& dialog, const char* name, const char* answer) {
    bool typed = false;
    asked.clear();
    BoxWatcher watcher([&](QWidget& widget) {
      auto* edit = widget.findChild<QLineEdit*>("fileNameEdit");
      if (edit == nullptr) {
        const auto* box = qobject_cast<QMessageBox*>(&widget);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->defaultButton()->text(), "取消");
        asked += box->text().section(' ', 0, 0);
        for (QAbstractButton* button : box->buttons())
          if (button->text() == answer) button->click();
      } else if (std::exchange(typed, true)) {  // asked and refused
        QTest::keyClick(&widget, Qt::Key_Escape);
      } else {
        edit->setText(name);
        QMetaObject::invokeMethod(&widget, "accept", Qt::QueuedConnection);
      }
    });
    const auto choice = Dialogs().AskSaveFile(dialog);
    return choice ? QString::fromStdString(choice->path) : QString();
  };
  for (const FileKind& kind : {FileKindNamed("TextGrid"), FileKindNamed("pdt")}) {
    const QString present = folder.filePath(QString("present.") + kind.extension);
    ASSERT_TRUE(QFile(present).open(QIODevice::WriteOnly));
    const FileDialog dialog{"保存", {kind}, kind.extension};
    EXPECT_EQ(save(dialog, "present", "取消").isEmpty(), kind.asksBeforeReplacing) << kind.extension;
    EXPECT_EQ(asked, kind.asksBeforeReplacing ? QStringList(present) : QStringList());
    EXPECT_EQ(save(dialog, "present", "替换(&R)"), present);
  }
  // The handler's own ending: what is written is asked about, not what was typed.
  ASSERT_TRUE(QFile(folder.filePath("a.2.wav")).open(QIODevice::WriteOnly));
  const auto ending = [](const std::string& path) { return path + ".wav"; };
  EXPECT_EQ(save({"保存", {FileKindNamed("saved wav")}, "", "", ending}, "a.2", "取消"), QString());
  EXPECT_EQ(asked, QStringList(folder.filePath("a.2.wav")));
  EXPECT_EQ(save({"保存", {FileKindNamed("pdt")}, "pdt"}, "a.b", "取消"), folder.filePath("a.b"));
}

TEST_F(DialogsTest, HelpPagesAreFoundAndShown) {
  Dialogs().openExternally = [](const QUrl&) { return false; };
  ASSERT_TRUE(window->Dispatch(270));
  auto* view = window->findChild<QTextBrowser*>();
  ASSERT_NE(view, nullptr);
  EXPECT_TRUE(view->toPlainText().contains("Parlowen"));
  QUrl asked;
  Dialogs().openExternally = [&](const QUrl& url) { return asked = url, false; };
  Dialogs().OpenInEditor(PARLOWEN_SOURCE_DIR "/data/help/zh/epg.html#indices");
  EXPECT_EQ(asked.fragment(), "indices");
  EXPECT_TRUE(QFile::exists(asked.toLocalFile()));
  EXPECT_EQ(window->findChildren<QTextBrowser*>().last()->source(), asked);
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
