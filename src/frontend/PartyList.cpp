// Party lists: plain lists of character files that are loaded together.
#include "core/clsFileReader.h"
#include "frontend/Application.h"

namespace kvr {

namespace {

constexpr std::string_view kPartyExtension = ".KVR4party";

bool IsAbsolute(std::string_view path) {
  return path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
}

}  // namespace

// A party inside a party is not followed, so a list that names itself ends.
bool Application::LoadParty(std::string_view path) {
  const Files::PathParts parts = Files::SplitPath(path);
  env_.events.StatusText("'" + std::string(parts.name) +
                         "' is a party list. All characters will be loaded...");
  env_.log.LogLine("Loading party: " + std::string(path));
  clsFileReader reader;
  if (!reader.FileOpen(path)) {
    env_.log.LogRed("'" + std::string(path) + "' could not be read: " + reader.Error());
    return false;
  }
  std::vector<std::string> members;
  while (!reader.FileEOF()) {
    const std::string_view line = Trim(reader.FileNextLine());
    if (line.empty()) continue;
    std::string member = env_.Folders.ExpandPath(kCharacters, kNoFolder, line);
    if (!IsAbsolute(member)) member = std::string(parts.folder) + member;
    if (EqualNoCase(Files::LowerExtension(member), kPartyExtension)) {
      env_.log.LogRed("A party list inside a party list is not followed: " + std::string(line));
    } else if (!Files::FileExists(member)) {
      env_.log.LogRed("Party character not found: " + std::string(line));
    } else {
      members.push_back(std::move(member));
    }
  }
  bool loaded = false;
  for (const std::string& member : members) loaded |= LoadTheCharacter(member, false, true);
  RememberFile(path);
  env_.events.StatusText("Party loaded.");
  env_.log.LogLine("Party loaded.");
  return loaded;
}

Files::Outcome Application::PartyWrite(std::string_view path) {
  std::string lines;
  for (const std::unique_ptr<KVRCharacter>& character : Chars) {
    const std::string& file = character->FileName;
    lines += IsAbsolute(file) ? file : Files::PathText(std::filesystem::absolute(Files::Native(file)));
    lines += "\r\n";
  }
  return Files::WriteWhole(path, lines);
}

std::string Application::PartySaveAs() {
  for (const std::unique_ptr<KVRCharacter>& character : Chars) {
    if (!character->FileName.empty() && !character->Dirty) continue;
    env_.prompts.MessageBox(
        "Please save all the loaded characters before trying to save the character party.",
        "Save Party Members", Buttons::Ok);
    return "";
  }
  std::string path = env_.prompts.SaveFileName("Save Party List As", "UNNAMED",
                                               "Party Lists (*.KVR4party)|*.KVR4party|All Files (*.*)|*.*");
  if (path.empty()) return "";
  if (Files::LowerExtension(path).empty()) path += kPartyExtension;
  if (Files::FileExists(path) &&
      env_.prompts.MessageBox("This file already exists. Overwrite it?", "Save Party List As",
                              Buttons::YesNo) != Answer::Yes) {
    return "";
  }
  const Files::Outcome outcome = PartyWrite(path);
  if (outcome) return path;
  env_.prompts.MessageBox("The following error was encountered:\r\n\r\n" + outcome.error,
                          "Save Party List As", Buttons::Ok);
  return "";
}

}  // namespace kvr
