#include "shell/qt/PaneSplitter.h"

#include <algorithm>
#include <numeric>

namespace parlowen {

PaneSplitter::PaneSplitter(QWidget* parent) : QSplitter(Qt::Vertical, parent) {
  setHandleWidth(5);
  setChildrenCollapsible(false);
  connect(this, &QSplitter::splitterMoved, this, [this] { chosen_ = true; });
}

void PaneSplitter::AddPane(QWidget* pane, int part) {
  addWidget(pane);
  setStretchFactor(count() - 1, part);
  parts_.push_back(part);
}

void PaneSplitter::RestoreHeights(const QByteArray& heights) {
  chosen_ = !heights.isEmpty() && restoreState(heights);
  setChildrenCollapsible(false);
}

void PaneSplitter::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  if (!chosen_) ShareHeight();
}

void PaneSplitter::ShareHeight() {
  int height = this->height() - handleWidth() * (count() - 1);
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
