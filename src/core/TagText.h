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

#include "core/CaseFold.h"

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
  std::string_view Value(std::string_view tag) const;

  // Replaces what stands between the parentheses of the first match, or appends the tag with its name as
  // given. Without a closing parenthesis nothing changes. True if the text is another one now.
  bool Set(std::string_view tag, std::string_view value);
  // Cuts the first match out, with its leading comma; nothing without a closing parenthesis.
  bool Delete(std::string_view tag);

 private:
  static constexpr std::uint32_t kUnclosed = 0xFFFFFFFF;

  struct Entry;
  // What a name is found by: its bytes where it is short and ASCII, else a hash.
  struct NameKey {
    explicit NameKey(std::string_view name);
    explicit NameKey(const Entry& entry);

    fold::NameWords words;
    std::uint32_t hash;
    bool whole;
  };
  // One ",name(" of the text and its value, which begins behind the "(" and the blanks there.
  struct Entry {
    Entry(std::string_view name, std::size_t namePos);
    std::size_t BehindOpen() const { return std::size_t{namePos} + nameSize + 1; }

    fold::NameWords words;  // as in the key, the bytes lower-cased
    std::uint32_t nameSize;
    std::uint32_t namePos;
    std::uint32_t valuePos;
    std::uint32_t valueLength;  // without the blanks at its end; kUnclosed when the closing ")" is missing
  };
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t entry = 0;  // from 1; 0 for a free slot
  };
  // Where the first match of a tag stands.
  struct Place {
    std::size_t comma, valuePos, valueLength;  // the length is npos without a closing parenthesis
  };

  std::optional<Place> Locate(std::string_view tag) const;
  bool SearchedOnly(std::string_view tag) const;
  std::optional<Place> Search(std::string_view tag) const;
  const Entry* FindEntry(std::string_view tag) const;
  void BuildIndex() const;
  void CollectEntries() const;
  void InsertSlot(std::uint32_t entry) const;
  void FillSlots() const;
  std::string_view NameOf(const Entry& entry) const {
    return std::string_view(text_).substr(entry.namePos, entry.nameSize);
  }
  std::string_view ValueOf(const Entry& entry) const {
    if (entry.valueLength == kUnclosed) return {};
    return {text_.data() + entry.valuePos, entry.valueLength};
  }
  Slot& FindSlot(const NameKey& key, std::string_view name) const;
  void TrimValue(Entry& entry, std::size_t close) const;
  bool KeepsIndex(const Place& place, std::string_view value) const;
  void MoveEntries(const Place& place, std::size_t newLength);
  void Changed(bool keepsIndex = false);

  std::string text_;
  std::uint32_t revision_ = 0;
  mutable std::vector<Entry> entries_;  // in text order
  // There is no index while this is empty.
  mutable std::vector<Slot> slots_;  // hash table over entries_; the first of a name only
  mutable std::string lower_;
  mutable std::uint32_t lowerRevision_ = 0xFFFFFFFF;
};

}  // namespace kvr
