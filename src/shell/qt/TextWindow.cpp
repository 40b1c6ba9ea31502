#include "shell/qt/TextWindow.h"

#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTextBrowser>
#include <QUrl>

#include "base/IpaCodes.h"
#include "base/Utf8.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kHelpTitle = "帮助";

constexpr qint64 kLongestText = qint64{16} << 20;

void MakeWindow(QWidget& widget, const QString& title) {
  widget.setWindowFlag(Qt::Window);
  widget.setAttribute(Qt::WA_DeleteOnClose);
  widget.setWindowTitle(title);
  widget.resize(QSize(820, 600).boundedTo(widget.screen()->availableSize() - QSize(20, 60)));
}

}  // namespace

QString DecodedText(const QByteArray& bytes) {
  const std::string text = bytes.toStdString();
  return QString::fromStdString(IsUtf8(text) ? text : IpaFromGbk(text));
}

QWidget* MakeTextWindow(const QString& path, QWidget* parent) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return nullptr;
  auto* view = new QPlainTextEdit(parent);
  view->setReadOnly(true);
  view->setLineWrapMode(QPlainTextEdit::NoWrap);
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setFamilies({"Noto Sans Mono CJK SC", font.family()});
  view->setFont(font);
  view->setPlainText(DecodedText(file.read(kLongestText)));
  MakeWindow(*view, QFileInfo(path).fileName());
  return view;
}

QWidget* MakeHelpWindow(const QString& path, const QString& fragment, QWidget* parent) {
  if (!QFileInfo(path).isReadable()) return nullptr;
  auto* view = new QTextBrowser(parent);
  view->setOpenLinks(true);
  view->setOpenExternalLinks(false);
  QUrl url = QUrl::fromLocalFile(path);
  if (!fragment.isEmpty()) url.setFragment(fragment);
  view->setSource(url);
  MakeWindow(*view, view->documentTitle().isEmpty() ? kHelpTitle.Get() : view->documentTitle());
  return view;
}

}  // namespace parlowen
