// The program without a window: the library, the open characters, and the operations on whole files that
// every front end shares.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "character/KVRCharacter.h"
#include "core/Environment.h"
#include "library/KVRSystem.h"

namespace kvr {

class Application {
 public:
  explicit Application(Environment& env) : TheSystem(env), env_(env) {}
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  Environment& Env() const { return env_; }

  KVRSystem TheSystem;
  std::vector<std::unique_ptr<KVRCharacter>> Chars;
  std::size_t CurChar = 0;  // 1-based; 0 when none
  KVRCharacter* Current() const { return CurChar ? Chars[CurChar - 1].get() : nullptr; }

  // A fresh character, which becomes the current one.
  KVRCharacter& CreateNewCharacter();
  // Loads a character file of any version, or a party list. False when nothing was loaded; why is in the log.
  // `doNotUseFilename` is for recovered backups: the character has no name of its own and counts as unsaved.
  // A member of a party (`usingParty`) does not enter the recent files. A character with a failing formula
  // opens with the values of its file.
  bool LoadTheCharacter(std::string_view path, bool doNotUseFilename = false, bool usingParty = false);
  // The tolerant number of "version(" behind "[system]"; 0 without either.
  static double GetCharacterFileVersion(std::string_view path);
  static std::vector<std::string> GetCharacterKVR2DataFilesUsed(std::string_view path);

  // Saves the character and makes the path its own; remembers the file and its folder. After a failure
  // everything is as before, the old file included.
  Files::Outcome SaveCharacter(KVRCharacter& character, std::string_view path);
  // Asks for the name; "" when it was not saved.
  std::string PartySaveAs();
  // One line for each character's FileName.
  Files::Outcome PartyWrite(std::string_view path);
  // Every character's temporary backup, listed in the settings for the next start; their paths.
  std::vector<std::string> WriteTempBackups();
  // Drops the character and its temporary backup; the first of the others becomes current.
  void CloseCharacter(std::size_t number);

 private:
  KVRCharacter& AddSlot();
  bool LoadOne(std::string_view path, bool doNotUseFilename, bool usingParty);
  bool ReadAnyVersion(KVRCharacter& character, std::string_view path, double version);
  bool ConfirmKVR2(const KVRCharacter& character, std::string_view path);
  void KeepFileName(KVRCharacter& character, std::string_view path);
  bool LoadParty(std::string_view path);
  void ListTempBackups();
  void RememberFile(std::string_view path);

  Environment& env_;
};

}  // namespace kvr
