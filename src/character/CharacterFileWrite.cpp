// Writing a character: the text of its file, section by section, and the file itself, put in place whole.
#include "character/CharacterFileFields.h"
#include "character/KVRCharacter.h"
#include "core/modTags.h"
#include "richtext/PlainText.h"

namespace kvr {

using savedText::SavedLines;
using savedText::Section;

namespace {

class CharacterFileWriter {
 public:
  explicit CharacterFileWriter(KVRCharacter& character) : c_(character), lines_(character.Env().log) {}

  std::string Text();

 private:
  void WriteSystem();
  void WriteAuthor();
  void WriteOneTagALine(Section section, std::span<const savedFields::Field<KVRCharacter>> fields);
  void WriteShieldArcs();
  void WriteTraits(Section section);
  void WriteTrait(clsItem& item);
  std::string GuardedTags(const clsItem& item);
  void WriteAllMods();
  void WriteMods(clsSortedModCollection& mods, std::int32_t holder);
  void WriteFreeText(Section section, const std::string& text);
  void WriteText(const std::string& text, bool inLogEntry);
  void WriteCampaign();
  void WriteBonuses(Section section, std::vector<std::unique_ptr<clsBonus>>& records);

  template <class Record, class Records>
  void WriteRows(Section section, std::span<const savedFields::Field<Record>> fields, Records&& records) {
    lines_.Head(section);
    for (auto&& record : records) {
      if constexpr (requires { *record; }) {
        savedFields::WriteLine<Record>(fields, *record, lines_);
      } else {
        savedFields::WriteLine<Record>(fields, record, lines_);
      }
    }
    lines_.EndSection();
  }

