// Reading a character: the sections of its file, line by line, and what must happen once all records are
// there. Whatever stands in the file, reading goes on: a line that can't be used is logged and left out.

#include <set>

#include "character/CharacterFileFields.h"

#include "character/KVRCharacter.h"
#include "character/Parents.h"
#include "core/Numbers.h"
#include "core/clsFileReader.h"

namespace kvr {

using savedText::Section;

namespace {

class SectionReader {
 public:
  SectionReader(KVRCharacter& character, clsFileReader& reader) : c_(character), reader_(reader) {}

  // False when the file has a format below 3.
  bool Run();
  // The file ended before its end.
  bool Cut() const { return cut_; }

 private:
  bool NextLine();
  void BeginSection(Section section);
  void FinishSection();
  void ReadRecord();
  void ReadSafely(std::string_view line);
  void ReadLine(std::string_view line);

  void ReadSystem(std::string_view line);
  void ReadAuthor(std::string_view line);
  void ReadShieldArc(std::string_view line);
  void ReadLog(std::string_view line);
  void ReadBodyPart(std::string_view line);
  void ReadSkillType(std::string_view line);
  void FinishLogEntry();
  void CheckBodyVersion();
  void ReportCut();

  template <class Record>
  Record Parsed(std::span<const savedFields::Field<Record>> fields, std::string_view line) {
    Record record;
    savedFields::ReadLine(fields, line, record);
    return record;
  }

