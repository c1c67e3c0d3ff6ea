// Reads data files as the library does, and tells their author what cannot have been meant: lines that lose
// something, references that nothing defines, formulas with faults, traits that bring themselves.
//
// The files are read together with a data set, since most references lead out of a file. What is found is
// told for the files asked for only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "library/KVRSystem.h"

namespace kvr::Lint {

struct Finding {
  std::string file;         // as it was asked for
  std::size_t line = 0;     // from 1; 0 when it is about the file as a whole
  std::string what, found;  // found may be ""
};
// "FILE:LINE: what (found)"
std::string Text(const Finding& finding);

// A file asked for: the name that messages give it, and its path text.
struct File {
  std::string shownName, path;
};
// Empties the library, reads the files of the set in their order, then those asked for that the set does not
// hold, and checks them against all of it. The findings stand by file, then by line. `dataSet` is the path
// text or name of a set that exists, or "" for none.
std::vector<Finding> Run(KVRSystem& system, std::string_view dataSet, const std::vector<File>& files);

}  // namespace kvr::Lint
