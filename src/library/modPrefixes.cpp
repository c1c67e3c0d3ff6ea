// Trait types by number and by word: the tables behind every reference such as "SK:Sword (Broad)".
#include "library/modPrefixes.h"

#include <array>

#include "core/Text.h"
#include "core/modTags.h"

namespace kvr::modPrefixes {
namespace {

constexpr std::array<std::string_view, 10> kTypeNames = {"",   "ST", "AD", "DI", "QU",
                                                         "PE", "SK", "SP", "EQ", "TE"};
constexpr std::array<std::string_view, 10> kCollectionNames = {
    "", "Stats", "Ads", "Disads", "Quirks", "Perks", "Skills", "Spells", "Equipment", "Packages"};

constexpr Prefix kPrefixes[] = {
    {"SK", kSkills, "baselevel"},
    {"AD", kAds, "level"},
    {"DI", kDisads, "level"},
    {"PO", kPerks, "level"},
    {"ST", kStats, "score"},
    {"AT", kStats, "score"},
    {"EQ", kEquipment, "cost"},
    {"ADS", kAds, "level"},
    {"STAT", kStats, "score"},
    {"STATS", kStats, "score"},
    {"DISAD", kDisads, "level"},
    {"DISADS", kDisads, "level"},
    {"QU", kQuirks, "level"},
    {"QUIRK", kQuirks, "level"},
    {"QUIRKS", kQuirks, "level"},
    {"POWER", kPerks, "level"},
    {"POWERS", kPerks, "level"},
    {"PE", kPerks, "level"},
    {"PERK", kPerks, "level"},
    {"PERKS", kPerks, "level"},
    {"SK_RL", kSkills, "level"},
    {"SKILLS", kSkills, "baselevel"},
    {"SP", kSpells, "baselevel"},
    {"SP_RL", kSpells, "level"},
    {"SPELLS", kSpells, "baselevel"},
    {"EQUIP", kEquipment, "cost"},
    {"PA", kPackages, "level"},
    {"PACKAGE", kPackages, "level"},
    {"TE", kPackages, "level"},
    {"TEMPLATE", kPackages, "level"},
    {"TEMPLATES", kPackages, "level"},
    {"METATRAIT", kPackages, "level"},
    {"METATRAITS", kPackages, "level"},
    {"META-TRAIT", kPackages, "level"},
    {"META-TRAITS", kPackages, "level"},
    {"META", kPackages, "level"},
};

// Heads of references that name no trait but a category, class, collection, group or list.
constexpr std::string_view kOtherHeads[] = {
    "equipmentcat", "disadcat", "powercat", "skillcat", "spellcat", "equipcat", "perkcat", "samecat",
    "adcat",        "dicat",    "pocat",    "skcat",    "spcat",    "eqcat",    "tecat",   "pacat",
    "pecat",        "ca",       "cl",       "co",       "gr",       "li"};
constexpr std::size_t kLongestHead = 12;

struct TypeWord {
  std::string_view word;
  ItemType type;
};
constexpr TypeWord kTypeWords[] = {{"stats", kStats},
                                   {"attributes", kStats},
                                   {"st", kStats},
                                   {"at", kStats},
                                   {"ads", kAds},
                                   {"advantages", kAds},
                                   {"ad", kAds},
                                   {"perks", kPerks},
                                   {"pe", kPerks},
                                   {"disads", kDisads},
                                   {"disadvantages", kDisads},
                                   {"di", kDisads},
                                   {"quirks", kQuirks},
                                   {"qu", kQuirks},
                                   {"skills", kSkills},
                                   {"sk", kSkills},
                                   {"spells", kSpells},
                                   {"sp", kSpells},
                                   {"templates", kPackages},
                                   {"metatraits", kPackages},
                                   {"meta-traits", kPackages},
                                   {"te", kPackages},
                                   {"packages", kPackages},
                                   {"pa", kPackages},
                                   {"equipment", kEquipment},
                                   {"equip", kEquipment},
                                   {"eq", kEquipment}};

std::string_view WithoutColon(std::string_view word) {
  if (word.ends_with(':')) word.remove_suffix(1);
  return word;
}

bool IsHead(std::string_view word) {
  if (FindPrefix(word)) return true;
  for (std::string_view head : kOtherHeads)
    if (EqualNoCase(head, word)) return true;
  return false;
}

std::string_view At(const std::array<std::string_view, 10>& names, ItemType type) {
  return type >= kFirstType && type <= kLastType ? names[static_cast<std::size_t>(type)] : "";
}

}  // namespace

std::string_view ItemTypeName(ItemType type) {
  return At(kTypeNames, type);
}
std::string_view CollectionName(ItemType type) {
  return At(kCollectionNames, type);
}

ItemType TypeFromCollectionName(std::string_view name) {
  for (ItemType type = kFirstType; type <= kLastType; ++type)
    if (EqualNoCase(CollectionName(type), name)) return type;
  return EqualNoCase(name, "powers") ? kPerks : kNoType;
}

ItemType TypeFromTypeWord(std::string_view word) {
  for (const TypeWord& row : kTypeWords) {
    const bool short_ = row.word.size() == 2;
    if (EqualNoCase(row.word, short_ ? WithoutColon(word) : word)) return row.type;
  }
  return kNoType;
}

const Prefix* FindPrefix(std::string_view prefix) {
  const std::string_view word = WithoutColon(prefix);
  for (const Prefix& row : kPrefixes)
    if (row.word.size() == word.size() && EqualNoCase(row.word, word)) return &row;
  return nullptr;
}

ItemType TypeFromPrefix(std::string_view prefix) {
  const Prefix* row = FindPrefix(prefix);
  return row ? row->type : kNoType;
}

Reference ExtractPrefix(std::string_view text) {
  const std::size_t colon = text.substr(0, kLongestHead + 1).find(':');
  if (colon == npos || text.substr(colon + 1).starts_with(':') || !IsHead(text.substr(0, colon)))
    return {"", text};
  return {text.substr(0, colon), Trim(text.substr(colon + 1))};
}

NameAndExt SplitNameAndExt(std::string_view fullName) {
  const std::size_t open = fullName.find('(');
  if (open == npos) return {Trim(fullName), ""};
  const std::string_view inner = fullName.substr(open + 1);
  return {Trim(fullName.substr(0, open)), Trim(inner.substr(0, modTags::FindCloseParen(inner)))};
}

NameAndExt SplitNameAndExtAtLast(std::string_view fullName) {
  const std::size_t open = fullName.rfind(" (");
  if (open == npos) return {Trim(fullName), ""};
  std::string_view ext = Trim(fullName.substr(open + 2));
  if (ext.ends_with(')')) ext.remove_suffix(1);
  return {Trim(fullName.substr(0, open)), Trim(ext)};
}

std::string JoinNameAndExt(std::string_view name, std::string_view ext) {
  std::string joined;
  joined.reserve(name.size() + ext.size() + 3);
  joined += name;
  if (!ext.empty()) {
    joined += " (";
    joined += ext;
    joined += ')';
  }
  return joined;
}

}  // namespace kvr::modPrefixes
