#include "ui/Svg.h"

#include <algorithm>
#include <span>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "base/IpaCodes.h"
#include "base/Utf8.h"
#include "ui/Png.h"
#include "ui/Resample.h"

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

/// How a line is broken; a whole one ends with its last pixel.
const char* Dashes(LineStyle style, const char* whole = "") {
  switch (style) {
    case LineStyle::Dashed: return " stroke-dasharray=\"4 3\"";
    case LineStyle::Dotted: return " stroke-dasharray=\"1 3\"";
    default: return whole;
  }
}

// Whoever prints the file has up to 300 pixels an inch of a continuous image, a picture pixel being 1/96 inch.
constexpr int kPrintPixels = 25, kPicturePixels = 8;

/// Pixels of an image that takes `drawn` picture pixels: as many as are drawn; more where the image has them.
int EmbeddedPixels(int drawn, int present) {
  return std::max(drawn, std::min(present, WrapMul32(drawn, kPrintPixels) / kPicturePixels));
}

std::string Image(int x, int y, int width, int height, int columns, int rows, int channels,
                  std::span<const std::uint8_t> pixels, bool smooth) {
  if (columns <= 0 || rows <= 0) return {};
  return Format(
             "<image x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" preserveAspectRatio=\"none\" %s"
             "xlink:href=\"data:image/png;base64,",
             x, y, width, height, smooth ? "" : "style=\"image-rendering:pixelated\" ") +
         ToBase64(EncodePng(columns, rows, channels, pixels)) + "\"/>\n";
}

class SvgMark {
 public:
  std::string operator()(const LineMark& mark) const {
    return Format("<line x1=\"%d\" y1=\"%d\" x2=\"%d\" y2=\"%d\" stroke=\"%s\" stroke-width=\"%d\"%s%s/>\n",
                  mark.from.x, mark.from.y, mark.to.x, mark.to.y, Hex(mark.colour).c_str(), mark.width,
                  Dashes(mark.style, " stroke-linecap=\"square\""), kMiddle);
  }
  std::string operator()(const PolylineMark& mark) const {
    return "<polyline points=\"" + PointList(mark.points) +
           Format("\" fill=\"none\" stroke=\"%s\" stroke-width=\"%d\"%s%s/>\n", Hex(mark.colour).c_str(),
                  mark.width, Dashes(mark.style), kMiddle);
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
    if (mark.smooth) {
      const GreyImageMark seen =
          Resampled(mark, EmbeddedPixels(mark.width, mark.columns), EmbeddedPixels(mark.height, mark.rows));
      return Image(mark.x, mark.y, mark.width, mark.height, seen.columns, seen.rows, 1, seen.pixels, true);
    }
    return Image(mark.x, mark.y, mark.width, mark.height, mark.columns, mark.rows, 1, mark.pixels, false);
  }
  std::string operator()(const ColourImageMark& mark) const {
    return Image(mark.x, mark.y, mark.width, mark.height, mark.columns, mark.rows, 3, mark.pixels, false);
  }
  std::string operator()(const ClipMark& mark) {
    std::string ended = clipped_ ? "</g>\n" : "";
    clipped_ = mark.width > 0;
    if (!clipped_) return ended;
    ++clips_;
    return ended + Format(
                       "<defs><clipPath id=\"clip%d\"><rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\"/>"
                       "</clipPath></defs>\n<g clip-path=\"url(#clip%d)\">\n",
                       clips_, mark.x, mark.y, mark.width, mark.height, clips_);
  }
  /// Closes what a picture left open.
  std::string End() { return (*this)(ClipMark{}); }

 private:
  int clips_ = 0;
  bool clipped_ = false;
};

}  // namespace

std::string ToSvg(const Picture& picture, double pixelsPerInch) {
  const int left = -picture.around.left, top = -picture.around.top;
  const int width = picture.WholeWidth(), height = picture.WholeHeight();
  std::string size = Format("width=\"%d\" height=\"%d\"", width, height);
  if (pixelsPerInch > 0)
    size = Format("width=\"%.4fin\" height=\"%.4fin\"", width / pixelsPerInch, height / pixelsPerInch);
  std::string svg = Format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
      "%s viewBox=\"%d %d %d %d\">\n"
      "<rect x=\"%d\" y=\"%d\" width=\"%d\" height=\"%d\" fill=\"#ffffff\"/>\n",
      size.c_str(), left, top, width, height, left, top, width, height);
  SvgMark writer;
  for (const Mark& mark : picture.marks) svg += std::visit(writer, mark);
  return svg + writer.End() + "</svg>\n";
}

}  // namespace parlowen
