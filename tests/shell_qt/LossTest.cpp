// What a user of the desktop has made is asked about before it is lost, in memory and on the disk.

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <utility>

#include "document/WavFile.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class LossTest : public WindowTest {
 protected:
  QString Path(const char* name) const { return folder.filePath(name); }
  QByteArray Bytes(const char* name) const {
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }
  void Write(const char* name, const QByteArray& bytes) {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
  }
  /// A sound of one second and work of every kind on it.
  void Work() {
    Open(WriteRamp("a.wav", 16000, 16100));
    Station().Select(100, 200);
    ASSERT_TRUE(window->Dispatch(40001));
    SoundDocument& document = Document();
    document.pitch.fill(100);
    document.pitchBackup = document.pitch;
    document.pitchPresent = true;
    Station().markers.sound = Station().annotations.sound = document.Stamp();
    document.pitch[50] = 50;  // by hand
    Station().markers.set.markerCount[0] = 1;
    Station().markers.changed = Station().annotations.changed = true;
    Station().annotations.items = {{"a", 400, 16}};
    Station().vowels.chart.Add(600, 1200, 2500);
  }
  /// Presses the first of these buttons that a box has and gives file dialogs the name; everything else gets
  /// Escape.
  std::function<void(QWidget&)> Press(QStringList buttons, QString name = {}) {
    return [buttons, name](QWidget& widget) {
      if (auto* edit = widget.findChild<QLineEdit*>("fileNameEdit"); edit != nullptr && !name.isEmpty()) {
        edit->setText(name);
        return void(QMetaObject::invokeMethod(&widget, "accept", Qt::QueuedConnection));
      }
      if (auto* box = qobject_cast<QMessageBox*>(&widget))
        for (const QString& text : buttons)
          for (QAbstractButton* button : box->buttons())
            if (button->text() == text) return button->click();
      QTest::keyClick(&widget, Qt::Key_Escape);
    };
  }
};

TEST_F(LossTest, QuittingAsksAboutEachWorkAndSavesWhatIsToBeSaved) {
  Work();
  window->Dispatch(40004);
  EXPECT_TRUE(window->isWindowModified());
  // Given up up to the last one, at which the user thinks better of it: nothing is lost.
  const QStringList questions = {"声音已经改动，基频经过手工修改，都还没有保存。",
                                 "标志已经改动，还没有保存。", "注释字符已经改动，还没有存为国际音标文件。",
                                 "元音图已经改动，还没有保存。"};
  {
    int left = 3;
    BoxWatcher watcher([&](QWidget& widget) {
      auto* box = qobject_cast<QMessageBox*>(&widget);
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->defaultButton()->text(), "保存(&S)");
      Press({left-- > 0 ? "放弃(&D)" : "取消"})(widget);
    });
    EXPECT_FALSE(window->close());
    EXPECT_EQ(watcher.texts, questions);
    EXPECT_TRUE(window->isWindowModified());
  }
  // The dialogs of the annotations and the chart are cancelled: that loss does not happen. The rest is saved.
  {
    BoxWatcher watcher(Press({"保存(&S)", "是(&Y)"}));
    EXPECT_FALSE(window->close());
    EXPECT_EQ(watcher.texts.size(), 4);  // with the one about the contour in the file
    EXPECT_EQ(Bytes("a.wav").size(), 44 + 2 * 16000 + 6 + 4 * 102);
    EXPECT_TRUE(window->StatusShown().endsWith("已保存：" + Path("a.wav") + "；" + Path("a.lbl")));
  }
  BoxWatcher watcher(Press({"保存(&S)", "否(&N)"}, Path("b")));
  EXPECT_TRUE(window->close());
  EXPECT_EQ(watcher.texts.size(), 3);
  EXPECT_NE(Bytes("b.ipa"), "missing");
  EXPECT_NE(Bytes("b.vch"), "missing");
  EXPECT_FALSE(window->isWindowModified());
}

