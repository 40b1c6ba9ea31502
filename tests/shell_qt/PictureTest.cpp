#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <array>
#include <cmath>
#include <utility>

#include "shell/qt/PictureExport.h"
#include "shell/qt/PicturePainter.h"
#include "shell_qt/Doubles.h"
#include "ui/Png.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

QImage SvgAsImage(const QByteArray& svg, QSize size) {
  QSvgRenderer renderer(svg);
  EXPECT_TRUE(renderer.isValid());
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  renderer.render(&painter, QRectF(QPointF(), QSizeF(size)));
  return image;
}

QByteArray BytesOf(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

/// Mean distance of the grey values of two images, 0..255.
double MeanDistance(const QImage& a, const QImage& b) {
  EXPECT_EQ(a.size(), b.size());
  double sum = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
  return sum / (double(a.width()) * a.height());
}

/// Cells of `side` by `side` pixels: the two painters smooth edges and rows of an image in ways of their own.
QImage Coarse(const QImage& image, int side) {
  return image.scaled(image.width() / side, image.height() / side, Qt::IgnoreAspectRatio,
                      Qt::SmoothTransformation);
}

QImage WhitePaper(QSize size) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  return image;
}

TEST(PictureFilesTest, EveryImageDecodesToItsPixels) {
  // 255·257 bytes with the filter bytes are one full stored block of 65535; one row more needs a second.
  const std::array<int, 3> sizes[] = {{1, 1, 1}, {3, 2, 3}, {254, 257, 1}, {254, 258, 1}, {1004, 256, 1}};
  for (const auto& [columns, rows, channels] : sizes) {
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(columns * rows * channels));
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::uint8_t>(i * 37 + i / 251);
    const auto png = EncodePng(columns, rows, channels, pixels);
    const QImage image = QImage::fromData(png.data(), static_cast<int>(png.size()), "PNG");
    ASSERT_EQ(image.size(), QSize(columns, rows));
    auto next = pixels.begin();
    for (int y = 0; y < rows; ++y)
      for (int x = 0; x < columns; ++x) {
        const QRgb pixel = image.pixel(x, y);
        const std::uint8_t red = *next++, green = channels == 3 ? *next++ : red,
                           blue = channels == 3 ? *next++ : red;
        ASSERT_EQ(pixel, qRgb(red, green, blue)) << columns << ": " << x << ", " << y;
      }
  }
}

TEST(PictureFilesTest, Base64FollowsItsStandard) {
  for (const QByteArray plain : {"", "f", "fo", "foo", "foobar", "\xFB\xFF\xFE"})
    EXPECT_EQ(ToBase64({reinterpret_cast<const std::uint8_t*>(plain.data()),
                        static_cast<std::size_t>(plain.size())}),
              plain.toBase64().toStdString());
}

TEST(PictureFilesTest, NoTextCanBreakTheDocument) {
  Picture picture{10, 10, {}};
  for (const char* text :
       {"]]>", "</text>", "\x01\x1F\n\r", "\xFF\xC0", "\xEF\xBF\xBE \xEF\xBF\xBF", "\x7F", "&amp;"})
    picture.Add(TextMark{0, 0, text});
  QXmlStreamReader reader(QByteArray::fromStdString(ToSvg(picture)));
  while (!reader.atEnd()) reader.readNext();
  EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << ToSvg(picture);
}

TEST(PicturePainterTest, AtAFractionalScaleLinesStayCrispAndEquallyWide) {
  Picture picture{64, 4, {}};
  for (int x = 2; x < 64; x += 5) picture.Add(LineMark{{x, 0}, {x, 3}, 0x000000});
  for (const double scale : {1.25, 1.5, 1.75}) {
    const QImage image = RenderPicture(picture, scale);
    std::vector<int> widths;
    int run = 0;
    for (int x = 0; x < image.width(); ++x) {
      const int grey = qGray(image.pixel(x, 2));
      ASSERT_TRUE(grey == 0 || grey == 255) << x << " at " << scale;
      if (grey == 0) ++run;
      if (grey == 255 && run > 0) widths.push_back(std::exchange(run, 0));
    }
    ASSERT_EQ(widths.size(), 13u);
    for (const int width : widths) EXPECT_EQ(width, static_cast<int>(std::lround(scale))) << scale;
  }
}

class PictureTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    Open(SoundsFile("mandarin_mao_four_tones_male_44100.wav"));
    Station().Select(20000, 60000);
    window->setFocus();  // no ring around a pane
  }
};

TEST_F(PictureTest, TheExportedSvgShowsWhatTheScreenShows) {
  ASSERT_TRUE(window->Dispatch(170));
  for (const Pane pane : {Pane::Amplitude, Pane::Waveform, Pane::Analysis}) {
    PaneWidget& widget = window->PaneOf(pane);
    const QString path = folder.filePath("pane.svg");
    ASSERT_EQ(SavePicture(widget.Shown(), path.toStdString(), PictureFormat::Svg), 0);
    const QSize size = widget.PaneSize();
    const Picture shown = widget.Shown();
    const QImage svg = SvgAsImage(BytesOf(path), {shown.WholeWidth(), shown.WholeHeight()})
                           .copy(QRect(QPoint(shown.around.left, shown.around.top), size));
    const QImage screen = widget.grab(widget.DataArea()).toImage().scaled(size);
    const QRect inside(0, 0, size.width() / 21 * 21, size.height() / 21 * 21);
    // A dash and its gap are 7 pixels.
    const int side = pane == Pane::Analysis ? 7 : 3;
    const QImage fromFile = Coarse(svg.copy(inside), side), fromScreen = Coarse(screen.copy(inside), side);
    const double distance = MeanDistance(fromFile, fromScreen);
    const double ink = MeanDistance(fromScreen, WhitePaper(fromScreen.size()));
    EXPECT_GT(ink, 2.0);
    EXPECT_LT(distance, 0.08 * ink) << "pane " << static_cast<int>(pane) << ", ink " << ink;
  }
}

TEST_F(PictureTest, APngHas300DotsAnInchAndAPdfIsOne) {
  const Picture picture = Waveform().Shown();
  const QString png = folder.filePath("p.png"), pdf = folder.filePath("p.pdf");
  ASSERT_EQ(SavePicture(picture, png.toStdString(), PictureFormat::Png), 0);
  const QImage image(png);
  EXPECT_EQ(image.width(), std::lround(picture.WholeWidth() * 300.0 / 96.0));
  EXPECT_EQ(image.dotsPerMeterX(), 11811);
  ASSERT_EQ(SavePicture(picture, pdf.toStdString(), PictureFormat::Pdf), 0);
  const QByteArray bytes = BytesOf(pdf);
  EXPECT_TRUE(bytes.startsWith("%PDF-"));
  EXPECT_TRUE(bytes.contains("/MediaBox"));
  EXPECT_FALSE(bytes.contains("/Subtype /Image")) << "lines were turned into pixels";
}

TEST_F(PictureTest, AFileThatCannotBeWrittenIsReported) {
  for (const PictureFormat format : {PictureFormat::Svg, PictureFormat::Pdf, PictureFormat::Png})
    EXPECT_EQ(SavePicture(Waveform().Shown(), folder.filePath("missing/p").toStdString(), format), -1);
}

}  // namespace
}  // namespace parlowen
