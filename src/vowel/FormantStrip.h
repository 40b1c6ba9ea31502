#pragma once
#include <cstdint>
#include <vector>

#include "document/SoundDocument.h"
#include "ui/Picture.h"
#include "vowel/VowelFormants.h"

namespace parlowen {

/// The formants along the view, under the amplitude pane while the point chart is shown: what a click at a
/// column would measure. Analysed once a view.
class FormantStrip {
 public:
  static constexpr int kStep = 4;     ///< columns from one analysis to the next
  static constexpr int kHeight = 46;  ///< pixels, 0 to 4000 Hz

  /// `samples[i]` is the sample of column i·kStep.
  void Update(const SoundDocument& document, std::vector<int> samples);
  /// Its first column at column 0.
  Picture Draw() const;

 private:
  std::vector<int> samples_;
  std::vector<FormantFrame> frames_;
  std::uint64_t version_ = ~std::uint64_t{0};
};

}  // namespace parlowen
