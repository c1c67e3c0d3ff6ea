// The tag text of a record sorted out: the fields as they stand in the text, the free tags written one behind
// the other.
#pragma once

#include <optional>
#include <string_view>

namespace kvr {

class RecordParts {
 public:
  // The free tags go to `room`. A tag takes no more than its piece and a comma; one without a piece takes its
  // name, its value and three marks.
  explicit RecordParts(char* room) : begin_(room), end_(room) {}

  // A trimmed piece "tag(value)", with the position of its first parenthesis.
  void AddPiece(std::string_view piece, std::size_t open);
  // One tag; the name in any case.
  void AddTag(std::string_view name, std::string_view value);

  // The last of each that came.
  std::optional<std::string_view> Name, NameExt, Category;
  std::string_view Tags() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

 private:
  void Write(std::string_view text) { end_ += text.copy(end_, text.size()); }

  char* begin_;
  char* end_;
};

}  // namespace kvr
