// Order and keys of the library's small records.
#include "library/Records.h"

#include <charconv>

namespace kvr {
namespace {

std::weak_ordering CompareLower(std::string_view a, std::string_view b) {
  return LCase(a) <=> LCase(b);
}

// Stands between the parts of a key, so that "ab" + "c" and "a" + "bc" stay apart.
constexpr char kKeyMark = '\x1F';

void AppendNumber(std::string& key, int number) {
  char digits[12];
  key.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

}  // namespace

bool IsTrueWord(std::string_view value) {
  return IsSet(value) && !EqualNoCase(value, "false");
}

std::weak_ordering SortOrder(const clsCategory& a, const clsCategory& b) {
  if (auto order = CompareLower(a.Name, b.Name); order != 0) return order;
  return a.ItemType <=> b.ItemType;
}

std::weak_ordering SortOrder(const clsRefItem& a, const clsRefItem& b) {
  if (auto order = CompareLower(a.Name, b.Name); order != 0) return order;
  if (auto order = CompareLower(a.NameExt, b.NameExt); order != 0) return order;
  if (auto order = a.ItemType <=> b.ItemType; order != 0) return order;
  return CompareLower(a.Group, b.Group);
}

std::weak_ordering SortOrder(const clsPackage& a, const clsPackage& b) {
  return CompareLower(a.Name, b.Name);
}

std::weak_ordering SortOrder(const SortedString& a, const SortedString& b) {
  return CompareLower(a.Text, b.Text);
}

std::string clsSortedCatCollection::KeyOf(const clsCategory& cat) {
  std::string key;
  key.reserve(cat.Name.size() + 2);
  AppendNumber(key, cat.ItemType);
  key += cat.Name;
  return key;
}

std::size_t clsSortedCatCollection::TypeCount(ItemType type) const {
  return static_cast<std::size_t>(
      std::count_if(begin(), end(), [type](const clsCategory& cat) { return cat.ItemType == type; }));
}

std::string clsSortedRefCollection::GroupKeyOf(const clsRefItem& item) {
  std::string key;
  key.reserve(item.Group.size() + item.Name.size() + item.NameExt.size() + 3);
  key += item.Group;
  key += kKeyMark;
  AppendNumber(key, item.ItemType);
  key += item.Name;
  key += kKeyMark;
  key += item.NameExt;
  return key;
}

std::string clsSortedRefCollection::ListKeyOf(const clsRefItem& item) {
  return item.Group + kKeyMark + item.Name;
}

std::size_t clsSortedRefCollection::ItemPosition(std::string_view group, std::string_view name,
                                                 std::string_view ext, ItemType type) const {
  const clsRefItem wanted{std::string(group), std::string(name), std::string(ext), type};
  const std::size_t place = LowerBound([&](const clsRefItem& item) { return SortOrder(item, wanted) < 0; });
  return place <= Count() && SortOrder(Item(place), wanted) == 0 ? place : 0;
}

std::size_t clsSortedRefCollection::ItemPositionNoExt(std::string_view group, std::string_view name,
                                                      ItemType type) const {
  const std::string lowerName = LCase(name);
  for (std::size_t i = LowerBound([&](const clsRefItem& item) { return LCase(item.Name) < lowerName; });
       i <= Count() && EqualNoCase(Item(i).Name, name); ++i) {
    if (Item(i).ItemType == type && EqualNoCase(Item(i).Group, group)) return i;
  }
  return 0;
}

}  // namespace kvr
