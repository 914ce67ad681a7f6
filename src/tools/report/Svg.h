#pragma once
// The pieces of the report's inline SVG drawings: a frame that maps data to
// pixels (and says so in its data- attributes, so that a reader can take
// the numbers back from the coordinates), axes, and text escaping.

#include <string>
#include <string_view>

namespace tov {

// Text for HTML and SVG: & < > " escaped.
std::string Escape(std::string_view text);
// A coordinate or value with at most 2 decimals.
std::string Pixels(double value);

struct Frame {
  double Width = 900.0, Height = 240.0;
  double Left = 55.0, Right = 15.0, Top = 22.0, Bottom = 42.0;
  double XMin = 0.0, XMax = 1.0, YMin = 0.0, YMax = 1.0;

  double X(double value) const;
  double Y(double value) const;
  // <svg> with the frame in data- attributes (and the given ones), a title
  // on top, the plot box.
  std::string Open(std::string_view kind, std::string_view title, std::string_view attributes = "") const;
  // Ticks and labels of the value axis.
  std::string ValueAxis(std::string_view label) const;
  // A horizontal dashed line at value y with a label at its right end, or
  // at its left end for a second line that may lie on the first.
  std::string Threshold(double y, std::string_view label, std::string_view color, bool labelLeft) const;
};

// A step of about a fifth of the span, of the form 1, 2 or 5 times a power of 10.
double NiceStep(double span);

}  // namespace tov
