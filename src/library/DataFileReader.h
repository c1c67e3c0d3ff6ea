// Reads one data file into the library: sections, category headers, and the line of each section. See
// docs/formats/data-file.md for the format. All that the reader keeps lives only while the file is read.
#pragma once

#include <string>
#include <string_view>

#include "core/clsFileReader.h"
#include "library/DataFileObserver.h"
#include "library/ItemLines.h"
#include "library/KVRSystem.h"
#include "library/LogicalLines.h"

namespace kvr {

class DataFileReader {
 public:
  // `fileName` is for messages.
  DataFileReader(KVRSystem& system, clsFileReader& file, std::string fileName,
                 DataFileObserver* observer = nullptr)
      : system_(system),
        log_(system.Env().log),
        lines_(file),
        fileName_(std::move(fileName)),
        observer_(observer) {}

  // From top to bottom. What cannot be read is logged, and reading goes on with the next line.
  void Read();
  const std::string& ProgramVersion() const { return programVersion_; }

  enum class Reader {
    None,
    Items,
    Groups,
    Author,
    Mods,
    Packages,
    SkillTypes,
    Settings,
    BasicDamage,
    ConvertDice,
    Lists,
    Body
  };
  struct Section {
    std::string_view names;  // upper case, between blanks
    Reader reader;
    ItemType itemType;
    ItemLines::Kind kind;  // of its item lines
    std::string_view logText;
    const char* trace;  // what a failure in one of its lines is logged under
  };

 private:
  // --- Lines of the whole file
  bool ReadFileHeaderLine(std::string_view line);
  void StartSection(std::string_view line);
  void ReadLine(std::string_view line);
  bool ParensMatch(std::string_view line);
  void ReadSectionLine(std::string_view line);
  void ReadHeader(std::string_view line);
  void CountLine();
  void NoteOddLines();
  // Logs "what: found" with the file and the line that it is about.
  void Note(std::string_view what, std::string_view found = {});
  // Logs the file and the line alone, behind lines that tell the rest in their own words.
  void NoteWhere(std::string_view what, std::string_view found);
  void TellObserver(std::string_view what, std::string_view found);

  // --- Headers
  struct Heading {
    std::string name, extra;
  };
  // "<Name>", "<Name:Code>", or another pair of marks and divider; the name may stand in quotes. A bad one
  // has an empty name, and `complaint` and the line are logged.
  Heading ReadHeading(std::string_view line, std::string_view marks, std::string_view divider,
                      std::string_view complaint);
  Heading ReturnCatNameAndCode(std::string_view line);
  Heading ReturnPackageNameAndComment(std::string_view line);
  std::string AddCategoryFromDataFile(std::string_view line);

  // --- Section lines
  void AddItemFromDataFile(std::string_view line);
  void NoteOddities(const ItemLines::Notes& notes);
  void AddRefItemFromDataFile(std::string_view line);
  void AddListItemFromDataFile(std::string_view line);
  void AddModItemFromDataFile(std::string_view line);
  void AddPackageLineFromDataFile(std::string_view line);
  void AddSkillTypeItemFromDataFile(std::string_view line);
  void AddBasicDamageFromDataFile(std::string_view line);
  void AddDamageBreakFromDataFile(std::string_view line);
  void AddBodyPartFromDataFile(std::string_view line);

  KVRSystem& system_;
  ActivityLog& log_;
  LogicalLines lines_;
  std::string fileName_;
  DataFileObserver* observer_;  // may be none
  std::string programVersion_;
  const Section* section_ = nullptr;  // before the first header
  std::int32_t version_ = 0;
  std::string heading_;  // current category, group, list or body
  clsPackage* package_ = nullptr;
  std::size_t linesInSection_ = 0;
  std::string status_;
};

}  // namespace kvr
