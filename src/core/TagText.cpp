// The index over a tag list. A tag is by definition the first ",tag(" that a text search meets, nested or
// not. A name without "," and "(" can only match where a "(" has a comma before it with neither mark between,
// so one walk over the text finds everything that such a search could. The rare other names are searched for.
#include "core/TagText.h"

#include <algorithm>
#include <bit>

#include "core/Text.h"
#include "core/modTags.h"

namespace kvr {
namespace {

constexpr std::size_t kLargestIndexed = 0xFFFFFF00;

bool HasParens(std::string_view text) {
  return text.find_first_of("()") != npos;
}
bool HasComma(std::string_view text) {
  return text.find(',') != npos;
}

}  // namespace

const std::string& TagText::LowerText() const {
  if (lowerRevision_ != revision_) {
    lower_ = LCase(text_);
    lowerRevision_ = revision_;
  }
  return lower_;
}

void TagText::Changed() {
  ++revision_;
  indexed_ = false;
}

void TagText::Assign(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  Changed();
}

void TagText::Append(std::string_view name, std::string_view value) {
  const std::size_t comma = text_.size();
  std::string item;  // made apart, since name and value may lie in the text
  item.reserve(name.size() + value.size() + 3);
  item.append(1, ',').append(name).append(1, '(').append(value).append(1, ')');
  const bool keepsIndex = indexed_ && !HasParens(name) && !HasComma(name) && !HasParens(value) &&
                          comma + item.size() < kLargestIndexed;
  const Entry entry{static_cast<std::uint32_t>(HashNoCase(name)), static_cast<std::uint32_t>(comma + 1),
                    static_cast<std::uint32_t>(name.size()), static_cast<std::uint32_t>(value.size())};
  text_ += item;
  Changed();
  if (!keepsIndex) return;
  entries_.push_back(entry);
  if (entries_.size() * 2 > slots_.size())
    FillSlots();
  else
    InsertSlot(static_cast<std::uint32_t>(entries_.size()));
  indexed_ = true;
}

std::optional<std::string_view> TagText::Find(std::string_view tag) const {
  const std::optional<Place> place = Locate(tag);
  if (!place) return std::nullopt;
  if (place->valueLength == npos) return std::string_view();
  return Trim({text_.data() + place->valuePos, place->valueLength});
}

bool TagText::Set(std::string_view tag, std::string_view value) {
  const std::optional<Place> place = Locate(tag);
  if (!place) {
    Append(tag, value);
    return true;
  }
  if (place->valueLength == npos) return false;
  if (std::string_view(text_).substr(place->valuePos, place->valueLength) == value) return false;
  const std::size_t newLength = value.size();
  const bool keepsIndex = KeepsIndex(*place, value);
  text_.replace(place->valuePos, place->valueLength, value);
  Changed();
  if (keepsIndex) MoveEntries(*place, newLength);
  return true;
}

bool TagText::Delete(std::string_view tag) {
  const std::optional<Place> place = Locate(tag);
  if (!place || place->valueLength == npos) return false;
  text_.erase(place->comma, place->valuePos + place->valueLength + 1 - place->comma);
  Changed();
  return true;
}

std::optional<TagText::Place> TagText::Locate(std::string_view tag) const {
  if (const Entry* entry = FindEntry(tag)) {
    const std::size_t length = entry->valueLength == kUnclosed ? npos : entry->valueLength;
    return Place{entry->namePos - 1u, entry->ValuePos(), length};
  }
  if (tag.find_first_of(",(") != npos || text_.size() >= kLargestIndexed) return Search(tag);
  return std::nullopt;
}

std::optional<TagText::Place> TagText::Search(std::string_view tag) const {
  const std::size_t comma = modTags::FindTag(tag, text_);
  if (comma == npos) return std::nullopt;
  const std::size_t valuePos = comma + tag.size() + 2;
  return Place{comma, valuePos, modTags::FindCloseParen(std::string_view(text_).substr(valuePos))};
}

const TagText::Entry* TagText::FindEntry(std::string_view tag) const {
  if (!indexed_) BuildIndex();
  if (slots_.empty()) return nullptr;
  const auto hash = static_cast<std::uint32_t>(HashNoCase(tag));
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash & mask; slots_[i] != 0; i = (i + 1) & mask) {
    const Entry& entry = entries_[slots_[i] - 1];
    if (entry.hash == hash && EqualNoCase(NameOf(entry), tag)) return &entry;
  }
  return nullptr;
}

