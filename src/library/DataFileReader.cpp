// The state machine over a data file's lines: file header, section headers, then each line to its reader.
#include "library/DataFileReader.h"

#include <array>
#include <chrono>

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modLogging.h"
#include "core/modTools.h"
#include "library/ByteCount.h"

namespace kvr {
namespace {

using Reader = DataFileReader::Reader;
using Section = DataFileReader::Section;
using ItemLines::Kind;

constexpr std::array<Section, 21> kSections = {{
    {" ADS ADVANTAGES ", Reader::Items, kAds, Kind::Ad, "Reading Advantages",
     "KVRSystem:AddItemFromDataFile"},
    {" DISADS DISADVANTAGES ", Reader::Items, kDisads, Kind::Ad, "Reading Disadvantages",
     "KVRSystem:AddItemFromDataFile"},
    {" QUIRKS ", Reader::Items, kQuirks, Kind::Ad, "Reading Quirks", "KVRSystem:AddItemFromDataFile"},
    {" PERKS POWERS ", Reader::Items, kPerks, Kind::Ad, "Reading Perks", "KVRSystem:AddItemFromDataFile"},
    {" SKILLS ", Reader::Items, kSkills, Kind::Skill, "Reading Skills", "KVRSystem:AddItemFromDataFile"},
    {" SPELLS ", Reader::Items, kSpells, Kind::Spell, "Reading Spells", "KVRSystem:AddItemFromDataFile"},
    {" STATS ATTRIBUTES ATTR ", Reader::Items, kStats, Kind::Stat, "Reading Attributes",
     "KVRSystem:AddItemFromDataFile"},
    {" EQUIPMENT EQUIP POSSESSIONS ", Reader::Items, kEquipment, Kind::Equipment, "Reading Equipment",
     "KVRSystem:AddItemFromDataFile"},
    {" NEWPACKAGES TEMPLATES META-TRAITS ", Reader::Items, kPackages, Kind::Ad, "Reading Templates",
     "KVRSystem:AddItemFromDataFile"},
    {" GROUPS ", Reader::Groups, kNoType, Kind::Generic, "Reading Groups",
     "KVRSystem:AddRefItemFromDataFile"},
    {" LISTS ", Reader::Lists, kNoType, Kind::Generic, "Reading Lists", "KVRSystem:AddListItemFromDataFile"},
    {" BONUS ", Reader::None, kNoType, Kind::Generic, "Reading Bonus", "KVRSystem:LoadDataFile"},
    {" AUTHOR ", Reader::Author, kNoType, Kind::Generic, "Reading Author", "KVRSystem:LoadDataFile"},
    {" MODS MODIFIERS ", Reader::Mods, kNoType, Kind::Mod, "Reading Modifiers",
     "KVRSystem:AddModItemFromDataFile"},
    {" PACKAGES ", Reader::Packages, kPackages, Kind::Generic, "Reading Packages", "KVRSystem:LoadDataFile"},
    {" SKILLCOSTS SKILLTYPES ", Reader::SkillTypes, kNoType, Kind::Generic, "Reading Skill Types",
     "KVRSystem:AddSkillTypeItemFromDataFile"},
    {" SETTINGS ", Reader::Settings, kNoType, Kind::Generic, "Reading Settings",
     "KVRSystem:HandleSettingChange"},
    {" BASICDAMAGE ", Reader::BasicDamage, kNoType, Kind::Generic, "Reading Basic Damage",
     "KVRSystem:AddBasicDamageFromDataFile"},
    {" CONVERTDICE ", Reader::ConvertDice, kNoType, Kind::Generic, "Reading Convert Dice",
     "KVRSystem:AddDamageBreakFromDataFile"},
    {" BODY ", Reader::Body, kNoType, Kind::Generic, "Reading Body Parts",
     "KVRSystem:AddBodyPartFromDataFile"},
    {"", Reader::None, kNoType, Kind::Generic, "Reading Unknown section", "KVRSystem:LoadDataFile"},
}};
constexpr const Section& kUnknownSection = kSections.back();
constexpr std::size_t kLinesForAStep = 50;

const Section& FindSection(std::string_view name) {
  const std::string word = " " + std::string(name) + " ";
  for (const Section& section : kSections)
    if (name.find(' ') == npos && section.names.find(word) != npos) return section;
  return kUnknownSection;
}

// The text behind a head such as "version=", trimmed; `line` must begin with it.
std::string_view Behind(std::string_view line, std::string_view head) {
  return Trim(line.substr(head.size()));
}

class WaitCursor {
 public:
  explicit WaitCursor(FrontEndEvents& events) : events_(events) { events_.CursorPush(11); }
  ~WaitCursor() { events_.CursorPop(); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  FrontEndEvents& events_;
};

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

void DataFileReader::Read() {
  while (!lines_.AtEnd()) {
    const std::string_view line = lines_.Next(section_ && section_->reader == Reader::Author);
    NoteOddLines();
    if (line.empty() || ReadFileHeaderLine(line)) continue;
    if (line[0] == '[') {
      StartSection(line);
      if (section_ != &kUnknownSection) continue;
    }
    const TraceScope trace(section_ ? section_->trace : kUnknownSection.trace);
    if (!LogFailure(log_, [&] { ReadLine(line); })) Note("This line could not be read", line);
  }
}

void DataFileReader::NoteOddLines() {
  if (!lines_.ThrownAway().empty())
    Note("A comment line threw away the lines joined before it", lines_.ThrownAway());
  if (lines_.CutShort()) Note("The file ends behind a \",\" or \"|\" that joins the next line to it");
}

// Lines that are looked for at the head of the file; a version counts wherever it stands first.
bool DataFileReader::ReadFileHeaderLine(std::string_view line) {
  if (StartsWithNoCase(line, "version=")) {
    if (version_ == 0) version_ = CLngClamped(Val(Behind(line, "version=")));
    return true;
  }
  if (section_) return false;
  if (StartsWithNoCase(line, "program=")) {
    programVersion_ = Behind(line, "program=");
    return true;
  }
  if (!StartsWithNoCase(line, "incomplete")) return false;
  const std::size_t equals = line.find('=');
  if (equals != npos && EqualNoCase(Trim(line.substr(equals + 1)), "yes"))
    log_.LogIndented("File is marked as Incomplete.", LogLevel::Red);
  return true;
}

// The last character of the line is taken to be the closing bracket.
void DataFileReader::StartSection(std::string_view line) {
  section_ = &FindSection(UCase(modTools::WithoutLastLetter(line.substr(1))));
  linesInSection_ = 0;
  if (section_ == &kUnknownSection) TellObserver("An unknown section", line);
  log_.LogIndented(section_->logText);
  status_ = fileName_ + ": " + std::string(section_->logText);
  system_.Env().events.StatusText(status_);
  if (section_->reader == Reader::Body) heading_ = "Humanoid";
  if (section_->reader == Reader::BasicDamage) system_.BasicDamageList.clear();
  if (section_->reader == Reader::ConvertDice) system_.DamageBreaks.clear();
}

void DataFileReader::ReadLine(std::string_view line) {
  if (line[0] == '#') {
    if (!system_.DoCommand(line, heading_))
      NoteWhere("A command that cannot be carried out", line);
    else if (observer_)
      observer_->Command(lines_.LineNumber(), line);
    return;
  }
  const Reader reader = section_ ? section_->reader : Reader::None;
  const bool checksItself = reader == Reader::Author || (reader == Reader::Items && line[0] != '<');
  if (!checksItself && !ParensMatch(line)) return;
  if (section_) ReadSectionLine(line);
}

bool DataFileReader::ParensMatch(std::string_view line) {
  const std::size_t opening = ByteCount(line, '('), closing = ByteCount(line, ')');
  if (opening == closing) return true;
  log_.LogRed("The following line does not have matched sets of parens:");
  log_.LogRed("  " + std::string(line));
  log_.LogRed("There are " + std::to_string(opening) + " '(' and " + std::to_string(closing) + " ')'.");
  NoteWhere("Unmatched parentheses",
            std::to_string(opening) + " '(' and " + std::to_string(closing) + " ')'");
  return false;
}

void DataFileReader::ReadSectionLine(std::string_view line) {
  const bool isHeader = line[0] == '<';
  switch (section_->reader) {
    case Reader::None:
    case Reader::Author:
      return;
    case Reader::Items:
      CountLine();
      return isHeader ? ReadHeader(line) : AddItemFromDataFile(line);
    case Reader::Mods:
      CountLine();
      return isHeader ? ReadHeader(line) : AddModItemFromDataFile(line);
    case Reader::Body:
      CountLine();
      return isHeader ? ReadHeader(line) : AddBodyPartFromDataFile(line);
    case Reader::Groups:
      return isHeader ? ReadHeader(line) : AddRefItemFromDataFile(line);
    case Reader::Lists:
      return isHeader ? ReadHeader(line) : AddListItemFromDataFile(line);
    case Reader::Packages:
      return isHeader ? ReadHeader(line) : AddPackageLineFromDataFile(line);
    case Reader::SkillTypes:
      return AddSkillTypeItemFromDataFile(line);
    case Reader::Settings:
      return system_.HandleSettingChange(line);
    case Reader::BasicDamage:
      return AddBasicDamageFromDataFile(line);
    case Reader::ConvertDice:
      return AddDamageBreakFromDataFile(line);
  }
}

void DataFileReader::ReadHeader(std::string_view line) {
  const bool isCategory = section_->itemType != kNoType;
  heading_ = isCategory ? AddCategoryFromDataFile(line) : ReturnCatNameAndCode(line).name;
}

// A screen update for every line would take longer than the reading.
void DataFileReader::CountLine() {
  if (++linesInSection_ % kLinesForAStep != 0) return;
  status_ += '.';
  system_.Env().events.StatusText(status_);
  system_.Env().events.LetEventsRun();
}

void DataFileReader::Note(std::string_view what, std::string_view found) {
  std::string text(what);
  if (!found.empty()) text.append(": ").append(found);
  log_.LogRed(text + " (" + fileName_ + ", line " + std::to_string(lines_.LineNumber()) + ")");
  TellObserver(what, found);
}

void DataFileReader::NoteWhere(std::string_view what, std::string_view found) {
  log_.LogRed("  (" + fileName_ + ", line " + std::to_string(lines_.LineNumber()) + ")");
  TellObserver(what, found);
}

void DataFileReader::TellObserver(std::string_view what, std::string_view found) {
  if (observer_) observer_->Note(lines_.LineNumber(), what, found);
}

bool KVRSystem::LoadDataFile(std::string_view fileName, std::string& programVersion) {
  TraceScope trace("KVRSystem:LoadDataFile");
  WaitCursor cursor(env_.events);
  const auto start = std::chrono::steady_clock::now();
  programVersion.clear();
  const std::string path = FindDataFile(fileName);
  clsFileReader file;
  if (path.empty() || !file.FileOpen(path)) {
    const std::string message = path.empty() ? "File '" + std::string(fileName) +
                                                   "' was not found in any of the normal folders. Unable to "
                                                   "load it."
                                             : "File '" + path + "' could not be read: " + file.Error();
    env_.log.LogRed(message);
    env_.prompts.MessageBox(message, kProgramTitle, Buttons::Ok);
    return false;
  }
  const std::string name(Files::SplitPath(path).name);
  TellStage("Loading " + name);
  {
    constexpr std::size_t kUsualBytesOfATrait = 256;
    Items.Reserve(file.TextSize() / kUsualBytesOfATrait);
    IndentScope indent(env_.log);
    DataFileReader reader(*this, file, name);
    reader.Read();
    programVersion = reader.ProgramVersion();
  }
  env_.log.LogIndented("File load took " + NumberText(SecondsSince(start)) + " seconds");
  return true;
}

std::string KVRSystem::GetKDFDescription(std::string_view path) {
  constexpr std::string_view kHead = "description=";
  clsFileReader file;
  if (!file.FileOpen(path, 0, TextEncoding::AlwaysUtf8)) return "<file not found>";
  LogicalLines lines(file);
  while (!lines.AtEnd()) {
    const std::string_view line = lines.Next();
    if (line.starts_with('[')) break;
    if (StartsWithNoCase(line, kHead)) return std::string(Behind(line, kHead));
  }
  return "<no description found>";
}

}  // namespace kvr
