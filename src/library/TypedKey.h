// The key of a trait or a category, "2Combat Reflexes": the code of its type and its name. A look-up takes
// the two as they are. To write them into one text first, and read that back in words, would cost more than
// all the rest of it.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/Text.h"
#include "library/modPrefixes.h"

namespace kvr {

struct TypedKey {
  ItemType type;
  std::string_view name;

  char First() const { return static_cast<char>('0' + type); }
};

// As of the text that the two make.
std::uint64_t HashNoCase(const TypedKey& key);
inline bool EqualNoCase(std::string_view text, const TypedKey& key) {
  return text.size() == key.name.size() + 1 && text[0] == key.First() &&
         EqualNoCase(text.substr(1), key.name);
}

}  // namespace kvr