  KVRCharacter& c_;
  clsFileReader& reader_;
  Section section_ = Section::None;
  std::string_view line_;
  bool blank_ = false, blankBefore_ = false;  // the last two lines taken
  bool sawLastSection_ = false;
  bool cut_ = false;
  bool tooOld_ = false;
  std::string text_;        // free text, gathered over lines
  bool entryOpen_ = false;  // the last entry of the log takes the text
  std::size_t authorLines_ = 0;
  std::string authorVersion_;
  std::set<std::string> skillTypes_;  // lower-cased names
};

bool SectionReader::NextLine() {
  if (reader_.FileEOF()) return false;
  line_ = reader_.FileNextLine();
  blankBefore_ = blank_;
  blank_ = line_.empty();
  return true;
}

bool SectionReader::Run() {
  bool more = NextLine();
  while (more && !tooOld_) {
    const Section head = savedText::SectionOfHead(line_);
    if (head != Section::None) {
      FinishSection();
      BeginSection(head);
      more = NextLine();
    } else if (savedText::TraitTypeOf(section_) != kNoType) {
      ReadRecord();
      more = !line_.empty() || !reader_.FileEOF();
    } else {
      if (!line_.empty()) ReadSafely(line_);
      more = NextLine();
    }
  }
  if (tooOld_) return false;
  FinishSection();
  ReportCut();
  return true;
}

// A record of a trait section and the lines that continue it; afterwards line_ is the line that ended it, or
// empty at the end of the file.
void SectionReader::ReadRecord() {
  std::string_view first = line_;
  std::string joined;
  bool ended = false;
  line_ = {};
  while (NextLine()) {
    if (savedText::EndsRecord(line_)) {
      ended = true;
      break;
    }
    if (joined.empty()) joined = first;
    joined += "\r\n";
    joined += line_;
  }
  if (!ended) line_ = {};
  std::string_view record = joined.empty() ? first : joined;
  record = record.substr(0, record.find_last_not_of("\r\n") + 1);
  if (!record.empty()) ReadSafely(record);
}

void SectionReader::BeginSection(Section section) {
  section_ = section;
  text_.clear();
  entryOpen_ = false;
  switch (section) {
    case Section::System:
      c_.DataFiles.clear();
      break;
    case Section::Groups:
      c_.Groups.Clear();
      break;
    case Section::Cats:
      c_.Cats.Clear();
      break;
    case Section::BasicDamageList:
      c_.BasicDamageList.clear();
      break;
    case Section::DamageBreaks:
      c_.DamageBreaks.clear();
      break;
    case Section::SkillTypes:
      c_.SkillTypes.clear();
      skillTypes_.clear();
      break;
    case Section::ChangeLog:
      c_.ChangeLog.clear();
      sawLastSection_ = true;
      break;
    case Section::Body:
      c_.Body.Clear();
      break;
    default:
      break;
  }
}

void SectionReader::FinishSection() {
  switch (section_) {
    case Section::Description:
      c_.Description = savedText::LineBreaksFromMarks(text_);
      break;
    case Section::Notes:
      c_.Notes = savedText::LineBreaksFromMarks(text_);
      break;
    case Section::LogEntry:
      FinishLogEntry();
      break;
    case Section::Body:
      CheckBodyVersion();
      break;
    default:
      break;
  }
}

// A failure in one line costs that line only.
void SectionReader::ReadSafely(std::string_view line) {
  try {
    if (savedText::TraitTypeOf(section_) != kNoType) {
      c_.AddItemFromSaved(savedText::TraitTypeOf(section_), line);
    } else if (line.find(savedText::kLineMark) == npos) {
      ReadLine(line);
    } else if (section_ == Section::Description || section_ == Section::Notes) {
      text_ += line;
    } else {
      ReadLine(savedText::LineBreaksFromMarks(line));
    }
  } catch (const KVRError& error) {
    c_.Env().log.LogRed(FailureText(error));
  }
}

void SectionReader::ReadLine(std::string_view line) {
  switch (section_) {
    case Section::System:
      return ReadSystem(line);
    case Section::General:
      return savedFields::ReadLine(savedFields::General(), line, c_);
    case Section::Description:
    case Section::Notes:
      text_ += line;
      return;
    case Section::Groups: {
      auto group = std::make_unique<clsRefItem>(Parsed(savedFields::Group(), line));
      const std::string key = clsSortedRefCollection::GroupKeyOf(*group);
      c_.Groups.Add(std::move(group), key);
      return;
    }
    case Section::Cats: {
      auto cat = std::make_unique<clsCategory>(Parsed(savedFields::Cat(), line));
      const std::string key = clsSortedCatCollection::KeyOf(*cat);
      c_.Cats.Add(std::move(cat), key);
      return;
    }
    case Section::Mods:
      return c_.AddModFromSaved(line);
    case Section::Campaign:
      return c_.AddCampaignFromSaved(line);
    case Section::LogEntry:
      return ReadLog(line);
    case Section::Bonuses:
      return c_.AddBonusFromSaved(line);
    case Section::Conditionals:
      return c_.AddConditionalFromSaved(line);
    case Section::BasicDamageList:
      c_.BasicDamageList.push_back(Parsed(savedFields::BasicDamage(), line));
      return;
    case Section::DamageBreaks:
      c_.DamageBreaks.push_back(Parsed(savedFields::DamageBreak(), line));
      return;
    case Section::SkillTypes:
      return ReadSkillType(line);
    case Section::Settings:
      return savedFields::ReadLine(savedFields::Settings(), line, c_);
    case Section::Author:
      return ReadAuthor(line);
    case Section::ChangeLog:
      c_.ChangeLog.push_back(Parsed(savedFields::Change(), line));
      return;
    case Section::Body:
      return ReadBodyPart(line);
    case Section::ShieldArcs:
      return ReadShieldArc(line);
    default:
      return;
  }
}

void SectionReader::ReadSystem(std::string_view line) {
  const Folders& folders = c_.Env().Folders;
  savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
    value = Trim(value);
    if (EqualNoCase(tag, "version")) {
      // The whole rest of the line, so that a line that was cut reads as GetCharacterFileVersion reads it.
      tooOld_ = Val(line.substr(line.find('(') + 1)) < 3;
    } else if (EqualNoCase(tag, "lastkey")) {
      c_.NoteSavedKey(savedText::ToLong(value));
    } else if (EqualNoCase(tag, "dataset")) {
      c_.DataSet = folders.ExpandPath(kDataSets, kNoFolder, value);
    } else if (EqualNoCase(tag, "datafile")) {
      c_.DataFiles.push_back(folders.ExpandPath(kDataFiles, kNoFolder, value));
    }
  });
  if (tooOld_) {
    c_.Env().prompts.MessageBox(
        "The file format was radically changed, and will not read this version of a saved character.",
        kProgramTitle, Buttons::Ok);
  }
}

