#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QSplitter>
#include <QTest>
#include <QUrl>

#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class FilesTest : public WindowTest {
 protected:
  bool Drop(const QString& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QDragEnterEvent enter({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(window.get(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop({100.0, 100.0}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &drop);
    QTest::qWait(30);
    return true;
  }
  /// Removes a stretch, so that the sound is another than that of its file.
  void Change() {
    Station().Select(100, 200);
    ASSERT_TRUE(window->Dispatch(40001));
  }
};

TEST_F(FilesTest, ADroppedSoundOpens) {
  EXPECT_TRUE(Drop(SoundsFile("mandarin_initials_male_22050.wav")));
  EXPECT_EQ(Document().sampleRate, 22050);
  EXPECT_GT(Document().sampleCount, 11 * 22050);
  EXPECT_EQ(window->windowTitle(), "Parlowen(Tessiran) -- " + SoundsFile("mandarin_initials_male_22050.wav"));
  EXPECT_FALSE(Drop(SoundsFile("MANIFEST.md")));
}

TEST_F(FilesTest, ABrokenFileIsRefusedAndTheOldSoundStays) {
  Open(WriteRamp("good.wav", 16000, 5000));
  const QString broken = WriteRamp("broken.wav", 8000, 5000);
  QFile file(broken);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  file.write("X");   // no "RIFF" any more
  file.close();
  BoxWatcher watcher("确定");
  EXPECT_TRUE(Drop(broken));
  EXPECT_EQ(watcher.texts, QStringList("不是 wav 文件"));
  EXPECT_EQ(watcher.captions, QStringList("错误"));
  EXPECT_EQ(Document().sampleRate, 16000);
  EXPECT_EQ(Document().sampleCount, 5000);
  EXPECT_FALSE(preferences->RecentFiles().contains(broken));
}

TEST_F(FilesTest, AChangedSoundIsAskedAboutBeforeAnotherTakesItsPlace) {
  const QString first = WriteRamp("first.wav", 16000, 5000), second = WriteRamp("second.wav", 8000, 300);
  Open(first);
  Open(second);   // unchanged: no question, or this would hang
  Open(first);
  Change();
  {
    BoxWatcher no("否(&N)");
    Open(second);
    EXPECT_EQ(no.texts.size(), 1);
    EXPECT_EQ(Document().sampleCount, 4900);
    window->close();
    EXPECT_EQ(no.texts.size(), 2);
    EXPECT_TRUE(window->isVisible());
  }
  // Undone, the samples are the file's again, but that is not known; saved, there is nothing to lose.
  ASSERT_TRUE(window->Dispatch(120));
  Open(second);
  EXPECT_EQ(Document().sampleCount, 300);
  Change();
  BoxWatcher yes("是(&Y)");
  Open(first);
  EXPECT_EQ(yes.texts.size(), 1);
  EXPECT_EQ(Document().sampleCount, 4900);
}

TEST_F(FilesTest, ASoundThatWasCutAwayWholeIsAskedAboutToo) {
  Open(WriteRamp("first.wav", 16000, 5000));
  ASSERT_TRUE(window->Dispatch(40026));
  ASSERT_TRUE(window->Dispatch(40001));
  ASSERT_EQ(Document().sampleCount, 0);
  BoxWatcher no("否(&N)");
  Open(SoundsFile("english_female_prompt_8000.wav"));
  EXPECT_EQ(no.texts.size(), 1);
}

TEST_F(FilesTest, ASaveThatFailedLeavesTheSoundChanged) {
  Open(WriteRamp("first.wav", 16000, 5000));
  Change();
  Document().filePath = folder.filePath("missing/first.wav").toStdString();
  {
    BoxWatcher watcher("确定");
    ASSERT_TRUE(window->Dispatch(120));
    EXPECT_EQ(watcher.texts.size(), 1);
  }
  BoxWatcher no("否(&N)");
  Open(SoundsFile("english_female_prompt_8000.wav"));
  EXPECT_EQ(no.texts.size(), 1);
  EXPECT_EQ(Document().sampleCount, 4900);
}

TEST_F(FilesTest, RecentFilesFolderAndHeightsAreRemembered) {
  const QString first = WriteRamp("first.wav", 16000, 500), second = WriteRamp("second.wav", 16000, 500);
  Open(first);
  Open(second);
  Open(first);
  auto* splitter = window->findChild<QSplitter*>();
  window->resize(1024, 900);
  QTest::mousePress(splitter->handle(1), Qt::LeftButton, {}, QPoint(100, 2));
  QTest::mouseMove(splitter->handle(1), QPoint(100, 42));
  QTest::mouseRelease(splitter->handle(1), Qt::LeftButton, {}, QPoint(100, 42));
  QApplication::processEvents();
  const QList<int> heights = splitter->sizes();
  window->close();
  Restart();
  EXPECT_EQ(preferences->RecentFiles(), QStringList({first, second}));
  EXPECT_EQ(preferences->Folder(), folder.path());
  window->resize(1024, 900);
  QApplication::processEvents();
  EXPECT_EQ(window->findChild<QSplitter*>()->sizes(), heights);
  EXPECT_EQ(Station().recorder.voiceThreshold, 120);
}

}  // namespace
}  // namespace parlowen
