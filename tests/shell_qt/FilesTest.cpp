#include <QApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QUrl>

#include "palatography/NspBytes.h"
#include "shell_qt/Doubles.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

class FilesTest : public WindowTest {
 protected:
  bool Drop(const QString& path, const QStringList& others = {}) {
    QMimeData data;
    QList<QUrl> urls = {QUrl::fromLocalFile(path)};
    for (const QString& other : others) urls += QUrl::fromLocalFile(other);
    data.setUrls(urls);
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

TEST_F(FilesTest, EachKindOfFileGoesToItsReader) {
  const auto write = [&](const char* name, const std::string& bytes) {
    return QString::fromStdString(testing::WriteFile(folder.filePath(name).toStdString(), bytes));
  };
  testing::NspBytes speech;
  speech.rate = 10000;
  speech.chunks = testing::Speech("SDA_", {1, 2, 3}) + testing::Speech("SD_B", {4, 5, 6});
  EXPECT_TRUE(Drop(write("two.NSP", speech.TwoChannel())));
  EXPECT_TRUE(Document().twoChannel);
  EXPECT_EQ(Document().sampleRate, 10000);
  EXPECT_EQ(Document().sampleCount, 3);
  EXPECT_TRUE(preferences->RecentFiles().constFirst().endsWith("two.NSP"));
  EXPECT_TRUE(Drop(SoundsFile("synthetic_palate_16000.nsp")));
  EXPECT_EQ(Document().sampleRate, 16000);
  EXPECT_TRUE(Station().palate.loaded);
  BoxWatcher refused("确定");
  EXPECT_TRUE(Drop(write("broken.vch", "x")));
  EXPECT_TRUE(Drop(write("one.ipa", "x")));
  EXPECT_EQ(refused.texts, QStringList({"无此元音图数据文件！", "不是 wav 文件"}));
  EXPECT_EQ(Document().sampleRate, 16000);
}

TEST_F(FilesTest, ADroppedTextGridLeavesAChangedSoundWithoutAQuestion) {
  Open(WriteRamp("spoken.wav", 16000, 5000));
  Change();
  QFile file(folder.filePath("spoken.TextGrid"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("\"ooTextFile\" \"TextGrid\" 0 1 <exists> 1 \"TextTier\" \"a\" 0 1 1 0.1 \"x\"");
  file.close();
  BoxWatcher asked("取消");
  EXPECT_TRUE(Drop(file.fileName()));
  EXPECT_EQ(asked.texts, QStringList());
  EXPECT_EQ(Document().sampleCount, 4900);
  EXPECT_EQ(Station().markers.set.markerPos[0], 1600);
  EXPECT_TRUE(preferences->RecentFiles().constFirst().endsWith("spoken.wav"));
}

TEST_F(FilesTest, TextExportsGoBesideTheLastFileOrToTheDocuments) {
  const std::string documents = Preferences::DocumentsFolder().toStdString();
  const QString process = QDir::currentPath();
  EXPECT_EQ(Station().exportFolder, documents);
  Open(WriteRamp("first.wav", 16000, 500));
  EXPECT_EQ(Station().exportFolder, folder.path().toStdString());
  QTemporaryDir other;
  const QString chosen = other.filePath("chosen.wav");
  ASSERT_TRUE(QFile::copy(folder.filePath("first.wav"), chosen));
  const auto choose = [&](const QString& path) {
    BoxWatcher watcher([&](QWidget& box) {
      if (qobject_cast<QFileDialog*>(&box) == nullptr) return QTest::keyClick(&box, Qt::Key_Escape);
      box.findChild<QLineEdit*>("fileNameEdit")->setText(path);
      QMetaObject::invokeMethod(&box, "accept");
    });
    window->Dispatch(110);
  };
  choose(chosen);
  EXPECT_EQ(Station().exportFolder, other.path().toStdString());
  choose(SoundsFile("MANIFEST.md"));  // refused: not loaded
  EXPECT_EQ(Station().exportFolder, other.path().toStdString());
  // The folder is gone, so nothing can be written there.
  ASSERT_TRUE(other.remove());
  ASSERT_TRUE(window->Dispatch(40026));
  EXPECT_EQ(Station().exportFolder, documents);
  EXPECT_TRUE(window->StatusShown().contains(QString::fromStdString(documents)))
      << window->StatusShown().toStdString();
  ASSERT_TRUE(window->Dispatch(40004));
  EXPECT_TRUE(window->StatusShown().isEmpty());  // said once
  EXPECT_EQ(QDir::currentPath(), process);
}

TEST_F(FilesTest, OfSeveralDroppedFilesTheFirstIsOpenedAndTheOthersAreKept) {
  const QString first = WriteRamp("first.wav", 16000, 500), second = WriteRamp("second.wav", 16000, 600);
  EXPECT_TRUE(Drop(first, {second, folder.filePath("notes.doc"), folder.filePath("a.vch")}));
  EXPECT_EQ(Document().sampleCount, 500);
  EXPECT_EQ(preferences->RecentFiles(), QStringList({first, second, folder.filePath("a.vch")}));
  // What is saved from it begins with its name; a sound begins with the next of its series.
  const auto proposed = [&](const FileKind& kind) {
    QString name;
    BoxWatcher watcher([&](QWidget& box) {
      name = box.findChild<QLineEdit*>("fileNameEdit")->text();
      QTest::keyClick(&box, Qt::Key_Escape);
    });
    window->Dialogs().AskSaveFile({"保存", {kind}, kind.extension});
    return name;
  };
  EXPECT_EQ(proposed(FileKindNamed("pdt")), "first.pdt");
  EXPECT_EQ(proposed(FileKindNamed("marked wav")), "first1.wav");
}

TEST_F(FilesTest, RecentFilesAndTheFolderAreRemembered) {
  const QString first = WriteRamp("first.wav", 16000, 500), second = WriteRamp("second.wav", 16000, 500);
  Open(first);
  Open(second);
  Open(first);
  window->close();
  Restart();
  EXPECT_EQ(preferences->RecentFiles(), QStringList({first, second}));
  EXPECT_EQ(preferences->Folder(), folder.path());
  EXPECT_EQ(Station().recorder.voiceThreshold, 120);
}

}  // namespace
}  // namespace parlowen
