// Writing: whole files that replace the old one in a single step, temporary files, and single lines.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <random>

#include "core/FileHandle.h"
#include "core/Files.h"
#include "core/Text.h"

namespace kvr::Files {

namespace fs = std::filesystem;

namespace {

constexpr int kMostLinks = 40;
constexpr int kMostNames = 100;

// The file behind symbolic links, which may not be there yet; a link keeps being a link.
fs::path BehindLinks(fs::path path) {
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i) {
    const fs::path target = fs::read_symlink(path, error);
    if (error) break;
    path = target.is_absolute() ? target : path.parent_path() / target;
  }
  return path;
}

fs::path FolderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// Whoever has all rights could write where nobody may; the mark of a read-only file or folder holds for them
// too.
bool NobodyMayWrite(const struct stat& info) {
  return (info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

// 0 if the file may be replaced by a new one, else the error number. `former` is filled if there is a file.
int WhyNotWritable(const fs::path& file, std::optional<struct stat>& former) {
  if (file.empty()) return ENOENT;
  struct stat info {};
  if (::stat(FolderOf(file).c_str(), &info) != 0) return errno;
  if (NobodyMayWrite(info)) return EACCES;
  if (::stat(file.c_str(), &info) != 0) return errno == ENOENT ? 0 : errno;
  if (S_ISDIR(info.st_mode)) return EISDIR;
  if (!S_ISREG(info.st_mode)) return EINVAL;
  if (NobodyMayWrite(info)) return EACCES;
  if (::access(file.c_str(), W_OK) != 0) return errno;
  former = info;
  return 0;
}

struct Temporary {
  FileHandle handle;
  fs::path path;
};

// A new file "~xxxxxxxx.tmp" with the usual rights; without a handle, the reason is in errno.
Temporary CreateTemporary(const fs::path& folder) {
  static std::minstd_rand random(std::random_device{}());
  for (int i = 0; i < kMostNames; ++i) {
    char name[24];
    std::snprintf(name, sizeof name, "~%08lx.tmp", static_cast<unsigned long>(random() & 0xFFFFFFFFu));
    const fs::path path = folder / name;
    FileHandle handle(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (handle || errno != EEXIST) return {std::move(handle), path};
  }
  return {FileHandle(), {}};
}

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(fd, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Rights and, where the system lets us, the owner of the file that is to be replaced.
bool TakeOverRights(int fd, const struct stat& former) {
  [[maybe_unused]] const int ignored = ::fchown(fd, former.st_uid, former.st_gid);
  return ::fchmod(fd, former.st_mode & 07777) == 0;
}

// NAME becomes NAME.bak1 and each older version one number more; NAME itself stays where it is.
bool MoveVersionsOn(const fs::path& file, int keepVersions) {
  const auto version = [&](int number) { return file.string() + ".bak" + std::to_string(number); };
  for (int number = keepVersions; number > 1; --number) {
    if (::rename(version(number - 1).c_str(), version(number).c_str()) != 0 && errno != ENOENT) return false;
  }
  if (::unlink(version(1).c_str()) != 0 && errno != ENOENT) return false;
  if (::link(file.c_str(), version(1).c_str()) == 0) return true;
  std::error_code error;
  fs::copy_file(file, version(1), error);
  errno = error.value();
  return !error;
}

// The name is safe only when the folder has reached the disk; a folder that cannot be flushed does no harm.
void FlushFolder(const fs::path& folder) {
  FileHandle handle(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (handle) ::fsync(handle.Fd());
}

}  // namespace

Outcome WriteWhole(std::string_view pathText, std::string_view bytes, int keepVersions) {
  const fs::path file = BehindLinks(Native(pathText));
  std::optional<struct stat> former;
  if (const int reason = WhyNotWritable(file, former)) return {SystemWords(reason)};
  Temporary temporary = CreateTemporary(FolderOf(file));
  if (!temporary.handle) return {SystemWords(errno)};

  const int fd = temporary.handle.Fd();
  const bool written = WriteAll(fd, bytes) && (!former || TakeOverRights(fd, *former)) && ::fsync(fd) == 0 &&
                       temporary.handle.Close() &&
                       (!former || keepVersions <= 0 || MoveVersionsOn(file, keepVersions)) &&
                       ::rename(temporary.path.c_str(), file.c_str()) == 0;
  if (!written) {
    Outcome failure{SystemWords(errno)};
    ::unlink(temporary.path.c_str());
    return failure;
  }
  FlushFolder(FolderOf(file));
  return {};
}

Outcome AppendLine(std::string_view pathText, std::string_view line) {
  const int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK;
  FileHandle handle(::open(Native(pathText).c_str(), flags, 0666));
  if (!handle) return {SystemWords(errno)};
  std::string whole(line);
  whole += "\r\n";
  if (!WriteAll(handle.Fd(), whole) || !handle.Close()) return {SystemWords(errno)};
  return {};
}

std::string NewTemporaryFile(std::string_view folder) {
  const fs::path native = Native(folder);
  if (native.empty()) return {};
  const Temporary temporary = CreateTemporary(native);
  if (!temporary.handle) return {};
  std::string path(folder);
  if (path.back() != '\\') path += '\\';
  return path + temporary.path.filename().string();
}

}  // namespace kvr::Files
