#pragma once
#include <string>
#include <vector>

#include "ui/Picture.h"

namespace parlowen {

class Window;

/// A button beside a tool window's drawing area.
struct ToolControl {
  int number = 0;       ///< 0: known by its text
  std::string text;
  bool enabled = true;
};

enum class MouseButton { Left, Right };

/// A scroll bar under a drawing area that shows only part of its columns.
struct ToolScroll {
  int number = 0;     ///< of the control
  int position = 0;   ///< the first column shown, 0..largest
  int largest = 0;    ///< columns that do not fit; 0: no bar
  int page = 1;       ///< columns that are shown
};

/// A window over one analysis (markers, a chart, a spectrum). The room that owns the data implements it; the
/// desktop shows it with one widget, a script drives it by name.
class ToolWindow {
 public:
  virtual ~ToolWindow() = default;

  virtual std::string Name() const = 0;    ///< "markers", "lta", …: fixed, for scripts
  virtual std::string Title() const = 0;   ///< shown in the title bar
  virtual std::vector<ToolControl> Controls() const { return {}; }
  virtual Picture Draw(int width, int height) const = 0;

  virtual void Click(Window&, Point, MouseButton, bool /*shift*/) {}
  virtual bool Key(Window&, const std::string& /*key*/) { return false; }  ///< true when it was used
  virtual void Press(Window&, const ToolControl&) {}
  virtual void Scroll(Window&, int /*steps*/) {}
  virtual ToolScroll ScrollBar(int /*width*/) const { return {}; }   ///< of a drawing that wide
  virtual void ScrollTo(Window&, int /*position*/) {}
  virtual void Resized(int /*width*/) {}   ///< the drawing area on the screen has this width now
  virtual std::string Hover(Point) const { return {}; }   ///< a readout for the pointer; "" for none
  virtual std::string Text() const { return {}; }         ///< the figures shown, as lines of text; "" for none
  virtual std::string Instructions() const { return {}; } ///< what to do here, under the drawing; "" for none
  /// Asked after each thing done in the window: true closes it.
  virtual bool WantsToClose() const { return false; }
  virtual void Closed(Window&) {}
};

}  // namespace parlowen