void SectionReader::ReadAuthor(std::string_view line) {
  if (++authorLines_ == 2) authorVersion_ = line;
}

void SectionReader::ReadShieldArc(std::string_view line) {
  std::int32_t facing = 0;
  savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
    if (EqualNoCase(tag, "hexmask")) {
      c_.ShieldFacingHexMask = Trim(value);
    } else if (EqualNoCase(tag, "facing")) {
      facing = savedText::ToLong(value);
    } else if (EqualNoCase(tag, "db") && facing >= 1 && facing <= 6) {
      c_.ShieldFacingDB[static_cast<std::size_t>(facing)] = savedText::ToInteger(value);
    }
  });
}

void SectionReader::ReadLog(std::string_view line) {
  if (line.find("date(") == npos) {
    text_ += line;
    return;
  }
  FinishLogEntry();
  c_.Campaign.Log.push_back(Parsed(savedFields::LogEntry(), line));
  entryOpen_ = true;
}

// The text gathered belongs to the open entry; a text without one gets an entry of its own.
void SectionReader::FinishLogEntry() {
  if (text_.empty()) return;
  if (!entryOpen_) c_.Campaign.Log.emplace_back();
  c_.Campaign.Log.back().Notes = savedText::LineBreaksFromMarks(text_);
  text_.clear();
  entryOpen_ = false;
}

void SectionReader::ReadBodyPart(std::string_view line) {
  clsBodyItem part = Parsed(savedFields::BodyPart(), line);
  part.Freeze = true;
  c_.Body.Add(std::move(part));
}

void SectionReader::ReadSkillType(std::string_view line) {
  auto skillType = std::make_unique<clsSkillCosts>();
  savedFields::ReadLine(savedFields::SkillType(), line, *skillType);
  skillType->CalcValues();
  if (skillTypes_.insert(LCase(skillType->Name)).second) c_.SkillTypes.push_back(std::move(skillType));
}

void SectionReader::CheckBodyVersion() {
  const std::vector<std::string_view> numbers =
      modNewParser::ParseSplitChars(authorVersion_, ".", modNewParser::kPlain);
  const bool isVersion = numbers.size() == 3 && std::all_of(numbers.begin(), numbers.end(), IsNumeric);
  if (!isVersion || Val(numbers[0]) != 4 || Val(numbers[1]) != 0 || Val(numbers[2]) >= 315) return;
  ActivityLog& log = c_.Env().log;
  log.LogLine("Early characters had incorrect body part information.");
  log.LogLine("Resynchronizing body to obtain correct information.");
  c_.InitBodyParts();
  log.LogLine("Visit the Protection window to correct and reset armor values, if necessary.");
}

// A whole file ends in its last section and an empty line.
void SectionReader::ReportCut() {
  if (sawLastSection_ && blank_ && blankBefore_) return;
  c_.Env().log.LogRed("The character file seems to have lost its end: it stops at line " +
                      std::to_string(reader_.LineNumber()) +
                      (sawLastSection_ ? "." : ", before its last section."));
  cut_ = true;
}

// The keys of the children: those that the parent lists, in its order, then those that only name it as
// parent.
std::string ChildListOf(const clsItem& parent, const std::vector<const clsItem*>& children) {
  std::set<std::string, std::less<>> open;
  for (const clsItem* child : children) open.insert(child->KeyText());
  std::string list;
  auto take = [&](std::string_view key) {
    const auto place = open.find(key);
    if (place == open.end()) return;
    open.erase(place);
    if (!list.empty()) list += ',';
    list += key;
  };
  for (std::string_view key :
       modNewParser::ParseSplitChars(parent.ChildKeyList(), ",", modNewParser::kPlain)) {
    take(key);
  }
  for (const clsItem* child : children) take(child->KeyText());
  return list;
}

}  // namespace

