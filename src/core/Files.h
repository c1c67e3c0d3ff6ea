// The only door between path text and the file system.
//
// The engine's path text uses backslashes and may come from another machine. This module turns it into a
// native path when it opens, lists, writes or deletes. A name is looked for exactly first and then without
// regard to case, part by part, so data made elsewhere loads on a file system that minds case.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvr::Files {

// What a file operation came to: empty `error` for success, else words for a person ("No space left on
// device").
struct Outcome {
  std::string error;
  explicit operator bool() const { return error.empty(); }
};

// A text with a NUL in it gives the empty path, which no operation takes.
std::filesystem::path Native(std::string_view pathText);
// A native path as path text: slashes become backslashes.
std::string PathText(const std::filesystem::path& native);

// Splits at the last backslash: the folder keeps it; without one the folder is "".
struct PathParts {
  std::string_view folder, name;
};
PathParts SplitPath(std::string_view pathText);
// The extension with its point, lower-cased; "" if none.
std::string LowerExtension(std::string_view pathText);

// False for anything that is no regular file, and for any error.
bool FileExists(std::string_view pathText);
bool FolderExists(std::string_view pathText, bool createIt);

// The bytes, at most the first `mostBytes`; nullopt when the file is missing, no regular file, above 1 GB or
// cannot be read (the reason in `why` when given).
std::optional<std::string> ReadWhole(std::string_view pathText, std::string* why = nullptr,
                                     std::size_t mostBytes = std::string::npos);
// Writes beside the file, flushes to disk, renames over it: after any failure the old file stands whole. With
// `keepVersions` above 0 the former file becomes NAME.bak1, and older ones move on to at most that number. An
// existing file keeps its rights; behind a symbolic link the file it names is written. A file or folder that
// nobody may write is an error.
Outcome WriteWhole(std::string_view pathText, std::string_view bytes, int keepVersions = 0);
// With CR LF behind it.
Outcome AppendLine(std::string_view pathText, std::string_view line);
Outcome Delete(std::string_view pathText);
// A new empty file "~xxxxxxxx.tmp" in the folder; "" when none can be made.
std::string NewTemporaryFile(std::string_view folder);

// Names sorted without regard to case; the pattern ("*.kdf") ignores case; dot files are skipped.
std::vector<std::string> ListSubfolders(std::string_view folder);
std::vector<std::string> ListFiles(std::string_view folder, std::string_view pattern);

}  // namespace kvr::Files