void TagText::BuildIndex() const {
  entries_.clear();
  slots_.clear();
  if (text_.size() < kLargestIndexed) CollectEntries();
  if (!entries_.empty()) FillSlots();
  indexed_ = true;
}

void TagText::CollectEntries() const {
  constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;
  std::vector<std::uint32_t> open;  // the entries of the parentheses that are open
  std::size_t comma = npos;         // the last one with no "(" behind it
  for (std::size_t i = 0; i < text_.size(); ++i) {
    const char c = text_[i];
    if (c == ',') {
      comma = i;
    } else if (c == '(') {
      open.push_back(comma == npos ? kNoEntry : static_cast<std::uint32_t>(entries_.size()));
      if (comma == npos) continue;
      const std::string_view name(text_.data() + comma + 1, i - comma - 1);
      entries_.push_back({static_cast<std::uint32_t>(HashNoCase(name)), static_cast<std::uint32_t>(comma + 1),
                          static_cast<std::uint32_t>(name.size()), kUnclosed});
      comma = npos;
    } else if (c == ')' && !open.empty()) {
      if (open.back() != kNoEntry) {
        Entry& entry = entries_[open.back()];
        entry.valueLength = static_cast<std::uint32_t>(i) - entry.ValuePos();
      }
      open.pop_back();
    }
  }
}

// Enters the entry at this position (from 1), unless an earlier one has its name.
void TagText::InsertSlot(std::uint32_t entry) const {
  const Entry& added = entries_[entry - 1];
  const std::size_t mask = slots_.size() - 1;
  std::size_t i = added.hash & mask;
  for (; slots_[i] != 0; i = (i + 1) & mask) {
    const Entry& other = entries_[slots_[i] - 1];
    if (other.hash == added.hash && EqualNoCase(NameOf(other), NameOf(added))) return;
  }
  slots_[i] = entry;
}

void TagText::FillSlots() const {
  slots_.assign(std::bit_ceil(std::max<std::size_t>(entries_.size() * 2, 16)), 0);
  for (std::uint32_t entry = 1; entry <= entries_.size(); ++entry) InsertSlot(entry);
}

// A value without parentheses in place of another one moves what follows and changes nothing else, unless one
// of its commas would stand before a later "(" with no other comma between.
bool TagText::KeepsIndex(const Place& place, std::string_view value) const {
  const std::string_view old = std::string_view(text_).substr(place.valuePos, place.valueLength);
  if (HasParens(old) || HasParens(value) || text_.size() + value.size() >= kLargestIndexed) return false;
  const std::size_t behind = place.valuePos + place.valueLength + 1;
  return behind == text_.size() || text_[behind] == ',' || !(HasComma(old) || HasComma(value));
}

// Brings the entries into step with the new length of one value: those behind it move, and it and those
// around it become longer or shorter.
void TagText::MoveEntries(const Place& place, std::size_t newLength) {
  const auto growth =
      static_cast<std::uint32_t>(newLength - place.valueLength);  // may wrap, and so do the sums
  for (Entry& entry : entries_) {
    if (entry.namePos > place.valuePos)
      entry.namePos += growth;
    else if (entry.valueLength != kUnclosed && entry.ValuePos() + entry.valueLength >= place.valuePos)
      entry.valueLength += growth;
  }
  indexed_ = true;
}

}  // namespace kvr