bool KVRCharacter::FileRead(std::string_view path) {
  const TraceScope trace("KVRCharacter:FileRead");
  env_.log.LogLine("Loading character '" + std::string(path) + "'...");
  clsFileReader reader;
  if (!reader.FileOpen(path, 0, TextEncoding::AlwaysUtf8)) {
    env_.log.LogRed("'" + std::string(path) + "' could not be read: " + reader.Error());
    return false;
  }
  if (!ReadSections(reader)) return false;
  DamagedFile = readInPart_ ? std::string(path) : "";
  FinishLoading();
  env_.log.LogLine("Character loaded.");
  return true;
}

bool KVRCharacter::ReadSections(clsFileReader& reader) {
  for (const clsItem& stat : ItemsByType[kStats]) Items.Remove(stat.KeyText());
  ItemsByType[kStats].Clear();
  Bonuses.clear();
  Conditionals.clear();
  Taboos.clear();
  Groups.Clear();
  Cats.Clear();
  TokenCache.Clear();
  AltFlexFiles.clear();
  ChangeLog.clear();
  Campaign.Log.clear();

  savedFile_ = std::make_unique<SavedFileState>();
  SectionReader sections(*this, reader);
  const bool readable = sections.Run();
  AddDoubledRecords();
  readInPart_ = sections.Cut() || savedFile_->leftOut;
  savedFile_.reset();
  RepairFamilies();
  return readable;
}

// Old files, and files that were cut or edited, may hold a child without its parent or a parent that does not
// list its child. A child counts in its parent's points, so both sides must name each other.
void KVRCharacter::RepairFamilies() {
  std::unordered_map<const clsItem*, std::vector<const clsItem*>> children;
  for (clsItem& item : Items) {
    if (item.ParentKey().empty()) continue;
    if (HasSoundParents(item)) {
      const clsItem* parent = Items.Item(std::string_view(item.ParentKey()));
      item.SetParentKey(parent->KeyText());  // it may have been written "K5"
      children[parent].push_back(&item);
      continue;
    }
    env_.log.LogRed("'" + item.FullName() + "' had no usable parent (" + item.ParentKey() +
                    "); it stands alone now.");
    item.SetParentKey("");
  }
  for (clsItem& item : Items) {
    const auto own = children.find(&item);
    if (own == children.end()) {
      item.SetChildKeyList("");
    } else {
      item.SetChildKeyList(ChildListOf(item, own->second));
    }
  }
}

// True if the chain of parents leads to a trait without one.
bool KVRCharacter::HasSoundParents(const clsItem& item) const {
  const clsItem* at = &item;
  for (std::size_t depth = 0; depth < kDeepestFamily; ++depth) {
    if (at->ParentKey().empty()) return true;
    at = Items.Item(std::string_view(at->ParentKey()));
    if (!at) return false;
  }
  return false;
}

void KVRCharacter::FinishLoading() {
  const TraceScope trace("KVRCharacter:FinishLoading");
  CreateAllAffectsLinks();
  for (clsItem& item : Items) AddTaboosFromOwner(item);
  Campaign.Calculate();
  RecalculateLoaded();
  if (const clsItem* techLevel = FindItem("Tech Level", kStats)) {
    TL = static_cast<std::int16_t>(std::clamp(CLngClamped(techLevel->Score()), -32768, 32767));
  }
  Dirty = false;
}

void KVRCharacter::RecalculateLoaded() {
  FirstFailure failure;
  failure.Run([this] { CalcPointCosts(); });
  failure.Run([this] { RecalculateAll(); });
  try {
    failure.PassOn();
  } catch (const SolverFailure& formula) {
    env_.log.LogRed("A formula of '" + Name +
                    "' fails, so some values are those of its file: " + formula.what());
  }
}

}  // namespace kvr
