// The lines of a data file as their author means them: comments dropped, physical lines joined.
//
// Tabs and NULs count as blanks; every line is trimmed. A line that begins with "*" or "//" is a comment;
// "//" behind a blank begins one for the rest of the physical line (only the first "//" is looked at). A line
// ending in "_" (which is dropped), "," or "|" goes on in the next line; behind "," a blank is put. A comment
// line in the middle of such a construction throws away all that was joined. The end of the file completes
// the line.
#pragma once

#include <string>
#include <string_view>

#include "core/Text.h"
#include "core/clsFileReader.h"

namespace kvr {

class LogicalLines {
 public:
  explicit LogicalLines(clsFileReader& file) : file_(file) {}

  bool AtEnd() const { return file_.FileEOF(); }
  // The next logical line, or the next physical one in free text, trimmed; empty for a comment. The view
  // holds until the next call.
  std::string_view Next(bool freeText = false);
  // The next physical line by itself, trimmed; empty for a comment.
  std::string_view NextAlone();
  // Number of the physical line in which the last logical line began.
  std::size_t LineNumber() const { return firstLine_; }
  // What the comment that was the last line threw away; "" usually.
  std::string_view ThrownAway() const { return thrownAway_ ? Trim(joined_) : ""; }
  // The file ended behind a "," or "|" of the last line, which should have gone on.
  bool CutShort() const { return cutShort_; }

 private:
  std::string_view NextPhysicalLine();

  clsFileReader& file_;
  std::string joined_;   // the line under construction
  std::string blanked_;  // a physical line that held tabs or NULs
  std::size_t firstLine_ = 0;
  bool thrownAway_ = false;
  bool cutShort_ = false;
};

}  // namespace kvr
