#pragma once
#include <string>
#include <vector>

#include "ui/Picture.h"
#include "vowel/VowelGroups.h"

namespace parlowen {

/// The plot of the group means, right of the point chart while `activity` is 27.
struct GroupPlot {
  std::vector<VowelGroup> groups;  ///< placed
  bool showNames = false;
};

/// To be drawn over the point chart, whose rows it shares.
Picture GroupPlotPicture(const GroupPlot& plot, int width, int height);

/// The values of the group under the pointer; "" for none.
std::string GroupPlotHover(const GroupPlot& plot, Point at);

}  // namespace parlowen
