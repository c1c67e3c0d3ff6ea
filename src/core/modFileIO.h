// Settings of the program as a whole: kvr.ini, kvrlinks.ini, kvraliaslist.ini.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/Environment.h"

namespace kvr::modFileIO {

// Sets the context of `env.ini` to a section of kvr.ini.
void UseSettings(Environment& env, std::string_view section);

// Every default that depends on the folders, then IniReadUIOptions. `Environment::UserOptions` is set from
// the result.
void InitConfigDefaults(Environment& env);

void IniReadDebugOptions(Environment& env);
void IniWriteDebugOptions(Environment& env);
// [UserFolders] into the folders (a missing or empty key keeps the default), and back.
void IniReadUserFolders(Environment& env);
void IniWriteUserFolders(Environment& env);
// All sections of the options, in file order. A read takes the present value as default.
void IniReadUIOptions(Environment& env);
void IniWriteUIOptions(Environment& env);

void IniReadMRUList(Environment& env);
void IniWriteMRUList(Environment& env);
// Puts the file first; exact comparison; the list holds 4.
void InsertMRUItem(Environment& env, std::string_view file);

// Text shown and link, in file order.
std::vector<std::pair<std::string, std::string>> IniReadKVRLinks(Environment& env);
// The new name of a data file that was moved, "deleted", or "".
std::string IniGetAlias(Environment& env, std::string_view name);

std::vector<std::string> IniReadDataFiles(Environment& env);
void IniWriteDataFiles(Environment& env, const std::vector<std::string>& files);
// Character name and path of each temporary backup; several characters may have one name.
using TempFile = std::pair<std::string, std::string>;
std::vector<TempFile> IniReadTempFiles(Environment& env);
void IniClearTempFiles(Environment& env);
void IniWriteTempFiles(Environment& env, const std::vector<TempFile>& files);

// The settings as at any shutdown: options, debug options, folders, recent files, written to disk.
bool WriteAllSettings(Environment& env);

}  // namespace kvr::modFileIO
