// An open file of the system, closed at the end of its lifetime. Inside of the file module only.
#pragma once

#include <unistd.h>

#include <string>
#include <system_error>
#include <utility>

namespace kvr::Files {

class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int fd) : fd_(fd) {}
  FileHandle(FileHandle&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileHandle& operator=(FileHandle&&) = delete;
  ~FileHandle() { Close(); }

  explicit operator bool() const { return fd_ >= 0; }
  int Fd() const { return fd_; }
  // Some systems report a full disk only here; false with the reason in errno.
  bool Close() {
    const int fd = std::exchange(fd_, -1);
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_ = -1;
};

// The system's own words for an error number.
inline std::string SystemWords(int errorNumber) {
  return std::generic_category().message(errorNumber);
}

}  // namespace kvr::Files
