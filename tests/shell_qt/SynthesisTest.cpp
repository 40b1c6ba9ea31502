// The resynthesis as it is worked with on the screen.

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "audio/FakeDevices.h"
#include "shell/qt/ToolWidget.h"
#include "shell_qt/Doubles.h"
#include "synthesis/SynthesisPicture.h"

namespace parlowen {
namespace {

class SynthesisTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    window = std::make_unique<MainWindow>("", *preferences, SoundDevices{&loudspeaker, nullptr});
    window->resize(1024, 720);
    window->show();
    Activate();
  }
  /// Runs the command over the first samples: Yes to the question, then `act`.
  void Run(int samples, std::function<void(ToolWidget&)> act) {
    Document().pitch.fill(100.0f);
    Station().Select(0, samples);
    BoxWatcher watcher([&](QWidget& widget) {
      if (auto* modal = qobject_cast<ToolWidget*>(&widget)) {
        act(*modal);
        if (modal->isVisible()) modal->Button("退出")->click();
      } else if (auto* box = qobject_cast<QMessageBox*>(&widget)) {
        box->buttons().constFirst()->click();
      }
    });
    EXPECT_TRUE(window->Dispatch(40081));
  }
  static QString Readout(ToolWidget& widget, QPoint at) {
    QTest::mouseMove(widget.Canvas(), at + QPoint(1, 1));
    QTest::mouseMove(widget.Canvas(), at);
    for (const QLabel* label : widget.findChildren<QLabel*>())
      if (label->text().contains("频率")) return label->text();
    return {};
  }

  testing::FakeLoudspeaker loudspeaker;
};

TEST_F(SynthesisTest, AMelodyIsDrawnHeardSavedAndTheButtonEndsIt) {
  Open(WriteRamp("a.wav", 16000, 16000));
  bool ended = false;
  Run(16000, [&](ToolWidget& widget) {
    EXPECT_EQ(widget.windowTitle(), "选定段按给定音高合成声音");
    EXPECT_FALSE(widget.Button("保存合成音")->isEnabled());
    const int zoom = (widget.Canvas()->width() - kSynthesisGutter) / 101;  // a second fills the area
    ASSERT_GT(zoom, 3);
    QTest::mouseClick(widget.Canvas(), Qt::LeftButton, {}, {10 * zoom + 1, 96});
    QTest::mouseClick(widget.Canvas(), Qt::LeftButton, {}, {60 * zoom + 1, 96});
    QTest::mouseClick(widget.Canvas(), Qt::RightButton, {}, {5, 5});
    const TargetCurve& target = Station().synthesis.target;
    EXPECT_EQ(target[9], 0.0f);
    EXPECT_EQ(target[10], 62.5f);
    EXPECT_EQ(target[60], 62.5f);
    EXPECT_EQ(target[61], 0.0f);
    EXPECT_EQ(Readout(widget, {50, 160}), "频率=128Hz ");
    EXPECT_EQ(Readout(widget, {50, 10}), "无效频率区  ");

    QTest::keyClick(widget.Canvas(), Qt::Key_Space);
    EXPECT_TRUE(Station().player.playing());
    loudspeaker.onDone();  // the device's notice comes while the window is open
    EXPECT_FALSE(Station().player.playing());
    EXPECT_EQ(loudspeaker.heard.size(), 16000u);
    EXPECT_TRUE(widget.Button("保存合成音")->isEnabled());
    {
      BoxWatcher notice("确定");
      widget.Button("保存合成音")->click();
      EXPECT_EQ(notice.texts, QStringList("合成声音已存为文件--Synth.wav!"));
    }
    widget.Button("播放原音")->click();
    EXPECT_FALSE(window->Dispatch(160));
    ended = true;
  });
  EXPECT_TRUE(ended);
  EXPECT_FALSE(Station().player.playing());
  EXPECT_TRUE(QFile::exists(folder.filePath("Synth.wav")));
}

TEST_F(SynthesisTest, ALongSelectionScrollsUnderItsBar) {
  Open(WriteRamp("a.wav", 8000, 87000));
  Run(87000, [&](ToolWidget& widget) {
    auto* bar = widget.findChild<QScrollBar*>();
    ASSERT_NE(bar, nullptr);
    const int page = widget.Canvas()->width() - kSynthesisGutter;
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->maximum(), 1088 - page);
    bar->setValue(bar->maximum());
    QTest::mouseClick(widget.Canvas(), Qt::LeftButton, {}, {page - 2, 96});
    QTest::mouseClick(widget.Canvas(), Qt::LeftButton, {}, {page - 1, 96});
    EXPECT_EQ(Station().synthesis.target[1085], 0.0f);
    EXPECT_EQ(Station().synthesis.target[1087], 31.25f);
    QTest::keyClick(widget.Canvas(), Qt::Key_Home);
    EXPECT_EQ(bar->value(), 0);
    QTest::keyClick(widget.Canvas(), Qt::Key_Escape);
    EXPECT_FALSE(widget.isVisible());
  });
  Run(8000, [&](ToolWidget& widget) { EXPECT_FALSE(widget.findChild<QScrollBar*>()->isVisible()); });
}

}  // namespace
}  // namespace parlowen
