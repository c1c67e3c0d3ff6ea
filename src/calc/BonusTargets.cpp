// Which traits a bonus reaches: one by name, all of a category or group, skills and spells by their type, or
// whatever has a tag with a value.
#include "calc/BonusTargets.h"

#include <algorithm>
#include <array>

#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "library/CategoryPrefixes.h"

namespace kvr {
namespace {

constexpr SpecialTarget kSpecialTargets[] = {
    {"skills", kSkills, "", ""},
    {"skillpoints", kSkills, "", "points"},
    {"spells", kSpells, "", ""},
    {"spellpoints", kSpells, "", "points"},
    {"mentalskillpoints", kSkills, "m/", "points"},
    {"physicalskillpoints", kSkills, "p/", "points"},
    {"mentalspellpoints", kSpells, "m/", "points"},
    {"physicalspellpoints", kSpells, "p/", "points"},
    {"stskills", kSkills, "st/", "level"},
    {"stskillpoints", kSkills, "st/", "points"},
    {"dxskills", kSkills, "dx/", "level"},
    {"dxskillpoints", kSkills, "dx/", "points"},
    {"iqskills", kSkills, "iq/", "level"},
    {"iqskillpoints", kSkills, "iq/", "points"},
    {"htskills", kSkills, "ht/", "level"},
    {"htskillpoints", kSkills, "ht/", "points"},
    {"stspells", kSpells, "st/", "level"},
    {"stspellpoints", kSpells, "st/", "points"},
    {"dxspells", kSpells, "dx/", "level"},
    {"dxspellpoints", kSpells, "dx/", "points"},
    {"iqspells", kSpells, "iq/", "level"},
    {"iqspellpoints", kSpells, "iq/", "points"},
    {"htspells", kSpells, "ht/", "level"},
    {"htspellpoints", kSpells, "ht/", "points"},
};

struct CategoryPrefix {
  std::string_view word;
  ItemType type;
};
constexpr CategoryPrefix kQuestionTypes[] = {
    {"", kNoType},          {"all", kNoType},        {"stats", kStats},
    {"attributes", kStats}, {"st:", kStats},         {"ads", kAds},
    {"advantages", kAds},   {"ad:", kAds},           {"perks", kPerks},
    {"pe:", kPerks},        {"disads", kDisads},     {"disadvantages", kDisads},
    {"di:", kDisads},       {"quirks", kQuirks},     {"qu:", kQuirks},
    {"skills", kSkills},    {"sk:", kSkills},        {"spells", kSpells},
    {"sp:", kSpells},       {"equip", kEquipment},   {"equipment", kEquipment},
    {"eq:", kEquipment},    {"packages", kPackages}, {"templates", kPackages},
    {"te:", kPackages},
};

constexpr std::string_view kTagQuestionHead = "bytag:";

// Cuts the first word off the text.
std::string_view TakeWord(std::string_view& text) {
  const std::string_view word = text.substr(0, text.find(' '));
  text = Trim(text.substr(word.size()));
  return word;
}

// A member of the group without an extension stands for every specialty, one without a type for every type.
bool IsInGroup(const clsSortedRefCollection& groups, std::string_view group, const clsItem& item) {
  for (ItemType type : {item.ItemType, kNoType}) {
    if (groups.ItemPosition(group, item.Name(), item.NameExt(), type) != 0) return true;
    if (!item.NameExt().empty() && groups.ItemPosition(group, item.Name(), "", type) != 0) return true;
  }
  return false;
}

bool IsSpecial(const SpecialTarget& special, const clsItem& item) {
  return item.ItemType == special.type && StartsWithNoCase(item.SkillType(), special.typeHead);
}

bool HasName(const clsItem& item, std::string_view name, std::string_view ext) {
  if (item.LCaseName() == name) return ext.empty() || item.LCaseNameExt() == ext;
  return item.ItemType == kStats && ext.empty() && !name.empty() && EqualNoCase(item.FreeTag("symbol"), name);
}

}  // namespace

const SpecialTarget* FindSpecialTarget(std::string_view lowerName) {
  for (const SpecialTarget& row : kSpecialTargets) {
    if (row.name == lowerName) return &row;
  }
  return nullptr;
}

bool IsTagQuestion(std::string_view target) {
  return StartsWithNoCase(target, kTagQuestionHead);
}

BonusTarget::BonusTarget(const clsBonus& record) : record_(record) {
  if (record.TargetType < 0) return;
  const std::string_view name = record.TargetName;
  if (modTools::IsBraced(name)) {
    ReadList(modTools::StripBraces(name));
  } else if (modTools::IsQuoted(name)) {
    ReadList(modTools::StripQuotes(name));
  } else {
    Read(record.TargetPrefix, name, record.TargetExt);
  }
}

// An entry without a prefix of its own has that of the list.
void BonusTarget::ReadList(std::string_view entries) {
  modNewParser::ForEachToken(entries, ',', modNewParser::kNames, [&](std::string_view entry) {
    const auto [prefix, rest] = modPrefixes::ExtractPrefix(modTools::StripQuotesAndBraces(Trim(entry)));
    if (rest.empty()) return;
    const std::string_view listPrefix = prefix.empty() ? std::string_view(record_.TargetPrefix) : prefix;
    if (IsTagQuestion(rest)) return Read(listPrefix, rest, "");
    const auto [name, ext] = modPrefixes::SplitNameAndExt(rest);
    if (name.empty() && !ext.empty()) return Read(listPrefix, "(" + std::string(ext) + ")", "");
    Read(listPrefix, name, ext);
  });
}

void BonusTarget::Read(std::string_view prefix, std::string_view name, std::string_view ext) {
  Entry entry;
  if (prefix.empty() && IsTagQuestion(name)) {
    entry = ReadTagQuestion(name);
  } else if (const ItemType category = modPrefixes::TypeFromCategoryPrefix(prefix); category != kNoType) {
    entry.by = By::Category;
    entry.type = category;
    entry.name = modPrefixes::JoinNameAndExt(name, ext);
  } else if (EqualNoCase(prefix, "gr")) {
    entry.by = By::Group;
    entry.name = modPrefixes::JoinNameAndExt(name, ext);
  } else {
    entry.by = By::Name;
    // As in formulas, a name without a prefix is that of an attribute.
    entry.type = prefix.empty() ? kStats : modPrefixes::TypeFromPrefix(prefix);
    entry.special = FindSpecialTarget(name);
    entry.name = name;
    entry.ext = ext;
  }
  entries_.push_back(std::move(entry));
}

// "bytag:<type> where <tag> [operator] <value>"
BonusTarget::Entry BonusTarget::ReadTagQuestion(std::string_view question) {
  constexpr std::string_view kWhere = "where ";
  constexpr std::array<std::pair<std::string_view, Test>, 6> kTests = {
      {{"is", Test::Is},
       {"isnot", Test::IsNot},
       {"includes", Test::Includes},
       {"excludes", Test::Excludes},
       {"listincludes", Test::ListIncludes},
       {"listexcludes", Test::ListExcludes}}};
  Entry entry;
  improper_ = true;
  question = Trim(question.substr(kTagQuestionHead.size()));
  std::size_t where = question.starts_with(kWhere) ? 0 : question.find(" where ");
  if (where == npos) return entry;
  const std::string_view typeWord = Trim(question.substr(0, where));
  const auto type = std::ranges::find(kQuestionTypes, typeWord, &CategoryPrefix::word);
  std::string_view rest = Trim(question.substr(question.find(kWhere, where) + kWhere.size()));
  const std::string_view tag = TakeWord(rest);
  if (type == std::end(kQuestionTypes) || tag.empty() || rest.empty()) return entry;
  const std::string_view word = rest.substr(0, rest.find(' '));
  const auto test = std::ranges::find(kTests, word, &std::pair<std::string_view, Test>::first);
  if (test != kTests.end()) {
    entry.test = test->second;
    TakeWord(rest);
    if (rest.empty() && entry.test != Test::Is && entry.test != Test::IsNot) return entry;
  }
  improper_ = false;
  entry.by = By::Tag;
  entry.type = type->type;
  entry.name = tag;
  entry.ext = modTools::StripQuotesAndBraces(rest);
  return entry;
}

bool BonusTarget::AppliesTo(clsItem& item) const {
  CalcItem* owner = record_.Owner;
  clsItem* root = owner == nullptr ? nullptr : owner->RootOwnerItem();
  if (record_.TargetType == kTargetMe) return root == &item;
  if (record_.TargetType == kTargetOwner) {
    if (root == owner) return root != nullptr && root->ParentKey() == item.KeyText();
    return owner->OwnerContext() == static_cast<CalcItem*>(&item);
  }
  return root != &item && Names(item);
}

bool BonusTarget::Names(clsItem& item) const {
  return std::ranges::any_of(entries_, [&](const Entry& entry) { return Matches(entry, item); });
}

bool BonusTarget::Matches(const Entry& entry, clsItem& item) {
  const bool ofType = entry.type == kNoType || entry.type == item.ItemType;
  switch (entry.by) {
    case By::Name:
      return (entry.type != kNoType && ofType && HasName(item, entry.name, entry.ext)) ||
             (entry.special != nullptr && IsSpecial(*entry.special, item));
    case By::Category:
      return ofType && !entry.name.empty() && modTags::IsItemInList(entry.name, item.FreeTag("cat"));
    case By::Group:
      return !entry.name.empty() && (EqualNoCase(item.TagItem("group"), entry.name) ||
                                     IsInGroup(item.Owner->Groups, entry.name, item));
    case By::Tag:
      return ofType && TagPasses(entry, item);
    default:
      return false;
  }
}

bool BonusTarget::TagPasses(const Entry& entry, clsItem& item) {
  const std::string value = LCase(item.TagItem(entry.name));
  switch (entry.test) {
    case Test::Is:
      return value == entry.ext;
    case Test::IsNot:
      return value != entry.ext;
    case Test::Includes:
      return value.find(entry.ext) != npos;
    case Test::Excludes:
      return value.find(entry.ext) == npos;
    case Test::ListIncludes:
      return modTags::IsItemInList(entry.ext, value);
    default:
      return !modTags::IsItemInList(entry.ext, value);
  }
}

const TargetFinder::KeyedItems& TargetFinder::Symbols() {
  if (symbols_) return *symbols_;
  symbols_.emplace();
  for (clsItem& stat : character_.ItemsByType[kStats]) {
    if (!stat.FreeTagIsEmpty("symbol")) symbols_->emplace_back(HashNoCase(stat.FreeTag("symbol")), &stat);
  }
  std::ranges::stable_sort(*symbols_, {}, &KeyedItems::value_type::first);
  return *symbols_;
}

// The entries are those that IsItemInList compares.
const TargetFinder::KeyedItems& TargetFinder::Categories() {
  if (categories_) return *categories_;
  categories_.emplace();
  for (clsItem& item : character_.Items) {
    modNewParser::ForEachToken(item.FreeTag("cat"), ',', modNewParser::kPlain, [&](std::string_view entry) {
      categories_->emplace_back(HashNoCase(Trim(entry)), &item);
    });
  }
  std::ranges::stable_sort(*categories_, {}, &KeyedItems::value_type::first);
  return *categories_;
}

bool clsItem::BonusAppliesByRef(const clsBonus& bonus) {
  return BonusTarget(bonus).AppliesTo(*this);
}

bool clsItem::UnmarkedBonusAppliesByRef(const clsBonus& bonus) {
  return BonusTarget(bonus).Names(*this);
}

}  // namespace kvr
