// Joins the physical lines of a data file. Nearly every line stands alone and is handed on without being
// copied.
#include "library/LogicalLines.h"

#include <algorithm>
#include <cstring>

#include "core/Text.h"

namespace kvr {
namespace {

bool Holds(std::string_view text, char c) {
  return !text.empty() && std::memchr(text.data(), c, text.size()) != nullptr;
}

bool IsComment(std::string_view line) {
  return line.starts_with('*') || line.starts_with("//");
}

// Only marks behind a blank begin a comment, so a web address stays whole.
std::string_view WithoutComment(std::string_view line) {
  const std::size_t marks = line.find("//");
  return marks != npos && marks > 0 && line[marks - 1] == ' ' ? Trim(line.substr(0, marks)) : line;
}

bool GoesOn(std::string_view line) {
  return line.ends_with(',') || line.ends_with('_') || line.ends_with('|');
}

}  // namespace

std::string_view LogicalLines::Next(bool freeText) {
  thrownAway_ = false;
  cutShort_ = false;
  std::string_view line = NextPhysicalLine();
  firstLine_ = file_.LineNumber();
  if (freeText) return line;
  if (IsComment(line)) return {};
  line = WithoutComment(line);
  if (!GoesOn(line)) return line;
  joined_.assign(line);
  while (true) {
    const bool wantsMore = joined_.ends_with(',') || joined_.ends_with('|');
    if (joined_.ends_with('_'))
      joined_.pop_back();
    else if (joined_.ends_with(','))
      joined_ += ' ';
    else if (!wantsMore)
      return joined_;
    if (AtEnd()) {
      cutShort_ = wantsMore;
      return Trim(joined_);
    }
    line = NextPhysicalLine();
    if (IsComment(line)) {
      thrownAway_ = true;
      return {};
    }
    joined_ += WithoutComment(line);
    while (joined_.ends_with(' ')) joined_.pop_back();
  }
}

std::string_view LogicalLines::NextAlone() {
  const std::string_view line = NextPhysicalLine();
  return IsComment(line) ? std::string_view() : WithoutComment(line);
}

std::string_view LogicalLines::NextPhysicalLine() {
  std::string_view line = file_.FileNextLine();
  if (Holds(line, '\t') || Holds(line, '\0')) {
    blanked_.assign(line);
    std::replace(blanked_.begin(), blanked_.end(), '\t', ' ');
    std::replace(blanked_.begin(), blanked_.end(), '\0', ' ');
    line = blanked_;
  }
  return Trim(line);
}

}  // namespace kvr
