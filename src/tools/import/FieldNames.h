#pragma once
// Names written into the program's fixed-length text fields.  The program
// reads a name as one free-format text item and cuts it to its field, so a
// name with a blank, comma, slash or quote must stand in quotes, and a name
// longer than the field must be shortened before two of them meet in their
// first characters.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

// Names that fit a field of length characters and differ from each other
// (trailing blanks not counting), in the order given.  A name that fits and
// has no control character stays as it is; the others are cut, with a
// suffix ~1, ~2, ... where the cut one is taken.  The given names differ.
std::vector<std::string> FitNames(const std::vector<std::string>& names, std::size_t length);

// The name as the free-format reader takes it back exactly: as it is where
// it can be, else in double quotes with inner quotes doubled.
std::string QuotedIfNeeded(std::string_view name);

}  // namespace tov
