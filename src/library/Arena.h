// Memory for many small things that come one after the other and go together: taken from the front of large
// pieces, and given back all at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace kvr {

class Arena {
 public:
  Arena() = default;
  Arena(Arena&& other) noexcept { Swap(other); }
  Arena& operator=(Arena&& other) noexcept {
    Swap(other);
    return *this;
  }

  // At least `size` bytes to write to. They are kept from the next use of the arena only as far as they are
  // taken.
  char* Room(std::size_t size) {
    if (size > static_cast<std::size_t>(end_ - free_)) AddPiece(size);
    return free_;
  }
  void Take(std::size_t size) { free_ += size; }

  // Aligned for every ordinary type.
  void* Allocate(std::size_t size) {
    constexpr std::size_t kAlign = alignof(std::max_align_t);
    char* room = Room(size + kAlign);
    void* aligned = room + (-reinterpret_cast<std::uintptr_t>(room) & (kAlign - 1));
    free_ = static_cast<char*>(aligned) + size;
    return aligned;
  }
  // What is given back by itself stays unused until all is.
  void Free(void*) {}

  std::string_view Copy(std::string_view text) {
    char* room = Room(text.size());
    Take(text.copy(room, text.size()));
    return {room, text.size()};
  }
  // A text with another one behind it. The last text that was made here grows in its place.
  std::string_view Append(std::string_view text, std::string_view more) {
    const bool isLast = text.data() + text.size() == free_ && !text.empty();
    if (!isLast || more.size() > static_cast<std::size_t>(end_ - free_)) {
      Room(text.size() + more.size());
      text = Copy(text);
    }
    Copy(more);
    return {text.data(), text.size() + more.size()};
  }

  // Gives a text back that is no longer needed, if it is the last that was made here.
  void Drop(std::string_view text) {
    if (!text.empty() && text.data() + text.size() == free_) free_ -= text.size();
  }

  void FreeAll() {
    pieces_.clear();
    free_ = end_ = nullptr;
  }

 private:
  static constexpr std::size_t kFirstPiece = 4096, kLargestPiece = 256 * 1024;

  void Swap(Arena& other) noexcept {
    pieces_.swap(other.pieces_);
    std::swap(free_, other.free_);
    std::swap(end_, other.end_);
  }
  void AddPiece(std::size_t size) {
    const std::size_t usual =
        std::min(kLargestPiece, kFirstPiece << std::min<std::size_t>(pieces_.size(), 6));
    size = std::max(size, usual);
    pieces_.push_back(std::make_unique_for_overwrite<char[]>(size));
    free_ = pieces_.back().get();
    end_ = free_ + size;
  }

  std::vector<std::unique_ptr<char[]>> pieces_;
  char* free_ = nullptr;
  char* end_ = nullptr;
};

}  // namespace kvr
