// The trait library: filled by data files, read by everything else. It outlives every character.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/Environment.h"
#include "core/Files.h"
#include "library/FiledLists.h"
#include "library/ModRecord.h"
#include "library/Records.h"
#include "library/SortedCollection.h"
#include "library/clsSkillCosts.h"
#include "library/clsSystemItem.h"

namespace kvr {

using clsSortedSystemModCollection = SortedCollection<ModRecord>;

// One sort criterion of the user's own order.
struct OrderCriterion {
  std::string tag = "fullname";
  bool ascending = true;
  bool numeric = false;
};

// Lists the records, which lie in the memory of the library.
class clsSortedSystemItemCollection : public SortedCollection<clsSystemItem, clsSystemItem*, Arena> {
 public:
  std::vector<OrderCriterion> OrderBy = {OrderCriterion{}};
  // A second, user-chosen order beside the sorted one; stable. Not kept in step with later inserts.
  void OrderItems();
  clsSystemItem& OrderedItem(std::size_t i) const;

 private:
  std::vector<std::size_t> ordered_;
};

// A value of a numeric sort: the number behind a mark such as "+$", "-#", "$", "#", "+", "-".
double NumberBehindMark(std::string_view text);

class KVRSystem {
 public:
  explicit KVRSystem(Environment& env);
  ~KVRSystem();
  KVRSystem(const KVRSystem&) = delete;
  KVRSystem& operator=(const KVRSystem&) = delete;

  Environment& Env() const { return env_; }

  // --- Content
  clsSortedSystemItemCollection Items;  // keyed type + FullName
  clsSortedCatCollection Cats;          // type + name
  clsSortedRefCollection Groups;        // group + type + name + extension
  clsSortedRefCollection Lists;         // list + name
  clsSortedSystemModCollection Mods;    // SysCollectionKey
  clsSortedPackageCollection Packages;
  std::vector<std::unique_ptr<clsSkillCosts>> SkillTypes;  // file order; names are unique
  std::vector<clsBasicDamage> BasicDamageList;             // file order
  std::vector<clsDamageBreak> DamageBreaks;
  clsSortedStringCollection BodyNames;
  std::vector<clsBodyItem> BodyParts;
  std::vector<std::string> FullTagList;  // tag names known to the editors

  // --- The loaded data set
  std::string DataSet, DataSetPath;  // name and folder; empty when none is loaded
  struct DataFileEntry {
    std::string file;  // as stored, repaired
    std::string path;  // where it was found; "" if it was not
  };
  std::vector<DataFileEntry> DataFiles;
  std::size_t DataSetFileCount() const { return DataFiles.size(); }
  bool UseFastFile = false;
  std::string FastFile;

  // --- Look-ups
  std::int32_t NewKey() { return ++lastKey_; }
  // The counter of a type.
  std::int32_t Count(ItemType type) const;
  // Positions (1-based) and keys of all traits of a type, in sorted order.
  std::vector<std::size_t> ReturnItemIndexes(ItemType type) const;
  std::vector<std::string> ReturnItemCollectionKeys(ItemType type) const;
  // 0 when there is none. Type 0 takes the lowest position of any type; `start` 0 means 1.
  std::size_t ItemPositionByNameAndExt(std::string_view fullName, ItemType type, std::size_t start = 1) const;
  std::size_t ListItemPosByNameAndExt(ItemType type, std::string_view fullName, std::size_t start = 1) const;
  std::size_t ItemPositionByNameOnly(std::string_view fullName, ItemType type, std::size_t start = 1) const;
  // The record itself, found by its key; nullptr when there is none. The fastest road to a trait.
  clsSystemItem* FindItem(std::string_view fullName, ItemType type) const;
  // Positions of all traits with that name (and type, unless 0), whatever their extension.
  std::vector<std::size_t> GetAllItems(std::string_view name, ItemType type) const;
  clsSkillCosts* SkillType(std::string_view name) const;
  ModRecord* FindMod(std::string_view fullName, std::string_view group) const;

  // --- Changes
  void DeleteItem(std::size_t position);
  void DeleteItem(const clsSystemItem& item);
  // Recounts all counters.
  void RebuildItemsByType();
  // A type of that name gives way to the new one, in its place.
  void AddSkillType(std::unique_ptr<clsSkillCosts> skillType);
  void InitFullTagList();
  // All content new and empty; keys start at 1 again. What the loaded data set is called stays.
  void ClearLibrary();

