// A trait in the library.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "library/modPrefixes.h"

namespace kvr {

class clsSystemItem {
 public:
  std::int32_t IDKey = 0;
  kvr::ItemType ItemType = kNoType;
  // 0 for a record in memory; above 0: position of the tag text in the cache file, TagListLength bytes.
  // Writing to a cached record does nothing.
  std::int32_t FilePos = 0;
  std::int32_t TagListLength = 0;
  bool Flag = false;
  bool Calculate = false;
  std::int16_t BuildIcon = 0;  // 1 when adding the trait will ask the user something
  std::string DisplayString, DisplayStringShort;

  const std::string& Name() const { return name_; }
  const std::string& NameExt() const { return nameExt_; }
  const std::string& LCaseName() const { return lcaseName_; }
  const std::string& LCaseNameExt() const { return lcaseNameExt_; }
  const std::string& Category() const { return category_; }
  void SetName(std::string_view name);
  void SetNameExt(std::string_view ext);
  void SetCategory(std::string_view list);
  // Inserts into the cat list each entry of `list` that it lacks.
  void MergeCategories(std::string_view list);

  std::string FullName() const;       // "Name (Ext)"
  std::string FullNameTL() const;     // "Name/TL3 (Ext)"
  std::string CollectionKey() const;  // type + FullName, "2Combat Reflexes"

  // Replaces the content. Pieces split at commas outside parentheses; "name", "nameext" and "cat" go to the
  // fields, the rest to the tag list; "display" of "yes" or "-1" is dropped.
  void NewTagList(std::string_view text);
  // The same in steps, for a reader that has the pieces in hand: begin, each piece (trimmed, with the
  // position of its first parenthesis), end, which takes care of "display".
  void BeginTagList(std::size_t room);
  void AddTagPiece(std::string_view piece, std::size_t open);
  // One tag; the name in any case.
  void AddTag(std::string_view name, std::string_view value);
  void EndTagList();
  // The whole record: the free list, then cat, nameext (if any), name.
  std::string TagList() const;
  const std::string& TagListNoFill() const { return tagList_; }

  // "itemtype" (the prefix word), "name", "nameext", "cat", "fullname", else the tag list.
  std::string TagItem(std::string_view tag) const;
  // The tag list alone; a view that holds until the next write.
  std::string_view GetTagItem(std::string_view tag) const;
  void SetTagItem(std::string_view tag, std::string_view value);
  void DeleteTag(std::string_view tag);

  // Change several tags at once; the result is the former values as "tag(old)" joined by ",". Name and
  // NameExt are refused; `refused` gets one log line for each.
  std::string TagListSegmentReplace(std::string_view segment, std::vector<std::string>& refused);
  // Merges each value into the tag's list ("|" for initmods, else ", ").
  std::string TagListSegmentInsert(std::string_view segment, std::vector<std::string>& refused);

  void Clear();
  void ClearTagItems() { tagList_.clear(); }
  // The tag text of a cached record out of its file (FastLoad.cpp); the view holds until the next call.
  std::string_view ReturnFastFileTagList() const;

 private:
  bool IsCached() const { return FilePos > 0; }
  std::string_view TagText() const { return IsCached() ? ReturnFastFileTagList() : tagList_; }
  void MergeCategory(std::string_view entry);
  void AppendCategory(std::string_view entry);

  std::string name_, nameExt_, lcaseName_, lcaseNameExt_, category_;
  std::string tagList_;
};

// Lower-cased name, then lower-cased extension, then type.
std::weak_ordering SortOrder(const clsSystemItem& a, const clsSystemItem& b);

}  // namespace kvr
