// Item lines of data files: "Name (Ext), 5, cat(Foo), page(12)", taken apart for each kind of section.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "library/clsSystemItem.h"

namespace kvr {
class KVRSystem;
}

namespace kvr::ItemLines {

// The kinds differ in what a second field without a tag means ("cost", "type", or nothing) and in whether
// "newmode(...)" fields are gathered into mode lists.
enum class Kind : std::uint8_t { Ad, Skill, Spell, Stat, Equipment, Mod, Generic };

// What the author of a line cannot have meant; the first of each sort, "" when there is none.
struct Notes {
  std::string_view valueWithoutTag;    // a field that is lost; a view into the line
  std::string_view nameEndingInBlank;  // a tag name that no look-up finds
  std::string_view behindTag;          // a tag whose ")" is not its last character, which is dropped
  bool tooManyModes = false;
};

// The line as a tag string "name(..),nameext(..),...".
std::string ToTagString(std::string_view line, Kind kind, Notes& notes);

// Fills a new item from the line; the same as its NewTagList of the line's tag string. Only ReadPlainLine may
// give up: false when the line has to go by way of its tag string. A line that it reads has matching
// parentheses. The library is told the name as soon as it is read.
bool ReadPlainLine(const KVRSystem& system, clsSystemItem& item, std::string_view line, Kind kind,
                   Notes& notes);
void ReadByTagString(clsSystemItem& item, std::string_view line, Kind kind, Notes& notes);

}  // namespace kvr::ItemLines