  KVRCharacter& c_;
  SavedLines lines_;
};

std::string CharacterFileWriter::Text() {
  lines_.Reserve(4096 + 400 * c_.Items.Count());
  lines_.Line("Encoding=UTF-8");
  WriteSystem();
  WriteAuthor();
  WriteOneTagALine(Section::General, savedFields::General());
  WriteShieldArcs();
  WriteRows(Section::Body, savedFields::BodyPart(), c_.Body.Parts());
  WriteOneTagALine(Section::Settings, savedFields::Settings());
  for (Section section :
       {Section::Stats, Section::Advantages, Section::Perks, Section::Disadvantages, Section::Quirks,
        Section::Skills, Section::Spells, Section::Equipment, Section::Packages}) {
    WriteTraits(section);
  }
  WriteAllMods();
  WriteFreeText(Section::Description, c_.Description);
  WriteFreeText(Section::Notes, c_.Notes);
  WriteRows(Section::Groups, savedFields::Group(), c_.Groups);
  WriteRows(Section::Cats, savedFields::Cat(), c_.Cats);
  WriteCampaign();
  WriteBonuses(Section::Bonuses, c_.Bonuses);
  WriteBonuses(Section::Conditionals, c_.Conditionals);
  WriteRows(Section::BasicDamageList, savedFields::BasicDamage(), c_.BasicDamageList);
  WriteRows(Section::DamageBreaks, savedFields::DamageBreak(), c_.DamageBreaks);
  WriteRows(Section::SkillTypes, savedFields::SkillType(), c_.SkillTypes);
  WriteRows(Section::ChangeLog, savedFields::Change(), c_.ChangeLog);
  return lines_.Take();
}

void CharacterFileWriter::WriteSystem() {
  const Folders& folders = c_.Env().Folders;
  lines_.Head(Section::System);
  lines_.TagLine("version", 3);
  lines_.TagLine("lastkey", c_.LastKey);
  lines_.TagLine("dataset", folders.AliasPath(kDataSets, c_.DataSet));
  for (const std::string& file : c_.DataFiles)
    lines_.TagLine("datafile", folders.AliasPath(kDataFiles, file));
  lines_.EndSection();
}

void CharacterFileWriter::WriteAuthor() {
  lines_.Head(Section::Author);
  lines_.Line(kProgramTitle);
  lines_.Line(ProgramVersion());
  lines_.Line("A character in the making, kept as text.");
  lines_.EndSection();
}

void CharacterFileWriter::WriteOneTagALine(Section section,
                                           std::span<const savedFields::Field<KVRCharacter>> fields) {
  lines_.Head(section);
  for (const savedFields::Field<KVRCharacter>& field : fields) {
    if (!field.write) continue;
    field.write(field.tag, c_, lines_);
    if (lines_.LineStarted()) lines_.EndLine();
  }
  lines_.EndSection();
}

void CharacterFileWriter::WriteShieldArcs() {
  lines_.Head(Section::ShieldArcs);
  lines_.TagLine("hexmask", c_.ShieldFacingHexMask);
  for (std::int32_t i = 1; i <= 6; ++i) {
    lines_.Tag("facing", i).TagLine("db", std::int32_t{c_.ShieldFacingDB[static_cast<std::size_t>(i)]});
  }
  lines_.EndSection();
}

void CharacterFileWriter::WriteTraits(Section section) {
  lines_.Head(section);
  const auto type = static_cast<std::size_t>(savedText::TraitTypeOf(section));
  for (clsItem& item : c_.ItemsByType[type]) WriteTrait(item);
  lines_.EndSection();
}

void CharacterFileWriter::WriteTrait(clsItem& item) {
  lines_.Tag("idkey", item.IDKey);
  if (!item.ParentKey().empty()) lines_.Tag("parentkey", item.ParentKey());
  if (!item.ChildKeyList().empty()) lines_.Tag("childkeylist", item.ChildKeyList());
  lines_.Raw("|");
  lines_.RecordText(GuardedTags(item));
  lines_.EndLine();
}

// Replaces ",tag(value)" in a record by the same with its parentheses repaired.
bool RepairField(std::string& record, std::string_view tag, const std::string& value) {
  if (modTags::ParensBalance(value)) return false;
  const std::string written = "," + std::string(tag) + "(" + value + ")";
  const std::size_t at = record.rfind(written);
  if (at == npos) return false;
  std::string repaired = value;
  modTags::RepairParens(repaired);
  record.replace(at + tag.size() + 2, value.size(), repaired);
  return true;
}

// The trait's list for the file. Every setter that a user can reach refuses unbalanced parentheses; this is
// the last guard, since one of them would swallow every tag behind it.
std::string CharacterFileWriter::GuardedTags(const clsItem& item) {
  std::string record = item.TagListForSaving();
  bool repaired = false;
  const std::string& free = item.TagListNoFill();
  if (!modTags::ParensBalance(free)) {
    record.replace(0, free.size(), savedText::RepairTagText(free));
    repaired = true;
  }
  repaired |= RepairField(record, "type", item.SkillType());
  repaired |= RepairField(record, "nameext", item.NameExt());
  repaired |= RepairField(record, "name", item.Name());
  repaired |= RepairField(record, "adds", item.Adds());
  repaired |= RepairField(record, "creates", item.Creates());
  repaired |= RepairField(record, "description", item.Description());
  repaired |= RepairField(record, "notes", item.Notes());
  if (!repaired) return record;
  c_.Env().log.LogRed("'" + item.FullName() + "': an unmatched parenthesis was saved as a bracket.");
  // Tags that stood inside a broken value are tags now; written as they will be read, the next save is the
  // same.
  clsItem asRead;
  asRead.NewTagList(record);
  return asRead.TagListForSaving();
}

void CharacterFileWriter::WriteAllMods() {
  lines_.Head(Section::Mods);
  for (clsItem& item : c_.Items) WriteMods(item.Mods, item.IDKey);
  lines_.EndSection();
}

void CharacterFileWriter::WriteMods(clsSortedModCollection& mods, std::int32_t holder) {
  for (clsMod& mod : mods) {
    lines_.Tag("idkey", mod.IDKey).Tag("parentkey", holder).Raw("|");
    if (modTags::ParensBalance(mod.TagList())) {
      lines_.MarkedText(mod.TagList());
    } else {
      lines_.MarkedText(savedText::RepairTagText(mod.TagList()));
      c_.Env().log.LogRed("'" + mod.FullName() + "': an unmatched parenthesis was saved as a bracket.");
    }
    lines_.EndLine();
    WriteMods(mod.Mods, mod.IDKey);
  }
}

void CharacterFileWriter::WriteFreeText(Section section, const std::string& text) {
  lines_.Head(section);
  WriteText(text, false);
  lines_.EndSection();
}

void CharacterFileWriter::WriteText(const std::string& text, bool inLogEntry) {
  if (c_.Env().Config.SaveRTFasPlainText != 0 && savedText::IsRichText(text)) {
    lines_.FreeText(richtext::PlainText(text), inLogEntry);
  } else {
    lines_.FreeText(text, inLogEntry);
  }
}

void CharacterFileWriter::WriteCampaign() {
  lines_.Head(Section::Campaign);
  savedFields::WriteLine(savedFields::Campaign(), c_.Campaign, lines_);
  lines_.EndSection();
  for (clsLogEntry& entry : c_.Campaign.Log) {
    lines_.Line("");
    lines_.Head(Section::LogEntry);
    savedFields::WriteLine(savedFields::LogEntry(), entry, lines_);
    WriteText(entry.Notes, true);
  }
  lines_.EndSection();
}

std::int32_t NumberOf(const CalcItem* owner) {
  if (auto* item = dynamic_cast<const clsItem*>(owner)) return item->IDKey;
  if (auto* mod = dynamic_cast<const clsMod*>(owner)) return mod->IDKey;
  return 0;
}

void CharacterFileWriter::WriteBonuses(Section section, std::vector<std::unique_ptr<clsBonus>>& records) {
  lines_.Head(section);
  for (const std::unique_ptr<clsBonus>& record : records) {
    lines_.Tag("ownerid", NumberOf(record->Owner));
    savedFields::WriteLine(savedFields::Bonus(), *record, lines_);
  }
  lines_.EndSection();
}

}  // namespace

std::string KVRCharacter::FileText() {
  return CharacterFileWriter(*this).Text();
}

Files::Outcome KVRCharacter::FileWrite(std::string_view path, bool clearDirty) {
  const TraceScope trace("KVRCharacter:FileWrite");
  const Files::Outcome outcome =
      Files::WriteWhole(path, FileText(), clearDirty ? env_.Config.KeepVersions : 0);
  if (!outcome) {
    env_.log.LogRed("'" + std::string(path) + "' could not be saved: " + outcome.error);
  } else if (clearDirty) {
    Dirty = false;
  }
  return outcome;
}

std::string KVRCharacter::FileWriteTempBackup() {
  const TraceScope trace("KVRCharacter:FileWriteTempBackup");
  if (TempBackupFileName.empty()) {
    TempBackupFileName = Files::NewTemporaryFile(env_.Folders.BaseAppDataFolder);
  }
  if (TempBackupFileName.empty()) {
    env_.log.LogRed("No temporary backup of '" + Name + "' could be made in " +
                    env_.Folders.BaseAppDataFolder);
    return "";
  }
  return FileWrite(TempBackupFileName, false) ? TempBackupFileName : "";
}

}  // namespace kvr
