// A modifier as text. The list is the truth; the fields are copies of three of its tags.
#include "library/ModRecord.h"

#include "core/Text.h"
#include "core/modTags.h"
#include "library/modPrefixes.h"

namespace kvr {

std::string ModRecord::FullName() const {
  return modPrefixes::JoinNameAndExt(name_, nameExt_);
}

std::string ModRecord::SysCollectionKey() const {
  std::string key = lcaseFullName_;
  key += '\x1F';
  key += LCase(group_);
  return key;
}

void ModRecord::NewTagList(std::string_view text) {
  std::string list;
  list.reserve(text.size() + 1);
  for (const modTags::TagItem& item : modTags::ReturnTagItems(text)) {
    if (item.name.empty()) continue;
    list += ',';
    list += item.name;
    list += '(';
    list += item.value;
    list += ')';
  }
  SetTagList(std::move(list));
}

void ModRecord::SetTagList(std::string text) {
  tags_.Assign(std::move(text));
  ReadFields();
}

std::string ModRecord::TagItem(std::string_view tag) const {
  if (EqualNoCase(tag, "name")) return name_;
  if (EqualNoCase(tag, "nameext")) return nameExt_;
  if (EqualNoCase(tag, "group")) return group_;
  if (EqualNoCase(tag, "fullname")) return FullName();
  return std::string(tags_.Value(tag));
}

void ModRecord::SetTagItem(std::string_view tag, std::string_view value) {
  const std::string_view trimmed = Trim(value);
  tags_.Set(tag, trimmed);
  if (EqualNoCase(tag, "name")) {
    name_ = trimmed;
  } else if (EqualNoCase(tag, "nameext")) {
    nameExt_ = trimmed;
  } else if (EqualNoCase(tag, "group")) {
    group_ = trimmed;
    return;
  } else {
    return;
  }
  lcaseFullName_ = LCase(FullName());
}

void ModRecord::DeleteTag(std::string_view tag) {
  if (EqualNoCase(tag, "name") || EqualNoCase(tag, "nameext") || EqualNoCase(tag, "fullname")) return;
  tags_.Delete(tag);
}

void ModRecord::Clear() {
  tags_.Assign({});
  ReadFields();
}

void ModRecord::ReadFields() {
  name_ = tags_.Value("name");
  nameExt_ = tags_.Value("nameext");
  group_ = tags_.Value("group");
  lcaseFullName_ = LCase(FullName());
}

std::weak_ordering SortOrder(const ModRecord& a, const ModRecord& b) {
  if (auto order = LCase(a.Name()) <=> LCase(b.Name()); order != 0) return order;
  if (auto order = LCase(a.NameExt()) <=> LCase(b.NameExt()); order != 0) return order;
  return LCase(a.Group()) <=> LCase(b.Group());
}

}  // namespace kvr
