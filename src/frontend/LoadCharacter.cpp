// Loading one character: which format its file has, what the user must be asked, and what its name becomes.
#include "character/SavedText.h"
#include "core/Numbers.h"
#include "core/clsFileReader.h"
#include "frontend/Application.h"

namespace kvr {

namespace {

std::string NameOf(std::string_view path) {
  return std::string(Files::SplitPath(path).name);
}

std::string ListOfFiles(const std::vector<std::string>& files) {
  std::string text;
  for (const std::string& file : files) text += " > " + file + "\r\n";
  return text;
}

// No recalculation while a character is being constructed.
class CalculationPause {
 public:
  explicit CalculationPause(Config& config)
      : config_(config), recalc_(config.NoAutoRecalc), secondary_(config.NoCalcSecondaryFeatures) {
    config_.NoAutoRecalc = config_.NoCalcSecondaryFeatures = -1;
  }
  ~CalculationPause() {
    config_.NoAutoRecalc = recalc_;
    config_.NoCalcSecondaryFeatures = secondary_;
  }
  CalculationPause(const CalculationPause&) = delete;
  CalculationPause& operator=(const CalculationPause&) = delete;

 private:
  Config& config_;
  std::int32_t recalc_, secondary_;
};

}  // namespace

double Application::GetCharacterFileVersion(std::string_view path) {
  clsFileReader reader;
  reader.FileOpen(path);
  bool inSystem = false;
  while (!reader.FileEOF()) {
    const std::string_view line = reader.FileNextLine();
    if (!inSystem) {
      inSystem = EqualNoCase(line, "[system]");
    } else if (StartsWithNoCase(line, "version(")) {
      return Val(line.substr(line.find('(') + 1));
    }
  }
  return 0;
}

std::vector<std::string> Application::GetCharacterKVR2DataFilesUsed(std::string_view path) {
  clsFileReader reader;
  reader.FileOpen(path);
  std::vector<std::string> files;
  bool inSystem = false;
  while (!reader.FileEOF()) {
    const std::string_view line = reader.FileNextLine();
    if (line.starts_with('[')) inSystem = EqualNoCase(line, "[system]");
    if (!inSystem) continue;
    savedText::ForEachTag(line, [&](std::string_view tag, std::string_view value) {
      if (EqualNoCase(tag, "datafile")) files.emplace_back(Trim(value));
    });
  }
  return files;
}

bool Application::LoadTheCharacter(std::string_view path, bool doNotUseFilename, bool usingParty) {
  const TraceScope trace("Application:LoadTheCharacter");
  if (!Files::FileExists(path)) {
    env_.log.LogRed("There is no file '" + std::string(path) + "'.");
    return false;
  }
  if (Files::LowerExtension(path) == ".kvr4party") return LoadParty(path);
  env_.log.LogLine("LoadTheCharacter: " + std::string(path));
  const std::size_t before = Chars.size();
  const auto drop = [&] {
    if (Chars.size() == before) return;
    Current()->Dirty = false;
    CloseCharacter(CurChar);
  };
  try {
    if (LoadOne(path, doNotUseFilename, usingParty)) return true;
  } catch (...) {
    drop();
    throw;
  }
  drop();
  return false;
}

bool Application::LoadOne(std::string_view path, bool doNotUseFilename, bool usingParty) {
  const std::string quotedName = "'" + NameOf(path) + "'";
  env_.events.StatusText(quotedName + " is being prepared as character #" + std::to_string(Chars.size() + 1) +
                         "...");
  KVRCharacter& character = [&]() -> KVRCharacter& {
    const CalculationPause pause(env_.Config);
    return AddSlot();
  }();
  character.InitSkillTypes();
  character.InitBasicDamageList();
  character.InitDamageBreaks();
  character.InitCats();
  character.InitGroups();

  const double version = GetCharacterFileVersion(path);
  env_.log.LogLine("CharFileVer = " + NumberText(version));
  if (!ReadAnyVersion(character, path, version)) return false;
  if (version >= 3 && !doNotUseFilename) KeepFileName(character, path);
  if (!doNotUseFilename && !usingParty) RememberFile(path);
  if (!doNotUseFilename) env_.Config.CharDir = Files::SplitPath(path).folder;

  env_.events.StatusText(quotedName + " is now being calculated...");
  character.RecalculateLoaded();
  character.Dirty = doNotUseFilename || version < 3;
  env_.events.StatusText(quotedName + " is now ready.");
  env_.events.LetEventsRun();
  return true;
}

bool Application::ReadAnyVersion(KVRCharacter& character, std::string_view path, double version) {
  const std::string quotedName = "'" + NameOf(path) + "'";
  if (version >= 3) {
    env_.events.StatusText(quotedName + " is now being loaded & integrated...");
    if (!character.FileRead(path)) return false;
    env_.events.StatusText(quotedName + " is now character #" + std::to_string(CurChar) + ".");
    return true;
  }
  if (!ConfirmKVR2(character, path)) {
    env_.log.LogRed(quotedName + " was not loaded: its file has format " + NumberText(version) +
                    ", and its conversion was not confirmed.");
    return false;
  }
  return character.FileReadKVR2(path);
}

bool Application::ConfirmKVR2(const KVRCharacter& character, std::string_view path) {
  const std::string compatibility =
      "You are loading a KVR 2 character."
      " There are many items from KVR 2 that are not compatible with the way KVR now works."
      "\r\n\r\nThis character was created with these data files:\r\n\r\n" +
      ListOfFiles(GetCharacterKVR2DataFilesUsed(path)) +
      "\r\nYou currently have these data files loaded:\r\n\r\n" + ListOfFiles(character.DataFiles) +
      "\r\nYou should be sure before loading this character that the information from the character's set"
      " of data files is adequately covered by the currently loaded files. This is because information"
      " from the second set will need to be used to fill in the blanks."
      "\r\n\r\nIf you're ready to load this character using the currently loaded data files, click OK."
      " If not, click Cancel, and then load a set of data files that will serve for"
      " this character and try again.";
  if (env_.prompts.MessageBox(compatibility, kProgramTitle, Buttons::OkCancel) == Answer::Cancel)
    return false;
  constexpr std::string_view kConversion =
      "This character will be converted to the new character format."
      " You will need to do a Resynchronize in order to update items"
      " and features to ones compatible with the new version."
      " If you wish to keep the old, version 2, character, be sure to"
      " save the newly converted character to a different file.";
  return env_.prompts.MessageBox(kConversion, kProgramTitle, Buttons::OkCancel) != Answer::Cancel;
}

// A base file is only a starting point, so its character has no file of its own; one that was read in part
// is kept as it is for whoever can mend it.
void Application::KeepFileName(KVRCharacter& character, std::string_view path) {
  const bool hasOwnFile = Files::LowerExtension(path) != ".kvr4base" && character.DamagedFile.empty();
  character.FileName = hasOwnFile ? path : std::string_view();
}

}  // namespace kvr
