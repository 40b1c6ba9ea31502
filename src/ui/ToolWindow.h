#pragma once
#include <optional>
#include <string>
#include <vector>

#include "ui/Picture.h"

namespace parlowen {

class Window;

/// A button beside a tool window's drawing area.
struct ToolControl {
  int number = 0;  ///< 0: known by its text
  std::string text;
  bool enabled = true;
  bool chosen = false;    ///< shown as pressed down: the tool in hand
  std::string help = {};  ///< its tool tip
};

/// A scroll bar below the drawing, in a unit of the tool's own.
struct ToolScrollBar {
  int position = 0, largest = 0;  ///< 0..largest
  int page = 1;                   ///< what is seen at once: a click beside the slider moves as far
  int arrow = 1;                  ///< what an arrow at its ends moves
  std::string help;               ///< its tool tip
};

enum class MouseButton { Left, Right };

/// A window over one analysis (markers, a chart, a spectrum). The room that owns the data implements it; the
/// desktop shows it with one widget, a script drives it by name.
class ToolWindow {
 public:
  virtual ~ToolWindow() = default;

  virtual std::string Name() const = 0;   ///< "markers", "lta", …: fixed, for scripts
  virtual std::string Title() const = 0;  ///< shown in the title bar
  virtual std::vector<ToolControl> Controls() const { return {}; }
  virtual Picture Draw(int width, int height) const = 0;
  virtual Point PreferredSize() const { return {900, 520}; }  ///< of the drawing, where the screen has room
  /// True where the drawing grows and shrinks with its window, letters too: its coordinates are those of the preferred
  /// size. False where a larger window shows more instead: more samples, more columns of a spectrum.
  virtual bool ScalesWithWindow() const { return true; }
  /// Columns of a picture of the whole drawing: more than `width` where a window of that width scrolls.
  virtual int WholeWidth(int width) const { return width; }
  /// The desktop's drawing has a size now. A script's windows have none: what its clicks count with stays
  /// fixed.
  virtual void Resized(int /*width*/, int /*height*/) {}
  /// Where in the drawing a script's clicks count from.
  virtual Point ClickOrigin() const { return {}; }

  virtual void Click(Window&, Point, MouseButton, bool /*shift*/) {}
  /// The pointer, moved with the left button held after a click.
  virtual void Drag(Window&, Point) {}
  virtual bool Key(Window&, const std::string& /*key*/) { return false; }  ///< true when it was used
  virtual void Press(Window&, const ToolControl&) {}
  virtual void Scroll(Window&, int /*steps*/) {}
  virtual std::optional<ToolScrollBar> ScrollBar() const { return {}; }
  virtual void ScrollTo(Window&, int /*position*/) {}
  virtual std::string Hover(Point) const { return {}; }  ///< a readout for the pointer; "" for none
  virtual std::string Text() const { return {}; }        ///< the figures shown, as lines of text; "" for none
  virtual std::string Instructions() const {
    return {};
  }  ///< what to do here, under the drawing; "" for none
  /// True when the cursor of a running play is drawn here.
  virtual bool ShowsPlay() const { return false; }
  /// Milliseconds until the window wants its next `Tick`; 0 while nothing moves by itself. A script does not wait:
  /// there all of them come at once.
  virtual int TickMilliseconds() const { return 0; }
  virtual void Tick(Window&) {}
  /// Asked after each thing done in the window: true closes it.
  virtual bool WantsToClose() const { return false; }
  virtual void Closed(Window&) {}
};

}  // namespace parlowen
