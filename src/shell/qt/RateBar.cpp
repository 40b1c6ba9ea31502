#include "shell/qt/RateBar.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "base/Format.h"
#include "document/SoundDocument.h"
#include "shell/qt/ElidedLabel.h"
#include "ui/CommandStates.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kText = "采样频率 %d Hz：共振峰、LPC 等分析需要 22050 Hz 以下。";
constexpr UiText kTo16000 = "转换为 16000 Hz", kTo11025 = "转换为 11025 Hz", kLeave = "不转换";

}  // namespace

RateBar::RateBar(QWidget* parent) : QWidget(parent), label_(new ElidedLabel(this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(4, 0, 4, 0);
  row->addWidget(label_, 1);
  const auto add = [&](UiText text, auto&& act) {
    auto* button = new QPushButton(text.Get());
    button->setAutoDefault(false);
    button->setFixedHeight(fontMetrics().height() + 7);  // the panes need the rows
    connect(button, &QPushButton::clicked, this, act);
    row->addWidget(button);
  };
  add(kTo16000, [this] { convert(true); });
  add(kTo11025, [this] { convert(false); });
  add(kLeave, [this] {
    left_ = seen_;
    hide();
  });
  hide();
}

void RateBar::Follow(const SoundDocument& document) {
  seen_ = document.Stamp();
  const bool high = document.sampleCount > 0 && document.sampleRate >= kHighRate;
  if (high) label_->SetText(QString::fromStdString(Format(kText.Get(), document.sampleRate)));
  setVisible(high && seen_ != left_);
}

}  // namespace parlowen
