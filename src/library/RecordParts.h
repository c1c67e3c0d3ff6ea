// The tag text of a record sorted out: the fields as they stand in the text, the free tags written one behind
// the other.
#pragma once

#include <optional>
#include <string_view>

#include "core/Text.h"

namespace kvr {

class RecordParts {
 public:
  // The free tags go to `room`. A tag takes no more than its piece and a comma; one without a piece takes its
  // name, its value and three marks.
  explicit RecordParts(char* room) : begin_(room), end_(room) {}

  // A trimmed piece "tag(value)", with the position of its first parenthesis.
  void AddPiece(std::string_view piece, std::size_t open) {
    if (piece.back() != ')' || !IsUsualName(piece.substr(0, open))) return AddOddPiece(piece, open);
    *end_++ = ',';
    Write(piece);
  }
  // One tag; the name in any case.
  void AddTag(std::string_view name, std::string_view value);

  // The last of each that came.
  std::optional<std::string_view> Name, NameExt, Category;
  std::string_view Tags() const { return {begin_, static_cast<std::size_t>(end_ - begin_)}; }

 private:
  // Most tag names are short and in lower case, and no field's; such a tag is copied whole.
  static bool IsUsualName(std::string_view name) {
    if (name.empty() || name.size() > fold::kShortName) return false;
    const fold::NameWords words = fold::LoadName(name);
    const bool isField = name == "name" || name == "nameext" || name == "cat";
    return words.IsAscii() && fold::Lowered(words) == words && !isField;
  }
  void AddOddPiece(std::string_view piece, std::size_t open);
  void Write(std::string_view text) { end_ += text.copy(end_, text.size()); }

  char* begin_;
  char* end_;
};

}  // namespace kvr
