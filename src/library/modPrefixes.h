// Trait types, their names, and the prefix words by which texts refer to traits ("SK:Sword (Broad)").
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvr {

// Type codes; used as index in every per-type array, in keys and in files. The order is fixed.
using ItemType = std::int16_t;
inline constexpr ItemType kNoType = 0, kStats = 1, kAds = 2, kDisads = 3, kQuirks = 4, kPerks = 5,
                          kSkills = 6, kSpells = 7, kEquipment = 8, kPackages = 9;
inline constexpr ItemType kFirstType = 1, kLastType = 9;

namespace modPrefixes {

// "ST", "AD", "DI", "QU", "PE", "SK", "SP", "EQ", "TE"; "" for any other code.
std::string_view ItemTypeName(ItemType type);
// "Stats", "Ads", "Disads", "Quirks", "Perks", "Skills", "Spells", "Equipment", "Packages"; "" for any other
// code.
std::string_view CollectionName(ItemType type);
// The code of a collection name in any case, also "powers" (5); 0 if unknown.
ItemType TypeFromCollectionName(std::string_view name);
// The code of a type word of data file commands ("attributes", "sk:", "meta-traits", ...) in any case; 0 if
// unknown.
ItemType TypeFromTypeWord(std::string_view word);

struct Prefix {
  std::string_view word;  // upper case
  ItemType type;
  std::string_view defaultTag;  // what a bare reference to such a trait reads
};
// The row of a prefix, in any case, with or without its colon; nullptr when unknown.
const Prefix* FindPrefix(std::string_view prefix);
// The type of a prefix; 0 when unknown.
ItemType TypeFromPrefix(std::string_view prefix);

// A reference taken apart: the leading word without its colon, in the text's own case, and the trimmed rest.
// Without a known head (or with a second colon right behind it) the prefix is "" and the rest is the whole
// text.
struct Reference {
  std::string_view prefix, rest;
};
Reference ExtractPrefix(std::string_view text);

// "Name (Ext)": the trimmed part before the first "(", and the trimmed part inside its balanced parentheses;
// what follows is dropped. Without "(" the extension is empty.
struct NameAndExt {
  std::string_view name, ext;
};
NameAndExt SplitNameAndExt(std::string_view fullName);
// The same split at the last " (", for names on a character.
NameAndExt SplitNameAndExtAtLast(std::string_view fullName);
// "Name", or "Name (Ext)".
std::string JoinNameAndExt(std::string_view name, std::string_view ext);

}  // namespace modPrefixes
}  // namespace kvr