  // --- Data files (DataFileReader.cpp, ItemLines.cpp)
  // Reads one file from top to bottom. `programVersion` gets the text of "Program=". False when there is no
  // such file.
  bool LoadDataFile(std::string_view fileName, std::string& programVersion);
  static std::string GetKDFDescription(std::string_view path);
  // Where a data file lies: the system's folder first, then the user's; a folder in the name is kept. "" if
  // nowhere.
  std::string FindDataFile(std::string_view fileName) const;

  // An item line as the library's tag string: "name(..),nameext(..),..." with the bare second field named
  // after the trait kind.
  static std::string ReturnAdItem(std::string_view line);
  static std::string ReturnSkillItem(std::string_view line);
  static std::string ReturnSpellItem(std::string_view line);
  static std::string ReturnStatItem(std::string_view line);
  static std::string ReturnEquipmentItem(std::string_view line);
  static std::string ReturnModItem(std::string_view line);
  static std::string ReturnGenericItem(std::string_view line);

  // An empty record in the library's memory, where it stays until the library is cleared.
  clsSystemItem& NewItem();
  // Makes ready for a record of that type and name, which is to be added soon.
  void ExpectItem(ItemType type, std::string_view name, std::string_view ext) const;
  // Adds a record as the reader does: merges categories with a record of that key and replaces it, counts it.
  // Attributes have no categories.
  void AddOrReplaceItem(clsSystemItem& item, std::string_view currentCategory);
  void CheckForNewCats(std::string_view list, ItemType type);

  // --- Data file commands and settings (Commands.cpp, DeleteByTag.cpp)
  // A "#" line. What cannot be done is logged, and the result is then false. `currentCategory` is what a
  // cloned trait is filed under.
  bool DoCommand(std::string_view line, std::string_view currentCategory = {});
  // A line of [SETTINGS]: holds for as long as the data set is loaded.
  void HandleSettingChange(std::string_view line);

  // --- Data sets (DataSets.cpp, DataFileFlags.cpp)
  // Loads a set by path or name. False when it was cancelled: the library then stands as it was.
  bool LoadDataSet(std::string_view path);
  // Where a set's path text leads: the user's data sets, the shipped ones, "data sets\" below the program
  // folder.
  std::string FindDataSet(std::string_view path) const;
  bool SaveDataSet();
  static Files::Outcome WriteDataSetFile(std::string_view path, const std::vector<std::string>& files);
  std::vector<std::string> ReadDataSetFiles(std::string_view path) const;
  // One text with a block for each kind of notice; `notices` is "" when nothing was found. False: the user
  // cancelled.
  bool CheckDataFileFlags(const std::vector<std::string>& files, std::string& notices);
  void LoadDataSetCatCleanup();
  // The texts that the lists show, for every trait (DisplayStrings.cpp), and the marks of those that will
  // ask.
  void BuildDisplayStrings();
  void BuildIcons();

 private:
  friend class DataFileReader;

  std::string AskForDataSet(std::string_view path);
  std::vector<std::string> RepairDataSetFiles(std::vector<std::string> files);
  std::vector<std::pair<std::string, std::string>> LoadDataSetFiles();
  std::string AskForDataFile(const std::string& entry);
  void TellOfNewerVersions(const std::vector<std::pair<std::string, std::string>>& programVersions);
  void FileUnder(std::string_view currentCategory, clsSystemItem& item);
  // A stage of a load, for the log and for whoever waits.
  void TellStage(std::string_view text);
  // The cache of a loaded set, over the files in DataFiles (FastLoad.cpp).
  bool LoadFastFileIfValid();
  void BuildFastFile();

  Environment& env_;
  Arena itemRecords_, itemTexts_;  // apart, so that a walk over the records meets nothing else
  FiledLists filedLists_;
  std::int32_t lastKey_ = 0;
  std::array<std::int32_t, 10> counts_{};
  std::unordered_map<std::string, std::size_t> skillTypeIndex_;  // by lower-cased name
  bool dataSetChanged_ = false;
};

}  // namespace kvr
