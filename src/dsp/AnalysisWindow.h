#pragma once
#include <array>

namespace parlowen {

/// The one shared analysis window. It holds what MakeAnalysisWindow() made last, so every analysis makes it
/// anew for its own frame length before it computes frames.
extern std::array<double, 1024> AnalysisWindow;

/// Fills AnalysisWindow with a window of `length` samples. Returns 0. With c = 6.2831853/length:
/// `shape` above 0.0001: (0.5 + shape) - (0.5 - shape)·cos(i·c). 0.04 is a Hamming window; 1.0 is 1.5 +
/// 0.5·cos(i·c), largest at the ends of the frame. There is no rectangular window. Otherwise a sine,
/// sin(i·c/2): 0 at the start, 1 mid-frame. Behind a window of at most 512 samples entries up to 511 become
/// 0, behind a longer one all others; entries beyond keep what an earlier window left. Of a window longer
/// than 1024 the first 1024 samples are kept; a length below 0 counts as 0.
int MakeAnalysisWindow(int length, double shape);

}  // namespace parlowen
