// Settings files: "[Section]" and "Key=Value" text. Keys and sections ignore case, the first occurrence wins,
// a line beginning with ";" is a comment, and what a writer does not know stays in the file as it is. A file
// is read once, at its first use; changes are held until Flush.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvr {

class ActivityLog;
class IniFile;

class modINI {
 public:
  explicit modINI(ActivityLog& log);
  ~modINI();

  // Both are trimmed and kept for the calls that follow. A call without a context shows
  // "[Section] and FileName Not Registered in Private.Ini!" (title "IniFile Logic Error") in the log and
  // returns nothing.
  void IniSetContext(std::string_view section, std::string_view file);

  // The leading integer with its sign, 0 when there is none or the value is empty; `fallback` when the key is
  // missing.
  std::int32_t IniGetInt(std::string_view key, std::int32_t fallback);
  // At most 255 characters; `fallback` when the key is missing.
  std::string IniGetString(std::string_view key, std::string_view fallback);
  // At most 4096 characters; the stored word "{{null}}" reads as "".
  std::string IniGetLongString(std::string_view key, std::string_view fallback);
  // The same without a limit of length, for paths.
  std::string IniGetText(std::string_view key, std::string_view fallback);
  // The section's entries in file order; no limit of length.
  std::vector<std::pair<std::string, std::string>> IniGetSection();

  void IniPutInt(std::string_view key, std::int32_t value);
  void IniPutString(std::string_view key, std::string_view value);
  // An empty value is written as "{{null}}".
  void IniPutLongString(std::string_view key, std::string_view value);
  // Adds a line even if the key is there already.
  void IniAddString(std::string_view key, std::string_view value);
  void IniDeleteSection();

  // Writes every changed file, whole. What could not be written is logged; false then.
  bool Flush();

 private:
  IniFile* Context();

  ActivityLog& log_;
  std::string section_;
  std::string file_;
  std::map<std::string, std::unique_ptr<IniFile>> files_;
};

}  // namespace kvr
