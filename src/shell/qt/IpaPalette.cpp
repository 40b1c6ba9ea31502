#include "shell/qt/IpaPalette.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <algorithm>

#include "annotation/IpaIndex.h"
#include "base/Files.h"
#include "base/Format.h"
#include "base/IpaCodes.h"
#include "shell/DataFolder.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kPinyinFirst = "拼音 %s；%s", kExampleLast = "%s；例：%s";
constexpr UiText kCommonPage = "汉语常用音标";
constexpr UiText kWholePage = "全部音标";

constexpr int kCellWidth = 46, kCellHeight = 28, kColumns = 13, kRows = 8, kTypeHeight = 17;
constexpr std::size_t kMostIndexBytes = std::size_t{1} << 20;

void AddSymbol(QListWidget& page, const std::string& symbol, const std::string& toolTip) {
  auto* item = new QListWidgetItem(QString::fromStdString(symbol), &page);
  item->setTextAlignment(Qt::AlignCenter);
  item->setSizeHint({kCellWidth, kCellHeight});
  item->setToolTip(QString::fromStdString(toolTip));
}

std::string ToolTipOf(const IpaIndexRow& row) {
  std::string text = row.description;
  if (!row.pinyin.empty()) text = Format(kPinyinFirst.Get(), row.pinyin.c_str(), text.c_str());
  return row.example.empty() ? text : Format(kExampleLast.Get(), text.c_str(), row.example.c_str());
}

bool IsOnTheKeyboard(const std::string& symbol) {
  return std::all_of(symbol.begin(), symbol.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string SymbolOf(int trail) {
  const char code[] = {'\xAA', static_cast<char>(trail)};
  return IpaFromGbk({code, sizeof code});
}

}  // namespace

IpaPalette::IpaPalette(QLineEdit& field, QWidget* parent) : QTabWidget(parent), field_(field) {
  const auto bytes = ReadWholeFile(DataFolder() + "/" + kIpaIndexName, kMostIndexBytes);
  if (bytes) {
    QListWidget* common = AddPage(kCommonPage.Get());
    for (const IpaIndexRow& row : ReadIpaIndex({reinterpret_cast<const char*>(bytes->data()), bytes->size()}))
      if (!IsOnTheKeyboard(row.symbol)) AddSymbol(*common, row.symbol, ToolTipOf(row));
  }
  QListWidget* all = AddPage(kWholePage.Get());
  for (int trail = 0xA1; trail <= 0xFE; ++trail) AddSymbol(*all, SymbolOf(trail), "");
}

QListWidget* IpaPalette::AddPage(const QString& title) {
  auto* page = new QListWidget;
  page->setAccessibleName(title);
  page->setFocusPolicy(Qt::TabFocus);  // a click leaves the cursor in the field
  page->setViewMode(QListView::IconMode);
  page->setMovement(QListView::Static);
  page->setResizeMode(QListView::Adjust);
  page->setGridSize({kCellWidth, kCellHeight});
  page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  page->setMinimumSize(kColumns * kCellWidth + 24, kRows * kCellHeight + 8);
  QFont font = page->font();
  font.setFamilies({"Charis SIL", "Doulos SIL", "DejaVu Sans", "Noto Sans CJK SC"});
  font.setPixelSize(kTypeHeight);
  page->setFont(font);
  page->installEventFilter(this);
  connect(page, &QListWidget::itemClicked, this,
          [this](const QListWidgetItem* item) { Insert(item->text()); });
  addTab(page, title);
  return page;
}

bool IpaPalette::eventFilter(QObject* watched, QEvent* event) {
  auto* page = qobject_cast<QListWidget*>(watched);
  if (page == nullptr || event->type() != QEvent::KeyPress || page->currentItem() == nullptr) return false;
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (key != Qt::Key_Space && key != Qt::Key_Return && key != Qt::Key_Enter) return false;
  Insert(page->currentItem()->text());
  return true;
}

void IpaPalette::Insert(const QString& symbol) { field_.insert(symbol); }

}  // namespace parlowen
