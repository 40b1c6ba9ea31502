#pragma once
#include <string>
#include <vector>

#include "ui/Picture.h"
#include "vowel/VowelGroups.h"

namespace parlowen {

/// The plot of the group means, over the lower panes while `activity` is 27.
struct GroupPlot {
  std::vector<VowelGroup> groups;   ///< placed
  bool showNames = false;
};

/// Rows count from the top of the amplitude pane, like those of the point chart.
Picture GroupPlotPicture(const GroupPlot& plot, int width, int height);

/// The values of the group under the pointer; "" for none.
std::string GroupPlotHover(const GroupPlot& plot, Point at);

}  // namespace parlowen
