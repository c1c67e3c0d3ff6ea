// Who wants to know, while a data file is read, what stands in which line.
#pragma once

#include <cstddef>
#include <string_view>

#include "library/ModRecord.h"
#include "library/clsSystemItem.h"

namespace kvr {

// A line is named by the number of its first physical line, from 1.
class DataFileObserver {
 public:
  virtual ~DataFileObserver() = default;
  // What the author cannot have meant: what is wrong, in words that follow the place, and the text that was
  // found ("" when there is nothing to show).
  virtual void Note(std::size_t line, std::string_view what, std::string_view found) = 0;
  // A record as its line defines it, before it joins or replaces what stands.
  virtual void Item(std::size_t line, const clsSystemItem& item) = 0;
  virtual void Mod(std::size_t line, const ModRecord& mod) = 0;
  // A command that was carried out.
  virtual void Command(std::size_t line, std::string_view command) = 0;
};

}  // namespace kvr
