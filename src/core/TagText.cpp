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

bool HasComma(std::string_view text) {
  return text.find(',') != npos;
}
bool HasParens(std::string_view text) {
  return text.find('(') != npos || text.find(')') != npos;
}

// A name with one of these marks is found by search only.
bool HasNameMark(std::string_view tag) {
  if (tag.size() > fold::kShortName) return HasComma(tag) || HasParens(tag);
  const fold::NameWords words = fold::LoadName(tag);
  constexpr std::uint64_t kOtherBits = ~(fold::kOnes * (',' ^ '('));  // the marks differ in one bit
  return (fold::HasByte(words.first & kOtherBits, '(') | fold::HasByte(words.last & kOtherBits, '(')) != 0;
}

// Words that no short ASCII name has.
constexpr fold::NameWords kNoShortName = {fold::kHighBits, fold::kHighBits};

// The first slot of this hash whose entry is the wanted one, or the free one where that would stand. Kept in
// line, so that what is wanted stays in registers; a look-up takes half as long again without.
template <class Slot, class IsWanted>
[[gnu::always_inline]] inline Slot& Probe(std::vector<Slot>& slots, std::uint32_t hash, IsWanted&& isWanted) {
  const std::size_t mask = slots.size() - 1;
  std::size_t i = hash & mask;
  while (slots[i].entry != 0 && !(slots[i].hash == hash && isWanted(slots[i].entry))) i = (i + 1) & mask;
  return slots[i];
}

}  // namespace

const std::string& TagText::LowerText() const {
  if (lowerRevision_ != revision_) {
    lower_ = LCase(text_);
    lowerRevision_ = revision_;
  }
  return lower_;
}

void TagText::Changed(bool keepsIndex) {
  ++revision_;
  if (!keepsIndex) slots_.clear();
}

void TagText::Assign(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  Changed();
}

void TagText::Append(std::string_view name, std::string_view value) {
  const std::size_t comma = text_.size(), nameSize = name.size();
  std::string item;  // made apart, since name and value may lie in the text
  item.reserve(name.size() + value.size() + 3);
  item.append(1, ',').append(name).append(1, '(').append(value).append(1, ')');
  const bool keepsIndex = !slots_.empty() && !HasParens(name) && !HasComma(name) && !HasParens(value) &&
                          comma + item.size() < kLargestIndexed;
  text_ += item;
  Changed(keepsIndex);
  if (!keepsIndex) return;
  Entry& entry = entries_.emplace_back(std::string_view(text_).substr(comma + 1, nameSize), comma + 1);
  TrimValue(entry, text_.size() - 1);
  if (entries_.size() * 2 > slots_.size())
    FillSlots();
  else
    InsertSlot(static_cast<std::uint32_t>(entries_.size()));
}

std::string_view TagText::Value(std::string_view tag) const {
  if (const Entry* entry = FindEntry(tag)) return ValueOf(*entry);
  return SearchedOnly(tag) ? modTags::GetTagValue(tag, text_) : std::string_view();
}

