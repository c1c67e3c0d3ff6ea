// The free tag list of a record: ",tag(value),tag(value)" with fast look-ups.
//
// A look-up means the plain text search of the grammar: the first ",tag(" anywhere in the text, even inside
// another tag's value. The text is the truth; an index over it is made at the first look-up and kept in step,
// so that the answer is the one that the search would give.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvr {

class TagText {
 public:
  const std::string& Text() const { return text_; }
  bool Empty() const { return text_.empty(); }
  // The lower-cased text, position for position.
  const std::string& LowerText() const;
  // Goes up with every change of the text.
  std::uint32_t Revision() const { return revision_; }

  void Assign(std::string text);
  // Adds ",name(value)" at the end, with no test whether the tag is there.
  void Append(std::string_view name, std::string_view value);

  // The trimmed value of the first match, in any case of letters: nullopt when there is no such tag, "" when
  // its closing parenthesis is missing.
  std::optional<std::string_view> Find(std::string_view tag) const;
  // "" when there is no such tag.
  std::string_view Value(std::string_view tag) const { return Find(tag).value_or(std::string_view{}); }

  // Replaces what stands between the parentheses of the first match, or appends the tag with its name as
  // given. Without a closing parenthesis nothing changes. True if the text is another one now.
  bool Set(std::string_view tag, std::string_view value);
  // Cuts the first match out, with its leading comma; nothing without a closing parenthesis.
  bool Delete(std::string_view tag);

 private:
  static constexpr std::uint32_t kUnclosed = 0xFFFFFFFF;

  // One ",name(" of the text; its value begins behind the "(".
  struct Entry {
    std::uint32_t hash;  // of the lower-cased name
    std::uint32_t namePos;
    std::uint32_t nameLength;
    std::uint32_t valueLength;  // up to the closing ")"; kUnclosed when it is missing
    std::uint32_t ValuePos() const { return namePos + nameLength + 1; }
  };
  // Where the first match of a tag stands.
  struct Place {
    std::size_t comma, valuePos, valueLength;  // the length is npos without a closing parenthesis
  };

  std::optional<Place> Locate(std::string_view tag) const;
  std::optional<Place> Search(std::string_view tag) const;
  const Entry* FindEntry(std::string_view tag) const;
  void BuildIndex() const;
  void CollectEntries() const;
  void InsertSlot(std::uint32_t entry) const;
  void FillSlots() const;
  std::string_view NameOf(const Entry& entry) const {
    return {text_.data() + entry.namePos, entry.nameLength};
  }
  bool KeepsIndex(const Place& place, std::string_view value) const;
  void MoveEntries(const Place& place, std::size_t newLength);
  void Changed();

  std::string text_;
  std::uint32_t revision_ = 0;
  mutable bool indexed_ = false;
  mutable std::vector<Entry> entries_;  // in text order
  mutable std::vector<std::uint32_t>
      slots_;  // hash table of positions in entries_ from 1; the first of a name only
  mutable std::string lower_;
  mutable std::uint32_t lowerRevision_ = 0xFFFFFFFF;
};

}  // namespace kvr
