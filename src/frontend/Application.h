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

  Environment& Env() const { return env_; }

  KVRSystem TheSystem;
  std::vector<std::unique_ptr<KVRCharacter>> Chars;
  std::size_t CurChar = 0;  // 1-based; 0 when none
  KVRCharacter* Current() const { return CurChar ? Chars[CurChar - 1].get() : nullptr; }

  // A fresh character, which becomes the current one.
  KVRCharacter& CreateNewCharacter();
  // Loads a character file of any version, or a party list. False when nothing was loaded; why is in the log.
  bool LoadTheCharacter(std::string_view path, bool doNotUseFilename = false, bool usingParty = false);
  // The tolerant number of "version(" behind "[system]"; 0 without either.
  static double GetCharacterFileVersion(std::string_view path);
  static std::vector<std::string> GetCharacterKVR2DataFilesUsed(std::string_view path);

  // Saves the current character and makes the path its own; remembers the file and its folder.
  Files::Outcome SaveCharacter(KVRCharacter& character, std::string_view path);
  // Asks for the name; "" when it was not saved.
  std::string PartySaveAs();
  // One line for each character's FileName.
  Files::Outcome PartyWrite(std::string_view path);
  // Every character's temporary backup; their paths.
  std::vector<std::string> WriteTempBackups();
  // Drops the character; the next one becomes current.
  void CloseCharacter(std::size_t number);

 private:
  bool LoadParty(std::string_view path);

  Environment& env_;
};

}  // namespace kvr
