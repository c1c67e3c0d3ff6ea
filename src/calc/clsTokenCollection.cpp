// The solver's cache. Looking up is one hash and one comparison; dropping what reads a trait goes by the rows
// of letter pairs, so that its cost hardly shows beside the calculation that follows it.
#include "calc/clsTokenCollection.h"

#include <algorithm>
#include <bit>

#include "core/KVRError.h"
#include "core/Text.h"

namespace kvr {
namespace {

constexpr std::size_t kWordBits = 64;

std::uint32_t TagOf(std::uint64_t hash) {
  return static_cast<std::uint32_t>(hash >> 32);
}

std::uint8_t PairKind(char first, char second) {
  const auto a = static_cast<unsigned char>(first), b = static_cast<unsigned char>(second);
  return static_cast<std::uint8_t>((a * 37u + b * 11u) ^ (b >> 3));
}

// Whether the text holds the name. "st:" is the prefix of every reference to an attribute, so it says nothing
// about an attribute that is itself called "st".
bool Mentions(std::string_view text, std::string_view lcaseName) {
  const bool isPrefixWord = lcaseName == "st";
  for (std::size_t at = FindNoCase(text, lcaseName); at != npos; at = FindNoCase(text, lcaseName, at + 1))
    if (!isPrefixWord || at + 2 >= text.size() || text[at + 2] != ':') return true;
  return false;
}

}  // namespace

// The place of the text, or the free place where it would go.
std::size_t clsTokenCollection::FindPlace(std::string_view text, std::uint64_t hash) const {
  const std::size_t mask = table_.size() - 1;
  std::size_t at = hash & mask;
  while (table_[at].slot != kNone &&
         (table_[at].tag != TagOf(hash) || !EqualNoCase(slots_[table_[at].slot].token.Token, text)))
    at = (at + 1) & mask;
  return at;
}

const clsToken* clsTokenCollection::Item(std::string_view text) const {
  if (live_ > 0) {
    const Place place = table_[FindPlace(text, HashNoCase(text))];
    if (place.slot != kNone) {
      error_ = 0;
      return &slots_[place.slot].token;
    }
  }
  error_ = static_cast<int>(ErrorNumber::MissingKey);
  return nullptr;
}

void clsTokenCollection::Add(std::string_view text, double value, std::int32_t referenceKey) {
  error_ = 0;
  if ((live_ + 1) * 2 > table_.size()) Grow();
  const std::uint64_t hash = HashNoCase(text);
  const std::size_t place = FindPlace(text, hash);
  if (table_[place].slot != kNone) return;
  const std::uint32_t index = TakeSlot();
  Slot& slot = slots_[index];
  slot.token.Token = text;
  slot.token.Value = value;
  slot.token.ReferenceKey = referenceKey;
  slot.hash = hash;
  slot.live = true;
  table_[place] = {index, TagOf(hash)};
  ++live_;
  MarkPairs(index, true);
  if (referenceKey == 0) return;
  std::uint32_t& first = firstOfKey_.try_emplace(referenceKey, kNone).first->second;
  slot.nextOfKey = first;
  first = index;
}

bool clsTokenCollection::Remove(std::string_view text) {
  const clsToken* token = Item(text);
  if (!token) return false;
  DropSlot(table_[FindPlace(text, HashNoCase(text))].slot);
  return true;
}

void clsTokenCollection::Clear() {
  std::ranges::fill(table_, Place{});
  for (auto& row : pairs_) std::ranges::fill(row, 0);
  firstOfKey_.clear();
  free_.clear();
  for (std::size_t i = 0; i < used_; ++i) slots_[i].live = false;
  used_ = 0;
  live_ = 0;
  error_ = 0;
}

void clsTokenCollection::ClearTokensForItem(std::int32_t idKey, std::string_view lcaseName,
                                            std::string_view lcaseSymbol) {
  for (auto first = firstOfKey_.find(idKey); first != firstOfKey_.end(); first = firstOfKey_.find(idKey))
    DropSlot(first->second);
  DropTokensWithText(lcaseName);
  if (lcaseSymbol != lcaseName) DropTokensWithText(lcaseSymbol);
}

void clsTokenCollection::DropTokensWithText(std::string_view lcaseText) {
  if (lcaseText.empty()) return;
  // From the end, where names that begin alike differ.
  std::array<std::uint8_t, 32> kinds;
  std::size_t count = 0;
  for (std::size_t i = lcaseText.size() - 1; i > 0 && count < kinds.size(); --i)
    kinds[count++] = PairKind(lcaseText[i - 1], lcaseText[i]);
  const std::size_t words = (used_ + kWordBits - 1) / kWordBits;
  for (std::size_t word = 0; word < words; ++word) {
    std::uint64_t candidates = ~std::uint64_t{0};
    for (std::size_t i = 0; i < count && candidates != 0; ++i) candidates &= pairs_[kinds[i]][word];
    for (; candidates != 0; candidates &= candidates - 1) {
      const std::size_t index = word * kWordBits + static_cast<std::size_t>(std::countr_zero(candidates));
      if (index < used_ && slots_[index].live && Mentions(slots_[index].token.Token, lcaseText))
        DropSlot(static_cast<std::uint32_t>(index));
    }
  }
}

void clsTokenCollection::Grow() {
  table_.assign(std::max<std::size_t>(64, table_.size() * 2), Place{});
  for (std::size_t i = 0; i < used_; ++i) {
    if (!slots_[i].live) continue;
    const std::size_t mask = table_.size() - 1;
    std::size_t at = slots_[i].hash & mask;
    while (table_[at].slot != kNone) at = (at + 1) & mask;
    table_[at] = {static_cast<std::uint32_t>(i), TagOf(slots_[i].hash)};
  }
}

std::uint32_t clsTokenCollection::TakeSlot() {
  if (!free_.empty()) {
    const std::uint32_t index = free_.back();
    free_.pop_back();
    return index;
  }
  if (used_ == slots_.size()) {
    slots_.emplace_back();
    if (slots_.size() > pairs_[0].size() * kWordBits)
      for (auto& row : pairs_) row.resize(std::max<std::size_t>(8, row.size() * 2));
  }
  return static_cast<std::uint32_t>(used_++);
}

void clsTokenCollection::DropSlot(std::uint32_t index) {
  Slot& slot = slots_[index];
  ErasePlace(FindPlace(slot.token.Token, slot.hash));
  MarkPairs(index, false);
  UnchainFromKey(index);
  slot.live = false;
  free_.push_back(index);
  --live_;
}

// Closes the gap, so that a search never has to step over erased places.
void clsTokenCollection::ErasePlace(std::size_t gap) {
  const std::size_t mask = table_.size() - 1;
  for (std::size_t at = (gap + 1) & mask; table_[at].slot != kNone; at = (at + 1) & mask) {
    const std::size_t home = slots_[table_[at].slot].hash & mask;
    if (((at - home) & mask) < ((at - gap) & mask)) continue;
    table_[gap] = table_[at];
    gap = at;
  }
  table_[gap] = {};
}

void clsTokenCollection::UnchainFromKey(std::uint32_t index) {
  Slot& slot = slots_[index];
  if (slot.token.ReferenceKey == 0) return;
  const auto first = firstOfKey_.find(slot.token.ReferenceKey);
  std::uint32_t* link = &first->second;
  while (*link != index) link = &slots_[*link].nextOfKey;
  *link = slot.nextOfKey;
  slot.nextOfKey = kNone;
  if (first->second == kNone) firstOfKey_.erase(first);
}

void clsTokenCollection::MarkPairs(std::uint32_t index, bool present) {
  lower_ = slots_[index].token.Token;
  LCaseInPlace(lower_);
  const std::size_t word = index / kWordBits;
  const std::uint64_t bit = std::uint64_t{1} << (index % kWordBits);
  for (std::size_t i = 1; i < lower_.size(); ++i) {
    std::uint64_t& row = pairs_[PairKind(lower_[i - 1], lower_[i])][word];
    row = present ? row | bit : row & ~bit;
  }
}

}  // namespace kvr
