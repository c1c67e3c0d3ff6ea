// A trait of the library.
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "library/Arena.h"
#include "library/RecordParts.h"
#include "library/modPrefixes.h"

namespace kvr {

// A trait in the library. Its texts lie in the memory that it was made with, which must outlive it; in its
// own when it was made without, or is a copy. The views that it hands out hold until it is changed.
class clsSystemItem {
 public:
  explicit clsSystemItem(Arena& memory) : memory_(&memory) {}
  clsSystemItem() : own_(std::make_unique<Arena>()), memory_(own_.get()) {}
  clsSystemItem(const clsSystemItem& other);
  clsSystemItem& operator=(const clsSystemItem& other);

  std::int32_t IDKey = 0;
  kvr::ItemType ItemType = kNoType;
  // 0 for a record in memory; above 0: position of the tag text in the cache file, TagListLength bytes.
  // Writing to a cached record does nothing.
  std::int32_t FilePos = 0;
  std::int32_t TagListLength = 0;
  bool Flag = false;
  bool Calculate = false;
  std::int16_t BuildIcon = 0;                          // 1 when adding the trait will ask the user something
  std::string_view DisplayString, DisplayStringShort;  // in the memory of its library

  std::string_view Name() const { return name_; }
  std::string_view NameExt() const { return nameExt_; }
  std::string_view LCaseName() const { return lcaseName_; }
  std::string_view LCaseNameExt() const { return lcaseNameExt_; }
  std::string_view Category() const { return category_; }
  void SetName(std::string_view name);
  void SetNameExt(std::string_view ext);
  void SetCategory(std::string_view list);
  // The list of another record of the same library.
  void TrimCategory() { category_ = Trim(category_); }
  void ShareCategory(std::string_view list) { category_ = list; }
  // Inserts into the cat list each entry of `list` that it lacks.
  void MergeCategories(std::string_view list);

  std::string FullName() const;       // "Name (Ext)"
  std::string FullNameTL() const;     // "Name/TL3 (Ext)"
  std::string CollectionKey() const;  // type + FullName, "2Combat Reflexes"

  // Replaces the content. Pieces split at commas outside parentheses; "name", "nameext" and "cat" go to the
  // fields, the rest to the tag list; "display" of "yes" or "-1" is dropped.
  void NewTagList(std::string_view text);
  // The same from parts whose tags were written to Room() of that many bytes. What "display" says stays.
  char* Room(std::size_t size) { return memory_->Room(size); }
  void TakeParts(const RecordParts& parts);
  // Being shown is the rule, so a tag "display" that says so is dropped.
  void DropNeedlessDisplay();
  // The whole record: the free list, then cat, nameext (if any), name.
  std::string TagList() const;
  std::string_view TagListNoFill() const { return tagList_; }

  // "itemtype" (the prefix word), "name", "nameext", "cat", "fullname", else the tag list.
  std::string TagItem(std::string_view tag) const;
  // The tag list alone.
  std::string_view GetTagItem(std::string_view tag) const;
  void SetTagItem(std::string_view tag, std::string_view value);
  void DeleteTag(std::string_view tag);

  // Change several tags at once; the result is the former values as "tag(old)" joined by ",". Name and
  // NameExt are refused; `refused` gets one log line for each.
  std::string TagListSegmentReplace(std::string_view segment, std::vector<std::string>& refused);
  // Merges each value into the tag's list ("|" for initmods, else ", ").
  std::string TagListSegmentInsert(std::string_view segment, std::vector<std::string>& refused);

  void ClearTagItems() { tagList_ = {}; }
  // The tag text of a cached record out of its file (FastLoad.cpp); the view holds until the next call.
  std::string_view ReturnFastFileTagList() const;

 private:
  bool IsCached() const { return FilePos > 0; }
  std::string_view TagText() const { return IsCached() ? ReturnFastFileTagList() : tagList_; }
  void MergeCategory(std::string_view entry);
  void AppendCategory(std::string_view entry);
  void ReplaceTags(const std::string& tags);
  std::string_view Lowered(std::string_view text);

  std::string_view name_, nameExt_, lcaseName_, lcaseNameExt_, category_;
  std::string_view tagList_;
  std::unique_ptr<Arena> own_;
  Arena* memory_;
};

// Lower-cased name, then lower-cased extension, then type.
std::weak_ordering SortOrder(const clsSystemItem& a, const clsSystemItem& b);

}  // namespace kvr