std::optional<std::string_view> TagText::Find(std::string_view tag) const {
  if (const Entry* entry = FindEntry(tag)) return ValueOf(*entry);
  if (!SearchedOnly(tag) || modTags::FindTag(tag, text_) == npos) return std::nullopt;
  return modTags::GetTagValue(tag, text_);
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
  Changed(keepsIndex);
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

bool TagText::SearchedOnly(std::string_view tag) const {
  return HasNameMark(tag) || text_.size() >= kLargestIndexed;
}

std::optional<TagText::Place> TagText::Locate(std::string_view tag) const {
  if (const Entry* entry = FindEntry(tag)) {
    Place place{entry->namePos - 1u, entry->BehindOpen(), npos};
    if (entry->valueLength != kUnclosed)
      place.valueLength = text_.find(')', entry->valuePos + entry->valueLength) - place.valuePos;
    return place;
  }
  return SearchedOnly(tag) ? Search(tag) : std::nullopt;
}

std::optional<TagText::Place> TagText::Search(std::string_view tag) const {
  const std::size_t comma = modTags::FindTag(tag, text_);
  if (comma == npos) return std::nullopt;
  const std::size_t valuePos = comma + tag.size() + 2;
  return Place{comma, valuePos, modTags::FindCloseParen(std::string_view(text_).substr(valuePos))};
}

TagText::NameKey::NameKey(std::string_view name) : whole(name.size() <= fold::kShortName) {
  if (whole) words = fold::LoadName(name);
  whole = whole && words.IsAscii();
  if (!whole) words = {HashLongNoCase(name), fold::kHighBits};
  hash = static_cast<std::uint32_t>(fold::HashName(words, name.size()));
}

TagText::NameKey::NameKey(const Entry& entry)
    : words(entry.words),
      hash(static_cast<std::uint32_t>(fold::HashName(entry.words, entry.nameSize))),
      whole(entry.words.IsAscii()) {}

TagText::Entry::Entry(std::string_view name, std::size_t position)
    : nameSize(static_cast<std::uint32_t>(name.size())),
      namePos(static_cast<std::uint32_t>(position)),
      valuePos(namePos + nameSize + 1),
      valueLength(kUnclosed) {
  const NameKey key(name);
  words = key.whole ? fold::Lowered(key.words) : key.words;
}

// Gives an entry the value that ends at this ")".
void TagText::TrimValue(Entry& entry, std::size_t close) const {
  const std::size_t begin = entry.BehindOpen();
  const std::string_view value = Trim(std::string_view(text_).substr(begin, close - begin));
  entry.valuePos =
      static_cast<std::uint32_t>(value.empty() ? begin : std::size_t(value.data() - text_.data()));
  entry.valueLength = static_cast<std::uint32_t>(value.size());
}

// The slot of a name, or the free one where it would stand.
TagText::Slot& TagText::FindSlot(const NameKey& key, std::string_view name) const {
  return Probe(slots_, key.hash, [&](std::uint32_t position) {
    const Entry& entry = entries_[position - 1];
    if (entry.nameSize != name.size()) return false;
    if (key.whole) return entry.words == key.words || entry.words == fold::Lowered(key.words);
    return entry.words == key.words && (NameOf(entry) == name || EqualNoCase(NameOf(entry), name));
  });
}

// Nearly every tag is short and ASCII, and then its words are all that there is to compare.
inline const TagText::Entry* TagText::FindEntry(std::string_view tag) const {
  if (slots_.empty()) BuildIndex();
  std::uint32_t position = 0;
  const fold::NameWords words = tag.size() <= fold::kShortName ? fold::LoadName(tag) : kNoShortName;
  if (words.IsAscii()) {
    const auto hash = static_cast<std::uint32_t>(fold::HashName(words, tag.size()));
    position = Probe(slots_, hash, [&](std::uint32_t at) {
                 const Entry& entry = entries_[at - 1];
                 return entry.nameSize == tag.size() &&
                        (entry.words == words || entry.words == fold::Lowered(words));
               }).entry;
  } else {
    position = FindSlot(NameKey(tag), tag).entry;
  }
  return position != 0 ? &entries_[position - 1] : nullptr;
}

void TagText::BuildIndex() const {
  entries_.clear();
  if (text_.size() < kLargestIndexed) CollectEntries();
  FillSlots();
}

void TagText::CollectEntries() const {
  constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;
  std::vector<std::uint32_t> open;  // the entries of the parentheses that are open
  std::size_t comma = npos;         // the last one with no "(" behind it
  open.reserve(16);
  entries_.reserve(std::min<std::size_t>(text_.size() / 16, 64));
  for (std::size_t i = 0; i < text_.size(); ++i) {
    const char c = text_[i];
    if (c == ',') {
      comma = i;
    } else if (c == '(') {
      open.push_back(comma == npos ? kNoEntry : static_cast<std::uint32_t>(entries_.size()));
      if (comma == npos) continue;
      entries_.emplace_back(std::string_view(text_).substr(comma + 1, i - comma - 1), comma + 1);
      comma = npos;
    } else if (c == ')' && !open.empty()) {
      if (open.back() != kNoEntry) TrimValue(entries_[open.back()], i);
      open.pop_back();
    }
  }
}

// Enters the entry at this position (from 1), unless an earlier one has its name.
void TagText::InsertSlot(std::uint32_t entry) const {
  const NameKey key(entries_[entry - 1]);
  Slot& slot = FindSlot(key, NameOf(entries_[entry - 1]));
  if (slot.entry == 0) slot = {key.hash, entry};
}

void TagText::FillSlots() const {
  slots_.assign(std::bit_ceil(std::max<std::size_t>(entries_.size() * 2, 16)), Slot());
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

// Brings the entries into step with the new length of one value: those behind it move, and those around it
// become longer or shorter.
void TagText::MoveEntries(const Place& place, std::size_t newLength) {
  const auto growth =
      static_cast<std::uint32_t>(newLength - place.valueLength);  // may wrap, and so do the sums
  for (Entry& entry : entries_) {
    if (entry.namePos > place.valuePos) {
      entry.namePos += growth;
      entry.valuePos += growth;
    } else if (entry.BehindOpen() == place.valuePos) {
      TrimValue(entry, place.valuePos + newLength);
    } else if (entry.valueLength != kUnclosed && entry.valuePos + entry.valueLength > place.valuePos) {
      entry.valueLength += growth;
    }
  }
}

}  // namespace kvr