TEST_F(LossTest, AnOpeningIsAskedAboutUntilTheWorkIsSaved) {
  const QString other = WriteRamp("other.wav", 8000, 300);
  Work();
  Station().vowels.chart.count = 0;
  Station().markers.changed = Station().annotations.changed = false;
  const auto opens = [&](const QStringList& buttons) {
    BoxWatcher watcher(Press(buttons));
    Open(other);
    return watcher.texts;
  };
  EXPECT_EQ(opens({"取消"}).size(), 1);
  {
    // A file name that cannot be written, a dialog that is cancelled.
    const std::string path = std::exchange(Document().filePath, Path("missing/a.wav").toStdString());
    EXPECT_EQ(opens({"保存(&S)", "确定"}).size(), 2);
    Document().filePath.clear();
    EXPECT_EQ(opens({"保存(&S)", "确定"}).size(), 2);
    Document().filePath = path;
  }
  // The sound without its contour: that is another question, and other analyses are one about the contour,
  // too.
  EXPECT_EQ(opens({"保存(&S)", "否(&N)"}).value(2), "手工修改过的基频还没有保存。");
  {
    BoxWatcher watcher(Press({"取消"}));
    EXPECT_FALSE(window->Dispatch(220));
    EXPECT_EQ(watcher.texts.size(), 1);
  }
  EXPECT_EQ(Document().pitch[50], 50);
  Document().pitch[60] = kNoValue;  // the file takes whole contours only: there is nothing to press but these
  EXPECT_EQ(opens({"保存(&S)", "取消"}).size(), 1);
  Document().pitch[60] = 100;
  EXPECT_EQ(Document().sampleRate, 16000);
  EXPECT_EQ(opens({"保存(&S)", "是(&Y)"}).size(), 2);
  EXPECT_EQ(Document().sampleRate, 8000);
  // An empty sound is a change of its file's.
  ASSERT_TRUE(window->Dispatch(40026));
  ASSERT_TRUE(window->Dispatch(40001));
  BoxWatcher watcher(Press({"取消"}));
  Open(Path("a.wav"));
  EXPECT_EQ(watcher.texts.size(), 1);
}

TEST_F(LossTest, TheMarkerWindowGoesOnWithChangedMarkersWhenItIsToldSo) {
  Work();
  const MarkerSet set = Station().markers.set;
  BoxWatcher watcher(Press({"继续使用(&K)"}));
  window->Dispatch(40105);
  EXPECT_EQ(watcher.texts.size(), 1);
  EXPECT_NE(window->Dialogs().FindToolWindow("markers"), nullptr);
  EXPECT_EQ(Station().markers.set, set);
}

TEST_F(LossTest, ASaveAsksBeforeItTakesFromItsFileWhatWasNotLoaded) {
  const QByteArray mono = [&] {
    WriteRamp("plain.wav", 16000, 1000);
    return Bytes("plain.wav");
  }();
  QByteArray stereo = mono;
  stereo[32] = 4;
  const auto chunk = [](const char* id, const QByteArray& content) {
    return QByteArray(id, 4) + char(content.size()) + QByteArray(3, 0) + content;
  };
  Write("stereo.wav", stereo);
  Write("cues.wav", mono + chunk("fact", "1234") + chunk("cue ", QByteArray(28, 0)));
  Write("writer.wav", mono + chunk("LIST", "INFO" + chunk("ISFT", "abcd")));
  Write("a.ipa", mono);
  Write("a.ipa.wav", "another");
  struct Case {
    const char* opened;
    const char* asks;
  };
  for (const Case& c :
       {Case{"plain.wav", ""}, Case{"writer.wav", ""}, Case{"cues.wav", "只调入了文件的一部分"},
        Case{"stereo.wav", "只调入了文件的一部分，保存将丢失其余部分。"},
        Case{"a.ipa", "a.ipa.wav 已经存在"}}) {
    SCOPED_TRACE(c.opened);
    const bool asks = *c.asks != '\0';
    {
      BoxWatcher watcher(Press({"确定"}));  // only one channel, as it says
      Open(Path(c.opened));
    }
    const char* written = QString(c.opened) == "a.ipa" ? "a.ipa.wav" : c.opened;
    const QByteArray before = Bytes(written);
    {
      BoxWatcher watcher([&](QWidget& widget) {
        const auto* box = qobject_cast<QMessageBox*>(&widget);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->defaultButton()->text(), "另存为(&A)...");
        Press({"取消"})(widget);
      });
      window->Dispatch(120);
      EXPECT_EQ(watcher.texts.size(), asks);
      EXPECT_TRUE(!asks || watcher.texts.constFirst().contains(c.asks));
    }
    if (!asks) continue;
    EXPECT_EQ(Bytes(written), before);
    {
      BoxWatcher watcher(Press({"覆盖(&O)"}));
      ASSERT_TRUE(window->Dispatch(120));
    }
    EXPECT_EQ(Bytes(written).size(), 44 + 2 * Document().sampleCount);
    ASSERT_TRUE(window->Dispatch(120));  // the whole file now: no question, or this would hang
  }
  // Somebody else wrote it meanwhile; saved under another name it stays.
  Write("a.ipa.wav", "newer");
  BoxWatcher watcher(Press({"另存为(&A)..."}, Path("mine")));
  ASSERT_TRUE(window->Dispatch(120));
  EXPECT_EQ(Bytes("a.ipa.wav"), "newer");
  EXPECT_EQ(Document().filePath, Path("mine.wav").toStdString());
  EXPECT_EQ(window->StatusShown(), "已保存：" + Path("mine.wav"));
}

}  // namespace
}  // namespace parlowen
