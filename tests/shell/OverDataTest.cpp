// Every pane, with and without a selection and a picture of its own: no text and no axis stands over the data.
#include <gtest/gtest.h>

#include <set>

#include "shell/FigureChoice.h"
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

/// Texts over an image or over the points of a curve of at least thirty.
std::string TextOverCurves(const Picture& picture) {
  std::string found;
  for (const Mark& mark : picture.marks) {
    const auto* text = std::get_if<TextMark>(&mark);
    if (text == nullptr || text->face == Face::Ipa) continue;
    const int width = TextWidth(text->text, text->height) * 4 / 5;  // the estimate is a generous one
    const int left = text->x - (text->anchor == Anchor::Left    ? 0
                                : text->anchor == Anchor::Right ? width
                                                                : width / 2);
    const auto covers = [&](Point p) {
      return p.x > left && p.x < left + width && p.y > text->y - text->height * 3 / 4 && p.y < text->y;
    };
    for (const Mark& other : picture.marks) {
      bool over = false;
      if (const auto* curve = std::get_if<PolylineMark>(&other);
          curve != nullptr && curve->points.size() > 30)
        over = std::any_of(curve->points.begin(), curve->points.end(), covers);
      if (const auto* image = std::get_if<GreyImageMark>(&other); image != nullptr)
        over = left < image->x + image->width && left + width > image->x &&
               text->y - text->height < image->y + image->height && text->y > image->y;
      if (!over) continue;
      found += text->text + "; ";
      break;
    }
  }
  return found;
}

TEST(ToolWindows, NoTextStandsOverACurveOrAnImage) {
  const testing::TempFolder folder;
  testing::FakeWindow window;
  Workstation w(window, folder.path());
  const std::string sounds = PARLOWEN_SOURCE_DIR "/sounds/";
  const struct {
    int command;
    std::vector<std::string> answers;
  } cases[] = {{170, {}},       {212, {}},   {40089, {"yes"}}, {40089, {"no"}}, {40090, {}},
               {40095, {}},     {40096, {}}, {40052, {}},      {40106, {}},     {40067, {}},
               {40056, {"no"}}, {41010, {}}, {41011, {}},      {40117, {}},     {40111, {}}};
  std::set<std::string> seen;
  for (const bool twoChannels : {false, true}) {
    window.answers = {
        "file:" + sounds +
        (twoChannels ? "synthetic_vowels_two_channels_16000.wav" : "english_male_sentence_16000.wav")};
    w.dispatchCommand(twoChannels ? 40110 : 110);
    w.Select(16000, 24000);
    w.dispatchCommand(220);
    for (const auto& c : cases) {
      if (window.tool) window.CloseTool();
      window.answers.assign(c.answers.begin(), c.answers.end());
      w.dispatchCommand(c.command);
      if (window.tool == nullptr) continue;
      seen.insert(window.tool->Name());
      for (const auto& [width, height] : {std::pair{1024, 640}, {900, 520}, {700, 400}}) {
        const Point size = width == 700 ? window.tool->PreferredSize() : Point{width, height};
        EXPECT_EQ(TextOverCurves(window.tool->Draw(size.x, size.y)), "")
            << window.tool->Name() << " at " << size.x << ", " << size.y << " after " << c.command;
      }
    }
  }
  EXPECT_EQ(seen.size(), 10u);
}

TEST(Figures, AChoiceIsKeptAndAWrongOneIsNot) {
  FigureChoice choice;
  choice.panes = {Pane::Pitch, Pane::Analysis};
  choice.centimetres = 7.5;
  choice.points = 8;
  choice.output = FigureOutput::Png;
  EXPECT_EQ(FigureChoiceFrom(FigureChoiceText(choice)), choice);
  for (const char* line :
       {"", "x", "ps 7.5 8", "ps 3 8 g", "ps 7.5 nan g", "ps 7,5 8 g", "ps 7.5 20 g", " 7.5 8 gg"})
    EXPECT_EQ(FigureChoiceFrom(line).centimetres, 16) << line;
  InputForm form = FigureForm(choice);
  for (FormField& field : form.fields) field.checked = false;
  FigureChoice kept = choice;
  EXPECT_TRUE(TakeFigureForm(form, kept)) << "no pane";
  EXPECT_EQ(kept, choice);
}

}  // namespace
}  // namespace parlowen
