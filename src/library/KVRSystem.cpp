// The library's look-ups and the few changes that keep its counters right.
#include "library/KVRSystem.h"

#include <algorithm>

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "library/TypedKey.h"

namespace kvr {
namespace {

constexpr std::string_view kFullTagList[] = {
    "name",         "nameext",     "symbol",  "basevalue", "upto",         "step",        "up",
    "down",         "mainwin",     "tl",      "cat",       "type",         "stat",        "cost",
    "bonuspoints",  "bonuslevels", "default", "needs",     "gives",        "description", "notes",
    "page",         "mode",        "damtype", "damage",    "reach",        "basecost",    "baseweight",
    "minst",        "ss",          "acc",     "bulk",      "rangehalfdam", "rangemax",    "damagebasedon",
    "minstbasedon", "usernotes"};

// The key of a trait, "2Combat Reflexes", without an allocation for names of the usual length.
class ItemKey {
 public:
  ItemKey(ItemType type, std::string_view name, std::string_view ext = {}) {
    const std::size_t size = name.size() + ext.size() + 4;
    char* begin = buffer_;
    if (size > sizeof buffer_) {
      long_.resize(size);
      begin = long_.data();
    }
    char* out = begin;
    *out++ = static_cast<char>('0' + type);
    out += name.copy(out, name.size());
    if (!ext.empty()) {
      out += std::string_view(" (").copy(out, 2);
      out += ext.copy(out, ext.size());
      *out++ = ')';
    }
    text_ = {begin, static_cast<std::size_t>(out - begin)};
  }
  ItemKey(const ItemKey&) = delete;
  ItemKey& operator=(const ItemKey&) = delete;
  operator std::string_view() const { return text_; }

 private:
  char buffer_[128];
  std::string long_;
  std::string_view text_;
};

// A full name in the one form that keys have; `joined` holds it where the text has another.
std::string_view Normalized(std::string_view fullName, std::string& joined) {
  if (fullName.find('(') == npos) return Trim(fullName);
  const auto [name, ext] = modPrefixes::SplitNameAndExt(fullName);
  joined = modPrefixes::JoinNameAndExt(name, ext);
  return joined;
}

bool IsTraitType(ItemType type) {
  return type >= kFirstType && type <= kLastType;
}

}  // namespace

double NumberBehindMark(std::string_view text) {
  text = Trim(text);
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  if (text.starts_with('$') || text.starts_with('#')) text.remove_prefix(1);
  return Val(text);
}

void clsSortedSystemItemCollection::OrderItems() {
  struct SortKey {
    std::size_t position = 0;
    std::vector<std::string> texts;
    std::vector<double> numbers;
  };
  std::vector<SortKey> keys(Count());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    keys[i].position = i + 1;
    for (const OrderCriterion& criterion : OrderBy) {
      const std::string value = Item(i + 1).TagItem(criterion.tag);
      keys[i].texts.push_back(criterion.numeric ? std::string() : LCase(value));
      const double number = EndsWithNoCase(criterion.tag, "cost") ? NumberBehindMark(value) : Val(value);
      keys[i].numbers.push_back(criterion.numeric ? number : 0);
    }
  }
  std::stable_sort(keys.begin(), keys.end(), [this](const SortKey& a, const SortKey& b) {
    for (std::size_t c = 0; c < OrderBy.size(); ++c) {
      const SortKey& low = OrderBy[c].ascending ? a : b;
      const SortKey& high = OrderBy[c].ascending ? b : a;
      if (low.numbers[c] != high.numbers[c]) return low.numbers[c] < high.numbers[c];
      if (low.texts[c] != high.texts[c]) return low.texts[c] < high.texts[c];
    }
    return false;
  });
  ordered_.clear();
  for (const SortKey& key : keys) ordered_.push_back(key.position);
}

clsSystemItem& clsSortedSystemItemCollection::OrderedItem(std::size_t i) const {
  if (i < 1 || i > ordered_.size()) throw KVRError(ErrorNumber::Subscript);
  return Item(ordered_[i - 1]);
}

