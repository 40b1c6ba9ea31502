#include "shell/qt/PaneSplitter.h"

#include <algorithm>
#include <numeric>

namespace parlowen {
namespace {

constexpr int kLabelsInLargeType = 92;  // rows of the label pane from which on its letters do not grow

}  // namespace

PaneSplitter::PaneSplitter(QWidget* parent) : QSplitter(Qt::Vertical, parent) {
  setHandleWidth(4);
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

void PaneSplitter::AddLabels(QWidget* labels, int giver) {
  addWidget(labels);
  setStretchFactor(count() - 1, 0);
  labels->hide();
  labels_ = labels;
  giver_ = giver;
}

void PaneSplitter::ShowLabels(bool shown) {
  if (shown == labelsShown_ || labels_ == nullptr) return;
  labelsShown_ = shown;
  if (chartShown_) return;
  const QList<int> heights = sizes();
  setUpdatesEnabled(false);
  labels_->setVisible(shown);
  chosen_ ? MoveHeight(heights) : ShareHeight();
  setUpdatesEnabled(true);
}

int PaneSplitter::LabelsHeight(int given) const {
  const int spare = given - widget(giver_)->minimumSizeHint().height() - handleWidth();
  // Large letters in all rows come before a higher picture.
  const int least = std::max(labels_->minimumSizeHint().height(), std::min(spare, kLabelsInLargeType));
  return std::clamp(spare / 2, least, std::max(least, labels_->sizeHint().height()));
}

void PaneSplitter::MoveHeight(QList<int> heights) {
  const int at = indexOf(labels_);
  const int height = labelsShown_ ? LabelsHeight(heights[giver_]) : -heights[at];
  heights[at] = std::max(0, height);
  heights[giver_] -= height + (labelsShown_ ? handleWidth() : -handleWidth());
  setSizes(heights);
}

void PaneSplitter::ShowChart(bool shown) {
  if (shown == chartShown_ || chart_ == nullptr) return;
  const int first = widget(0)->height();
  if (shown) paneHeights_ = saveState();
  chartShown_ = shown;
  setUpdatesEnabled(false);
  for (int i = 1; i < static_cast<int>(parts_.size()); ++i) widget(i)->setVisible(!shown);
  if (labels_ != nullptr) labels_->setVisible(labelsShown_ && !shown);
  chart_->setVisible(shown);
  if (shown) {
    const int height = this->height() - handleWidth(), smallest = widget(0)->minimumSizeHint().height();
    const int kept = std::clamp(height - chart_->sizeHint().height(), smallest, std::max(smallest, first));
    QList<int> heights(count(), 0);
    heights.front() = kept;
    heights.back() = height - kept;
    setSizes(heights);
  } else if (chosen_) {
    RestoreHeights(paneHeights_);
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
  labelsShown_ ? MoveHeight(heights) : setSizes(heights);
}

}  // namespace parlowen
