// The solver's cache: what texts came to, kept per character until something that they read changes.
//
// A trait that changes drops every token that reads it, and that is decided by the tokens' texts. So that
// this needs no walk over all texts, the collection keeps one row of bits for each kind of letter pair, with
// a bit for each token that has the pair: a name can only stand in tokens that have all of its pairs.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kvr {

struct clsToken {
  std::string Token;  // the text; keys ignore case
  double Value = 0;
  std::int32_t ReferenceKey = 0;  // IDKey of the trait it reads; 0 ("k0") for none or an expression
};

class clsTokenCollection {
 public:
  // nullptr for a miss (the collection's Error() is 5 then). Holds until the next change.
  const clsToken* Item(std::string_view text) const;
  // A token that exists is not replaced.
  void Add(std::string_view text, double value, std::int32_t referenceKey);
  bool Remove(std::string_view text);
  std::size_t Count() const { return live_; }
  // Keeps its room for the tokens to come.
  void Clear();
  int Error() const { return error_; }

  // Drops every token that reads the trait: by its key, or because its text holds the lower-cased name or
  // symbol. For the name or symbol "st" a match directly followed by ":" does not count. Empty texts drop
  // nothing.
  void ClearTokensForItem(std::int32_t idKey, std::string_view lcaseName, std::string_view lcaseSymbol);

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;
  static constexpr std::size_t kPairKinds = 256;

  struct Slot {
    clsToken token;
    std::uint64_t hash = 0;
    std::uint32_t nextOfKey = kNone;  // the chain of tokens with this ReferenceKey
    bool live = false;
  };
  struct Place {
    std::uint32_t slot = kNone;
    std::uint32_t tag = 0;  // upper half of the hash
  };
  std::size_t FindPlace(std::string_view text, std::uint64_t hash) const;
  void Grow();
  std::uint32_t TakeSlot();
  void DropSlot(std::uint32_t slot);
  void ErasePlace(std::size_t place);
  void UnchainFromKey(std::uint32_t slot);
  void MarkPairs(std::uint32_t slot, bool present);
  void DropTokensWithText(std::string_view lcaseText);

  std::vector<Slot> slots_;  // the first used_ are in use or free; the rest is room
  std::size_t used_ = 0;
  std::vector<std::uint32_t> free_;
  std::vector<Place> table_;  // open addressing over slots_; its size is a power of two
  std::array<std::vector<std::uint64_t>, kPairKinds> pairs_;
  std::unordered_map<std::int32_t, std::uint32_t> firstOfKey_;
  std::size_t live_ = 0;
  std::string lower_;  // reused
  mutable int error_ = 0;
};

}  // namespace kvr