KVRSystem::KVRSystem(Environment& env) : env_(env) {
  InitFullTagList();
}
KVRSystem::~KVRSystem() = default;

std::int32_t KVRSystem::Count(ItemType type) const {
  return IsTraitType(type) ? counts_[static_cast<std::size_t>(type)] : 0;
}

std::vector<std::size_t> KVRSystem::ReturnItemIndexes(ItemType type) const {
  std::vector<std::size_t> positions;
  positions.reserve(static_cast<std::size_t>(std::max(Count(type), 0)));
  std::size_t position = 0;
  for (const clsSystemItem& item : Items) {
    ++position;
    if (item.ItemType == type) positions.push_back(position);
  }
  return positions;
}

std::vector<std::string> KVRSystem::ReturnItemCollectionKeys(ItemType type) const {
  std::vector<std::string> keys;
  keys.reserve(static_cast<std::size_t>(std::max(Count(type), 0)));
  for (const clsSystemItem& item : Items)
    if (item.ItemType == type) keys.push_back(item.CollectionKey());
  return keys;
}

// A type, a name and an extension make a key, and the key knows its position. Nearly every full name has the
// form that keys have.
std::size_t KVRSystem::ItemPositionByNameAndExt(std::string_view fullName, ItemType type,
                                                std::size_t start) const {
  const auto position = [&](std::string_view wanted) -> std::size_t {
    const ItemType first = type == kNoType ? kFirstType : type;
    const ItemType last = type == kNoType ? kLastType : type;
    for (ItemType t = first; t <= last && IsTraitType(t); ++t) {
      const std::size_t found = Items.PositionOfKey(TypedKey{t, wanted});
      if (found != 0 && found >= start) return found;
    }
    return 0;
  };
  if (const std::size_t found = position(fullName)) return found;
  std::string joined;
  const std::string_view wanted = Normalized(fullName, joined);
  return wanted == fullName ? 0 : position(wanted);
}

std::size_t KVRSystem::ListItemPosByNameAndExt(ItemType type, std::string_view fullName,
                                               std::size_t start) const {
  return ItemPositionByNameAndExt(fullName, type, start);
}

std::size_t KVRSystem::ItemPositionByNameOnly(std::string_view fullName, ItemType type,
                                              std::size_t start) const {
  const std::string name = LCase(modPrefixes::SplitNameAndExt(fullName).name);
  const std::size_t first =
      Items.LowerBound([&](const clsSystemItem& item) { return item.LCaseName() < name; });
  for (std::size_t i = std::max(first, start); i <= Items.Count() && Items.Item(i).LCaseName() == name; ++i)
    if (type == kNoType || Items.Item(i).ItemType == type) return i;
  return 0;
}

std::vector<std::size_t> KVRSystem::GetAllItems(std::string_view name, ItemType type) const {
  std::vector<std::size_t> positions;
  std::size_t i = ItemPositionByNameOnly(name, type);
  while (i != 0) {
    positions.push_back(i);
    i = ItemPositionByNameOnly(name, type, i + 1);
  }
  return positions;
}

clsSystemItem* KVRSystem::FindItem(std::string_view fullName, ItemType type) const {
  if (type == kNoType) {
    for (ItemType t = kFirstType; t <= kLastType; ++t)
      if (clsSystemItem* item = FindItem(fullName, t)) return item;
    return nullptr;
  }
  if (!IsTraitType(type)) return nullptr;
  if (clsSystemItem* item = Items.ItemOfKey(TypedKey{type, fullName})) return item;
  std::string joined;
  const std::string_view wanted = Normalized(fullName, joined);
  return wanted == fullName ? nullptr : Items.ItemOfKey(TypedKey{type, wanted});
}

clsSkillCosts* KVRSystem::SkillType(std::string_view name) const {
  auto place = skillTypeIndex_.find(LCase(name));
  return place == skillTypeIndex_.end() ? nullptr : SkillTypes[place->second].get();
}

