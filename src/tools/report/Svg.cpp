#include "tools/report/Svg.h"

#include <cmath>
#include <cstdio>

namespace tov {

std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string Pixels(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", value);
  std::string result(text);
  while (result.back() == '0') result.pop_back();
  if (result.back() == '.') result.pop_back();
  return result == "-0" ? "0" : result;
}

double NiceStep(double span) {
  if (!(span > 0.0)) return 1.0;
  const double rough = span / 5.0;
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (rough <= factor * power) return factor * power;
  return 10.0 * power;
}

double Frame::X(double value) const {
  const double span = XMax > XMin ? XMax - XMin : 1.0;
  return Left + (value - XMin) / span * (Width - Left - Right);
}

double Frame::Y(double value) const {
  const double span = YMax > YMin ? YMax - YMin : 1.0;
  return Height - Bottom - (value - YMin) / span * (Height - Top - Bottom);
}

std::string Frame::Open(std::string_view kind, std::string_view title, std::string_view attributes) const {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"" + std::string(kind) + "\" width=\"" + Pixels(Width) +
         "\" height=\"" + Pixels(Height) + "\" viewBox=\"0 0 " + Pixels(Width) + " " + Pixels(Height) +
         "\" data-x-min=\"" + Pixels(XMin) + "\" data-x-max=\"" + Pixels(XMax) + "\" data-y-min=\"" +
         std::to_string(YMin) + "\" data-y-max=\"" + std::to_string(YMax) + "\" data-left=\"" + Pixels(Left) +
         "\" data-top=\"" + Pixels(Top) + "\" data-plot-width=\"" + Pixels(Width - Left - Right) +
         "\" data-plot-height=\"" + Pixels(Height - Top - Bottom) + "\" " + std::string(attributes) + ">\n<text x=\"" +
         Pixels(Left) + "\" y=\"15\" class=\"title\">" + Escape(title) + "</text>\n<rect x=\"" + Pixels(Left) +
         "\" y=\"" + Pixels(Top) + "\" width=\"" + Pixels(Width - Left - Right) + "\" height=\"" +
         Pixels(Height - Top - Bottom) + "\" class=\"box\"/>\n";
}

std::string Frame::ValueAxis(std::string_view label) const {
  std::string svg;
  const double step = NiceStep(YMax - YMin);
  for (double v = std::ceil(YMin / step) * step; v <= YMax + step * 1e-9; v += step) {
    svg += "<line x1=\"" + Pixels(Left - 4) + "\" x2=\"" + Pixels(Left) + "\" y1=\"" + Pixels(Y(v)) + "\" y2=\"" +
           Pixels(Y(v)) + "\" class=\"tick\"/><text x=\"" + Pixels(Left - 6) + "\" y=\"" + Pixels(Y(v) + 4) +
           "\" class=\"ylabel\">" + Pixels(v) + "</text>\n";
  }
  svg += "<text x=\"12\" y=\"" + Pixels((Top + Height - Bottom) / 2) + "\" class=\"axis\" transform=\"rotate(-90 12 " +
         Pixels((Top + Height - Bottom) / 2) + ")\">" + Escape(label) + "</text>\n";
  return svg;
}

std::string Frame::Threshold(double y, std::string_view label, std::string_view color, bool labelLeft) const {
  return "<line x1=\"" + Pixels(Left) + "\" x2=\"" + Pixels(Width - Right) + "\" y1=\"" + Pixels(Y(y)) + "\" y2=\"" +
         Pixels(Y(y)) + "\" stroke=\"" + std::string(color) + "\" class=\"threshold\" data-value=\"" + Pixels(y) +
         "\"/><text x=\"" + Pixels(labelLeft ? Left + 4 : Width - Right - 4) + "\" y=\"" + Pixels(Y(y) - 4) +
         "\" class=\"" + (labelLeft ? "tlabel-left" : "tlabel") + "\" fill=\"" + std::string(color) + "\">" +
         Escape(label) + "</text>\n";
}

}  // namespace tov
