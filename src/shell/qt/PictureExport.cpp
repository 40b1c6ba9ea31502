#include "shell/qt/PictureExport.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QPdfWriter>

#include "base/Files.h"
#include "shell/qt/ActionGate.h"
#include "shell/qt/PicturePainter.h"
#include "ui/FileKind.h"
#include "ui/Messages.h"
#include "ui/Svg.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {
namespace {

/// In pixels, where nothing else is asked for: so other programs take it up as it stands on the screen.
QByteArray SvgBytes(const Picture& picture, double pixelsPerInch) {
  return QByteArray::fromStdString(ToSvg(picture, pixelsPerInch == kPixelsPerInch ? 0 : pixelsPerInch));
}

QByteArray PdfBytes(const Picture& picture, double pixelsPerInch) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  const double points = 72.0 / pixelsPerInch;
  writer.setPageSize(QPageSize(QSizeF(picture.WholeWidth() * points, picture.WholeHeight() * points),
                               QPageSize::Point, QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF());
  writer.setResolution(kPrintDotsPerInch);
  QPainter painter(&writer);
  const double scale = kPrintDotsPerInch / pixelsPerInch;
  painter.scale(scale, scale);
  painter.translate(picture.around.left, picture.around.top);
  PaintPicture(painter, picture);
  painter.end();
  return bytes;
}

QByteArray PngBytes(const Picture& picture, double pixelsPerInch) {
  QImage image = RenderPicture(picture, kPrintDotsPerInch / pixelsPerInch);
  constexpr double kMetresPerInch = 0.0254;
  const int dotsPerMetre = static_cast<int>(kPrintDotsPerInch / kMetresPerInch + 0.5);
  image.setDotsPerMeterX(dotsPerMetre);
  image.setDotsPerMeterY(dotsPerMetre);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return bytes;
}

struct FormatRow {
  PictureFormat format;
  UiText menuText;
  FileKind kind;
};
constexpr FormatRow kFormats[] = {
    // in the order of PictureFormat
    {PictureFormat::Svg, "图形存为 SVG(&V)...", FileKindNamed("svg")},
    {PictureFormat::Pdf, "图形存为 PDF(&F)...", FileKindNamed("pdf")},
    {PictureFormat::Png, "图形存为 PNG，300 dpi(&G)...", FileKindNamed("png")},
};
constexpr UiText kCopyPicture = "复制为图片(&C)";
constexpr UiText kSaveTitle = "图形存为";

}  // namespace

int SavePicture(const Picture& picture, const std::string& path, PictureFormat format, double pixelsPerInch) {
  const QByteArray bytes = format == PictureFormat::Svg   ? SvgBytes(picture, pixelsPerInch)
                           : format == PictureFormat::Pdf ? PdfBytes(picture, pixelsPerInch)
                                                          : PngBytes(picture, pixelsPerInch);
  if (bytes.isEmpty()) return -1;
  return ReplaceFile(path, {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                            static_cast<std::size_t>(bytes.size())});
}

void AskAndSavePicture(Window& window, const Picture& picture, PictureFormat format, double pixelsPerInch) {
  const FileKind& kind = kFormats[static_cast<int>(format)].kind;
  const auto choice = window.AskSaveFile({kSaveTitle, {kind}, kind.extension});
  if (!choice) return;
  if (SavePicture(picture, choice->path, format, pixelsPerInch) < 0)
    return window.ShowError(messages::kBadSaveName, messages::kBadNameCaption);
  window.Saved(choice->path);
}

void CopyPicture(const Picture& picture, double scale) {
  QGuiApplication::clipboard()->setImage(RenderPicture(picture, scale));
}

void AddPictureActions(QMenu& menu, Window& window, ActionGate& gate, int level,
                       std::function<Picture()> picture) {
  menu.addAction(kCopyPicture.Get(), &menu, [&menu, &gate, level, picture] {
    gate.Run([&] { CopyPicture(picture(), menu.devicePixelRatioF()); }, level);
  });
  for (const FormatRow& row : kFormats)
    menu.addAction(row.menuText.Get(), &menu, [&window, &gate, level, picture, &row] {
      gate.Run([&] { AskAndSavePicture(window, picture(), row.format); }, level);
    });
}

}  // namespace parlowen