ModRecord* KVRSystem::FindMod(std::string_view fullName, std::string_view group) const {
  ModRecord wanted;
  wanted.SetTagItem("name", fullName);
  wanted.SetTagItem("group", group);
  return Mods.Item(wanted.SysCollectionKey());
}

void KVRSystem::DeleteItem(std::size_t position) {
  DeleteItem(Items.Item(position));
}

void KVRSystem::DeleteItem(const clsSystemItem& item) {
  if (IsTraitType(item.ItemType)) --counts_[static_cast<std::size_t>(item.ItemType)];
  Items.Remove(item.CollectionKey());
}

void KVRSystem::RebuildItemsByType() {
  counts_ = {};
  for (const clsSystemItem& item : Items)
    if (IsTraitType(item.ItemType)) ++counts_[static_cast<std::size_t>(item.ItemType)];
}

void KVRSystem::AddSkillType(std::unique_ptr<clsSkillCosts> skillType) {
  auto [place, isNew] = skillTypeIndex_.try_emplace(LCase(skillType->Name), SkillTypes.size());
  if (isNew) {
    SkillTypes.push_back(std::move(skillType));
  } else {
    SkillTypes[place->second] = std::move(skillType);
  }
}

void KVRSystem::InitFullTagList() {
  FullTagList.assign(std::begin(kFullTagList), std::end(kFullTagList));
}

void KVRSystem::ClearLibrary() {
  Items.Clear();
  filedLists_.Clear();
  itemRecords_.FreeAll();
  itemTexts_.FreeAll();
  Cats.Clear();
  Groups.Clear();
  Lists.Clear();
  Mods.Clear();
  Packages.Clear();
  SkillTypes.clear();
  skillTypeIndex_.clear();
  BasicDamageList.clear();
  DamageBreaks.clear();
  BodyNames.Clear();
  BodyParts.clear();
  lastKey_ = 0;
  counts_ = {};
}

// A record of the library owns nothing but what lies in the library's memory, so none is ever destroyed.
clsSystemItem& KVRSystem::NewItem() {
  return *::new (itemRecords_.Allocate(sizeof(clsSystemItem))) clsSystemItem(itemTexts_);
}

void KVRSystem::ExpectItem(ItemType type, std::string_view name, std::string_view ext) const {
  Items.Expect(ItemKey(type, name, ext));
}

void KVRSystem::AddOrReplaceItem(clsSystemItem& item, std::string_view currentCategory) {
  if (item.ItemType == kSpells && item.GetTagItem("type").empty()) item.SetTagItem("type", "M/H");
  const bool hasCategories = item.ItemType != kStats;
  if (hasCategories) item.TrimCategory();
  const ItemKey key(item.ItemType, item.Name(), item.NameExt());
  clsSystemItem* added = &item;
  if (const clsSystemItem* standing = Items.AddOrFind(added, key)) {
    if (hasCategories) item.MergeCategories(standing->Category());
    Items.Remove(key);
    Items.Add(&item, key);
  } else if (IsTraitType(item.ItemType)) {
    ++counts_[static_cast<std::size_t>(item.ItemType)];
  }
  if (hasCategories) FileUnder(currentCategory, item);
}

void KVRSystem::FileUnder(std::string_view currentCategory, clsSystemItem& item) {
  const std::string_view own = item.Category();
  if (const std::string_view* whole = filedLists_.Find(item.ItemType, currentCategory, own))
    return item.ShareCategory(*whole);
  item.MergeCategories(currentCategory);
  CheckForNewCats(item.Category(), item.ItemType);
  filedLists_.Add(own, item.Category());
}

void KVRSystem::CheckForNewCats(std::string_view list, ItemType type) {
  modNewParser::ForEachToken(list, ',', modNewParser::kPlain, [&](std::string_view token) {
    const std::string_view name = Trim(token);
    if (name.empty() || Cats.ItemOfKey(TypedKey{type, name})) return;
    auto cat = std::make_unique<clsCategory>(clsCategory{std::string(name), "", type});
    Cats.Add(std::move(cat), ItemKey(type, name));
  });
}

}  // namespace kvr
