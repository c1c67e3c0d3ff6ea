// The hash of a typed key, from words that are put together in registers.
#include "library/TypedKey.h"

#include <bit>
#include <string>

namespace kvr {

std::uint64_t HashNoCase(const TypedKey& key) {
  const std::string_view name = key.name;
  if (name.size() >= 8 && std::endian::native == std::endian::little) {
    const std::size_t size = name.size() + 1;
    const std::uint64_t first = fold::LoadWord(name.data()) << 8 | static_cast<unsigned char>(key.First());
    const std::uint64_t last = fold::LoadWord(name.data() + name.size() - 8);
    if (size <= fold::kShortName) {
      const fold::NameWords words{first, last};
      if (words.IsAscii()) return fold::HashName(words, size);
    } else {
      fold::LongHash hash(size);
      hash.Mix(first);
      for (std::size_t i = 8; i + 8 < size; i += 8) hash.Mix(fold::LoadWord(name.data() + i - 1));
      hash.Mix(last);
      if (hash.IsAscii()) return hash.Hash();
    }
  }
  return HashNoCase(std::string(1, key.First()).append(name));
}

}  // namespace kvr
