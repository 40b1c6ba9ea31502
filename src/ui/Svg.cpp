#include "ui/Svg.h"

#include <span>

#include "base/Format.h"
#include "base/IpaCodes.h"
#include "base/Utf8.h"
#include "ui/Png.h"

namespace parlowen {
namespace {

std::string Hex(Colour colour) { return Format("#%06x", colour & 0xFFFFFFu); }

std::string PointList(const std::vector<Point>& points) {
  std::string list;
  list.reserve(points.size() * 8);
  for (const Point point : points) {
    if (!list.empty()) list += ' ';
    list += std::to_string(point.x) + ',' + std::to_string(point.y);
  }
  return list;
}

/// False for the characters that no XML document may hold, not even as entities.
bool IsXmlCharacter(char32_t character) {
  return character >= 0x20 && character != 0xFFFE && character != 0xFFFF;
}

/// XML text: the five special characters as entities, control characters and broken bytes as U+FFFD.
std::string Escaped(const std::string& text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = TakeUtf8(text, at);
    switch (character) {
      case U'&': out += "&amp;"; break;
      case U'<': out += "&lt;"; break;
      case U'>': out += "&gt;"; break;
      case U'"': out += "&quot;"; break;
      case U'\'': out += "&apos;"; break;
      default: AppendUtf8(out, IsXmlCharacter(character) ? character : kReplacementCharacter);
    }
  }
  return out;
}

const char* FamilyOf(Face face) {
  switch (face) {
    case Face::Ipa: return "Charis SIL, Doulos SIL, DejaVu Sans, sans-serif";
    case Face::Figures: return "DejaVu Sans, sans-serif";
    default: return "Noto Sans CJK SC, WenQuanYi Micro Hei, sans-serif";
  }
}

// Lines and outlines run through the middle of their pixels, as they do on the screen.
constexpr const char* kMiddle = " transform=\"translate(0.5 0.5)\"";
constexpr const char* kDashes = " stroke-dasharray=\"4 3\"";

std::string Image(int x, int y, int width, int height, int columns, int rows, int channels,
                  std::span<const std::uint8_t> pixels) {
  if (columns <= 0 || rows <= 0) return {};
  return Format(
             "<image x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" preserveAspectRatio=\"none\" "
             "style=\"image-rendering:pixelated\" xlink:href=\"data:image/png;base64,",
             x, y, width, height) +
         ToBase64(EncodePng(columns, rows, channels, pixels)) + "\"/>\n";
}

struct SvgMark {
  std::string operator()(const LineMark& mark) const {
    return Format("<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" stroke=\"%s\" stroke-width=\"%d\"%s%s/>\n",
                  mark.from.x, mark.from.y, mark.to.x, mark.to.y, Hex(mark.colour).c_str(), mark.width,
                  mark.style == LineStyle::Dashed ? kDashes : " stroke-linecap=\"square\"", kMiddle);
  }
  std::string operator()(const PolylineMark& mark) const {
    return "<polyline points=\"" + PointList(mark.points) +
           Format("\" fill=\"none\" stroke=\"%s\" stroke-width=\"%d\"%s%s/>\n", Hex(mark.colour).c_str(),
                  mark.width, mark.style == LineStyle::Dashed ? kDashes : "", kMiddle);
  }
  std::string operator()(const PolygonMark& mark) const {
    return "<polygon points=\"" + PointList(mark.points) +
           Format("\" fill=\"%s\" fill-opacity=\"%.2f\"/>\n", Hex(mark.fill).c_str(), mark.opacity);
  }
  std::string operator()(const BoxMark& mark) const {
    std::string out;
    if (mark.opacity > 0)
      out +=
          Format("<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"%s\" fill-opacity=\"%.2f\"/>\n",
                 mark.x, mark.y, mark.width, mark.height, Hex(mark.fill).c_str(), mark.opacity);
    if (mark.outlined && mark.width > 0 && mark.height > 0)
      out += Format("<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"none\" stroke=\"%s\"%s/>\n",
                    mark.x, mark.y, mark.width - 1, mark.height - 1, Hex(mark.outline).c_str(), kMiddle);
    return out;
  }
  std::string operator()(const OvalMark& mark) const {
    return Format("<ellipse cx=\"%.1f\" cy=\"%.1f\" rx=\"%.1f\" ry=\"%.1f\" fill=\"%s\" stroke=\"%s\"/>\n",
                  mark.x + mark.width / 2.0, mark.y + mark.height / 2.0, mark.width / 2.0, mark.height / 2.0,
                  mark.filled ? Hex(mark.fill).c_str() : "none", Hex(mark.outline).c_str());
  }
  std::string operator()(const TextMark& mark) const {
    constexpr const char* kAnchors[] = {"start", "middle", "end"};
    return Format(
               "<text x=\"%d\" y=\"%d\" font-size=\"%d\" font-family=\"%s\" text-anchor=\"%s\" fill=\"%s\" "
               "xml:space=\"preserve\">",
               mark.x, mark.y, mark.height, FamilyOf(mark.face), kAnchors[static_cast<int>(mark.anchor)],
               Hex(mark.colour).c_str()) +
           Escaped(IpaAsDrawn(mark.text)) + "</text>\n";
  }
  std::string operator()(const GreyImageMark& mark) const {
    return Image(mark.x, mark.y, mark.width, mark.height, mark.columns, mark.rows, 1, mark.pixels);
  }
  std::string operator()(const ColourImageMark& mark) const {
    return Image(mark.x, mark.y, mark.width, mark.height, mark.columns, mark.rows, 3, mark.pixels);
  }
};

}  // namespace

std::string ToSvg(const Picture& picture) {
  std::string svg = Format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
      "width=\"%d\" height=\"%d\" viewBox=\"0 0 %d %d\">\n"
      "<rect x=\"0\" y=\"0\" width=\"%d\" height=\"%d\" fill=\"#ffffff\"/>\n",
      picture.width, picture.height, picture.width, picture.height, picture.width, picture.height);
  for (const Mark& mark : picture.marks) svg += std::visit(SvgMark{}, mark);
  return svg + "</svg>\n";
}

}  // namespace parlowen
