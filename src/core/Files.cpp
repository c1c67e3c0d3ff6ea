// Path text into native paths, and reading, listing and deleting. Writing whole files is in FilesWrite.cpp.
#include "core/Files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/FileHandle.h"
#include "core/Text.h"
#include "core/modTools.h"

namespace kvr::Files {

namespace fs = std::filesystem;

namespace {

// No file of ours comes near; what is larger would only take the machine's memory.
constexpr std::size_t kLargestFile = std::size_t{1} << 30;

bool Exists(const std::string& native) {
  struct stat info {};
  return ::lstat(native.c_str(), &info) == 0;
}

// Calls f(name) for each name in the folder but those that begin with a dot.
template <class F>
void ForEachName(const std::string& folder, F&& f) {
  DIR* handle = ::opendir(folder.c_str());
  if (!handle) return;
  while (const dirent* entry = ::readdir(handle)) {
    if (entry->d_name[0] != '.') f(std::string_view(entry->d_name));
  }
  ::closedir(handle);
}

// The name in the folder that differs from `part` in case only; the first in binary order if there are
// several, "" if there is none.
std::string NameInAnyCase(const std::string& folder, std::string_view part) {
  std::string found;
  ForEachName(folder.empty() ? "." : folder, [&](std::string_view name) {
    if (EqualNoCase(name, part) && (found.empty() || name < found)) found = name;
  });
  return found;
}

// Walks the path from its start; from the first part that is there in no spelling on, it stays as it is.
std::string InAnyCase(std::string_view native) {
  std::string walked;
  std::size_t position = 0;
  while (position < native.size()) {
    const std::size_t slash = native.find('/', position);
    const std::string_view part = native.substr(position, slash - position);
    const std::size_t folderLength = walked.size();
    walked.append(part);
    if (!part.empty() && !Exists(walked)) {
      const std::string other = NameInAnyCase(walked.substr(0, folderLength), part);
      if (other.empty()) return walked.append(native.substr(position + part.size()));
      walked.replace(folderLength, npos, other);
    }
    if (slash == npos) break;
    walked += '/';
    position = slash + 1;
  }
  return walked;
}

// A "*" stands for any text, a "?" for one character; both texts are lower-cased.
bool FitsPattern(std::string_view name, std::string_view pattern) {
  std::size_t n = 0, p = 0, star = npos, retry = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      retry = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      const bool anyCharacter = pattern[p] == '?';
      ++p;
      ++n;
      while (anyCharacter && n < name.size() && (name[n] & 0xC0) == 0x80) ++n;
    } else if (star != npos) {
      p = star + 1;
      n = ++retry;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == npos;
}

std::vector<std::string> ListNames(std::string_view folder, mode_t kind, std::string_view pattern) {
  std::string native = Native(folder).string();
  std::vector<std::string> names;
  if (native.empty()) return names;
  if (native.back() != '/') native += '/';
  const std::string lowerPattern = LCase(pattern);
  ForEachName(native, [&](std::string_view name) {
    // A backslash in a name cannot be told in path text.
    if (name.find('\\') != npos || !FitsPattern(LCase(name), lowerPattern)) return;
    struct stat info {};
    const std::string path = native + std::string(name);
    if (::stat(path.c_str(), &info) == 0 && (info.st_mode & S_IFMT) == kind) names.emplace_back(name);
  });
  // Names that differ in case only would else come in the folder's own order.
  std::sort(names.begin(), names.end());
  modTools::SortStringArray(names, true);
  return names;
}

// Reads to the end, or to `mostBytes`; false with the reason in errno.
bool ReadAll(int fd, std::string& bytes, std::size_t mostBytes) {
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = ::read(fd, bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
    // The file has grown since its size was asked for.
    if (filled == bytes.size() && filled < mostBytes) bytes.resize(std::min(mostBytes, filled * 2));
  }
  bytes.resize(filled);
  return true;
}

}  // namespace

fs::path Native(std::string_view pathText) {
  // The system would cut the path at a NUL and so reach another file; no file has the empty path.
  if (pathText.find('\0') != npos) return {};
  std::string native(pathText);
  std::replace(native.begin(), native.end(), '\\', '/');
  if (native.empty() || Exists(native)) return native;
  return InAnyCase(native);
}

std::string PathText(const fs::path& native) {
  std::string text = native.string();
  std::replace(text.begin(), text.end(), '/', '\\');
  return text;
}

PathParts SplitPath(std::string_view pathText) {
  const std::size_t backslash = pathText.rfind('\\');
  if (backslash == npos) return {{}, pathText};
  return {pathText.substr(0, backslash + 1), pathText.substr(backslash + 1)};
}

std::string LowerExtension(std::string_view pathText) {
  const std::string_view name = SplitPath(pathText).name;
  const std::size_t point = name.rfind('.');
  return point == npos ? std::string() : LCase(name.substr(point));
}

bool FileExists(std::string_view pathText) {
  struct stat info {};
  return ::stat(Native(pathText).c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

bool FolderExists(std::string_view pathText, bool createIt) {
  const fs::path native = Native(pathText);
  if (native.empty()) return false;
  std::error_code error;
  if (createIt) fs::create_directories(native, error);
  return fs::is_directory(native, error);
}

std::optional<std::string> ReadWhole(std::string_view pathText, std::string* why, std::size_t mostBytes) {
  const auto fail = [why](std::string reason) {
    if (why) *why = std::move(reason);
    return std::nullopt;
  };
  // Without O_NONBLOCK the opening of a pipe would wait for ever.
  FileHandle file(::open(Native(pathText).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat info {};
  if (!file || ::fstat(file.Fd(), &info) != 0) return fail(SystemWords(errno));
  if (S_ISDIR(info.st_mode)) return fail(SystemWords(EISDIR));
  if (!S_ISREG(info.st_mode)) return fail("It is no regular file");
  const auto size = static_cast<std::size_t>(info.st_size);
  if (size > kLargestFile) return fail(SystemWords(EFBIG));
  mostBytes = std::min(mostBytes, kLargestFile);
  std::string bytes;
  // One byte more than the size: the read that finds the end needs room to find nothing in.
  bytes.resize(std::min(mostBytes, size + 1));
  if (!ReadAll(file.Fd(), bytes, mostBytes)) return fail(SystemWords(errno));
  return bytes;
}

Outcome Delete(std::string_view pathText) {
  return {::unlink(Native(pathText).c_str()) == 0 ? std::string() : SystemWords(errno)};
}

std::vector<std::string> ListSubfolders(std::string_view folder) {
  return ListNames(folder, S_IFDIR, "*");
}

std::vector<std::string> ListFiles(std::string_view folder, std::string_view pattern) {
  return ListNames(folder, S_IFREG, pattern);
}

}  // namespace kvr::Files
