// kivera-batch --lint: data files checked for their authors.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "core/Environment.h"

namespace kvr::batch {

// `dataSet` is a name or path as the user wrote it, "" for the set of the settings, "-" for none. Prints one
// line for each finding; the exit status: 0, or 1 when anything was found.
int RunLint(Environment& env, const std::vector<std::string>& files, const std::string& dataSet,
            std::ostream& out, std::ostream& err);

}  // namespace kvr::batch
