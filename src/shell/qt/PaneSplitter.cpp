#include "shell/qt/PaneSplitter.h"

#include <algorithm>
#include <numeric>

namespace parlowen {

PaneSplitter::PaneSplitter(QWidget* parent) : QSplitter(Qt::Vertical, parent) {
  setHandleWidth(5);
  setChildrenCollapsible(false);
  connect(this, &QSplitter::splitterMoved, this, [this] { chosen_ = chosen_ || !chartShown_; });
}

void PaneSplitter::AddPane(QWidget* pane, int part) {
  addWidget(pane);
  setStretchFactor(count() - 1, part);
  parts_.push_back(part);
}

void PaneSplitter::AddChart(QWidget* chart) {
  addWidget(chart);
  setStretchFactor(count() - 1, std::accumulate(parts_.begin() + 1, parts_.end(), 0));
  chart->hide();
  chart_ = chart;
}

void PaneSplitter::ShowChart(bool shown) {
  if (shown == chartShown_ || chart_ == nullptr) return;
  const int first = widget(0)->height();
  if (shown) paneHeights_ = saveState();
  chartShown_ = shown;
  setUpdatesEnabled(false);
  for (int i = 1; i < static_cast<int>(parts_.size()); ++i) widget(i)->setVisible(!shown);
  chart_->setVisible(shown);
  if (shown) {
    const int height = this->height() - handleWidth(), smallest = widget(0)->minimumSizeHint().height();
    const int kept = std::clamp(height - chart_->sizeHint().height(), smallest, std::max(smallest, first));
    QList<int> heights(count(), 0);
    heights.front() = kept;
    heights.back() = height - kept;
    setSizes(heights);
  } else if (chosen_) {
    restoreState(paneHeights_);
    setChildrenCollapsible(false);
  } else {
    ShareHeight();
  }
  setUpdatesEnabled(true);
}

QByteArray PaneSplitter::ChosenHeights() const {
  if (!chosen_) return {};
  return chartShown_ ? paneHeights_ : saveState();
}

void PaneSplitter::RestoreHeights(const QByteArray& heights) {
  chosen_ = !heights.isEmpty() && restoreState(heights);
  setChildrenCollapsible(false);
}

void PaneSplitter::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  if (!chosen_ && !chartShown_) ShareHeight();
}

void PaneSplitter::ShareHeight() {
  int height = this->height() - handleWidth() * (static_cast<int>(parts_.size()) - 1);
  int parts = std::accumulate(parts_.begin(), parts_.end(), 0);
  QList<int> heights;
  // The smallest parts come first in what they may not go below: what they take is missing from the others.
  std::vector<int> order(parts_.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
    return parts_[static_cast<std::size_t>(a)] < parts_[static_cast<std::size_t>(b)];
  });
  heights.resize(count());
  for (const int i : order) {
    const int part = parts_[static_cast<std::size_t>(i)];
    heights[i] = std::max(height * part / std::max(1, parts), widget(i)->minimumSizeHint().height());
    height -= heights[i];
    parts -= part;
  }
  setSizes(heights);
}

}  // namespace parlowen
