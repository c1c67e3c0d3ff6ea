// A modifier as text: what the library's modifiers and those on a character have in common. The whole tag
// list is kept, name, nameext and group included; numbers stay in it as text.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/TagText.h"

namespace kvr {

class ModRecord {
 public:
  virtual ~ModRecord() = default;

  std::int32_t IDKey = 0;
  std::int16_t Flag = 0;  // 8: newly added

  const std::string& Name() const { return name_; }
  const std::string& NameExt() const { return nameExt_; }
  const std::string& LCaseFullName() const { return lcaseFullName_; }
  const std::string& Group() const { return group_; }
  std::string FullName() const;
  // Lower-cased FullName and lower-cased Group, with an unprintable mark between.
  std::string SysCollectionKey() const;

  // Parses with the general tag reader, drops empty names, stores ",tag(value)" for each.
  void NewTagList(std::string_view text);
  const std::string& TagList() const { return tags_.Text(); }
  // Stores the list as it is and reads name, nameext and group out of it.
  void SetTagList(std::string text);
  const TagText& Tags() const { return tags_; }

  // name, nameext, group, fullname, else the list.
  std::string TagItem(std::string_view tag) const;
  void SetTagItem(std::string_view tag, std::string_view value);
  // Refuses name, nameext and fullname.
  void DeleteTag(std::string_view tag);

  virtual void Clear();

 private:
  void ReadFields();

  std::string name_, nameExt_, group_, lcaseFullName_;
  TagText tags_;
};

// Lower-cased name, extension and group.
std::weak_ordering SortOrder(const ModRecord& a, const ModRecord& b);

}  // namespace kvr
