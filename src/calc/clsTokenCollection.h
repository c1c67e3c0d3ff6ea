// The solver's cache: what texts came to, kept per character until something that they read changes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvr {

struct clsToken {
  std::string Token;  // the text; keys ignore case
  double Value = 0;
  std::int32_t ReferenceKey = 0;  // IDKey of the trait it reads; 0 ("k0") for none or an expression
};

class clsTokenCollection {
 public:
  // nullptr for a miss (the collection's Error() is 5 then).
  const clsToken* Item(std::string_view text) const;
  // A token that exists is not replaced.
  void Add(std::string_view text, double value, std::int32_t referenceKey);
  bool Remove(std::string_view text);
  std::size_t Count() const { return live_; }
  void Clear();
  int Error() const { return error_; }

  // Drops every token that reads the trait: by its key, or because its text holds the lower-cased name or
  // symbol. For the name or symbol "st" a match directly followed by ":" does not count. Empty texts drop
  // nothing.
  void ClearTokensForItem(std::int32_t idKey, std::string_view lcaseName, std::string_view lcaseSymbol);

 private:
  struct Slot {
    clsToken token;
    std::string lower;  // the text that a name is looked for in
    std::uint64_t hash = 0;
    std::uint64_t fingerprint = 0;  // of the letter pairs in `lower`, rejects most names at once
    bool live = false;
  };
  std::size_t FindSlot(std::string_view text, std::uint64_t hash) const;
  void Rehash();

  std::vector<Slot> slots_;
  std::vector<std::uint32_t> table_;  // open addressing over slots_, 0 is empty
  std::size_t live_ = 0;
  mutable int error_ = 0;
};

}  // namespace kvr
