// The tag list of a library trait as a character takes it.
#pragma once

#include <string>

#include "core/modLogging.h"
#include "library/clsSystemItem.h"

namespace kvr {

// A value that closes its tag too early would swallow the tags behind it, and the trait's name is the last
// one: such a list is repaired, and that is told.
std::string WholeTagList(const clsSystemItem& record, ActivityLog& log);

}  // namespace kvr
