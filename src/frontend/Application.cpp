// The open characters: making, saving, backing up and closing them.
#include "frontend/Application.h"

#include <filesystem>

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modFileIO.h"

namespace kvr {

Application::~Application() {
  for (const std::unique_ptr<KVRCharacter>& character : Chars) character->TerminateItems();
}

KVRCharacter& Application::AddSlot() {
  Chars.push_back(std::make_unique<KVRCharacter>(env_, TheSystem));
  CurChar = Chars.size();
  return *Chars.back();
}

KVRCharacter& Application::CreateNewCharacter() {
  const TraceScope trace("Application:CreateNewCharacter");
  env_.events.StatusText("Creating your character...");
  env_.events.StatusText("The new character is being prepared as character #" +
                         std::to_string(Chars.size() + 1) + "...");
  KVRCharacter& character = AddSlot();
  env_.events.StatusText("The new character is being initialized...");
  character.Name = "Character " + std::to_string(Chars.size());
  character.Player = env_.Config.DefaultPlayerName;
  character.DateCreated = LongDateToday();
  character.InitStartupValues();
  env_.events.StatusText("First log entry is being created...");
  clsLogEntry entry;
  entry.EntryDate = ShortDateToday();
  entry.Caption = "Initial Character Creation";
  entry.Notes = "Character created using BRASK Kivera 4";
  character.Campaign.Log.push_back(std::move(entry));
  env_.events.StatusText("The new character is ready.");
  return character;
}

void Application::RememberFile(std::string_view path) {
  modFileIO::InsertMRUItem(env_, path);
  env_.events.RecentFilesChanged();
}

namespace {

// However the two are written.
bool IsSameFile(std::string_view a, std::string_view b) {
  std::error_code ignored;
  return EqualNoCase(a, b) || std::filesystem::equivalent(Files::Native(a), Files::Native(b), ignored);
}

}  // namespace

Files::Outcome Application::SaveCharacter(KVRCharacter& character, std::string_view path) {
  if (!character.DamagedFile.empty() && IsSameFile(path, character.DamagedFile)) {
    return {"the file could not be read whole; it is left as it is, save under another name"};
  }
  const Files::Outcome outcome = character.FileWrite(path, true);
  if (!outcome) return outcome;
  character.FileName = path;
  env_.Config.CharDir = Files::SplitPath(path).folder;
  RememberFile(path);
  return outcome;
}

std::vector<std::string> Application::WriteTempBackups() {
  std::vector<std::string> paths;
  for (const std::unique_ptr<KVRCharacter>& character : Chars) {
    std::string path = character->FileWriteTempBackup();
    if (!path.empty()) paths.push_back(std::move(path));
  }
  ListTempBackups();
  return paths;
}

void Application::ListTempBackups() {
  std::vector<modFileIO::TempFile> files;
  for (const std::unique_ptr<KVRCharacter>& character : Chars) {
    if (!character->TempBackupFileName.empty())
      files.emplace_back(character->Name, character->TempBackupFileName);
  }
  modFileIO::IniWriteTempFiles(env_, files);
}

void Application::CloseCharacter(std::size_t number) {
  if (number < 1 || number > Chars.size()) return;
  KVRCharacter& character = *Chars[number - 1];
  character.TerminateItems();
  const std::string backup = character.TempBackupFileName;
  Chars.erase(Chars.begin() + static_cast<std::ptrdiff_t>(number - 1));
  CurChar = Chars.empty() ? 0 : 1;
  if (backup.empty()) return;
  if (Files::FileExists(backup)) Files::Delete(backup);
  ListTempBackups();
}

}  // namespace kvr
