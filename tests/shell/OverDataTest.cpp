// Every pane, with and without a selection and a picture of its own: no text and no axis stands over the data.
#include <gtest/gtest.h>

#include "shell/Station.h"

namespace parlowen {
namespace {

using testing::Station;

/// What of a figure covers the rectangle of its data. Phonetic letters are what the user put there.
std::string OverData(const Picture& figure) {
  std::string found;
  for (const Mark& mark : figure.marks) {
    if (const auto* text = std::get_if<TextMark>(&mark); text != nullptr && text->face != Face::Ipa) {
      const int width = TextWidth(text->text, text->height);
      const int left = text->x - (text->anchor == Anchor::Left    ? 0
                                  : text->anchor == Anchor::Right ? width
                                                                  : width / 2);
      if (left < figure.width && left + width > 0 && text->y - text->height < figure.height && text->y > 0)
        found += text->text + "; ";
    }
    if (const auto* line = std::get_if<LineMark>(&mark); line != nullptr && line->colour == colours::kText)
      if (line->from.x >= 0 && line->from.y >= 0 && line->from.y < figure.height) found += "axis; ";
  }
  return found;
}

TEST(Panes, NothingStandsOverTheData) {
  for (const std::uint32_t rate : {11025u, 16000u, 44100u})
    for (const bool selected : {false, true}) {
      Station s;
      std::vector<std::int16_t> samples(rate * 3);
      for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(i * i * 7919 % 20011 * (i / 3000 % 3));
      s.Load(samples, rate, testing::PitchTail(std::vector<float>(300, 80.0f)));
      if (selected) s.w.Select(static_cast<int>(rate) / 2, static_cast<int>(rate) * 2);
      for (const int command : {0, 170, 180, 190, 200, 205, 210, 40066, 40103}) {
        if (command > 0) s.w.dispatchCommand(command);
        for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform})
          for (const int height : {110, 191, 330}) {
            const Picture figure = s.w.view.Whole(pane, 1024, height);
            EXPECT_EQ(OverData(figure), "") << "pane " << static_cast<int>(pane) << " after " << command;
            EXPECT_EQ(figure.width, 1024);
            EXPECT_EQ(figure.height, height);
          }
      }
    }
}

}  // namespace
}  // namespace parlowen
