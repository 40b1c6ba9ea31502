#pragma once
#include <vector>

#include "prosody/Durations.h"
#include "ui/ToolWindow.h"

namespace parlowen {

/// One bar a group, 40 pixels apart, as high as the mean is long: 3.12·k ms a pixel with k = trunc(M/400) + 1
/// and M the largest mean. Negative means hang below the base line. `first` is the group at the left.
Picture DurationPicture(const std::vector<DurationGroup>& groups, int first, int width, int height);

/// Bars that fit side by side.
int BarsIn(int width);

/// The result window "durations".
class DurationChart : public ToolWindow {
 public:
  explicit DurationChart(std::vector<DurationGroup> groups) : groups_(std::move(groups)) {}

  std::string Name() const override { return "durations"; }
  std::string Title() const override;
  Picture Draw(int width, int height) const override;
  bool Key(Window& window, const std::string& key) override;
  void Scroll(Window& window, int steps) override;
  std::string Hover(Point at) const override;

 private:
  std::vector<DurationGroup> groups_;
  int first_ = 0;
  mutable int fitting_ = 1;  ///< bars in the width that was drawn last
};

}  // namespace parlowen
