// One settings file in memory: "[Section]" and "Key=Value" text. Keys and sections ignore case, the first
// occurrence wins, a line beginning with ";" is a comment. Lines that nobody changes stay as they are and
// where they are. See docs/formats/settings.md.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/Files.h"

namespace kvr {

class IniFile {
 public:
  // A missing file is an empty one. A file that is there but cannot be read is empty too, and is never
  // written.
  explicit IniFile(std::string pathText);

  // Nothing when the key is missing, "" when its value is empty. The view holds until the next change.
  std::optional<std::string_view> Get(std::string_view section, std::string_view key) const;
  // The section's lines but comments and blank ones, in file order; a line without "=" is a key without a
  // value.
  std::vector<std::pair<std::string, std::string>> Entries(std::string_view section) const;

  // Replaces the key's value where it stands, else adds a line at the section's end; a missing section is
  // added at the end of the file. Line breaks and NULs become blanks.
  void Put(std::string_view section, std::string_view key, std::string_view value);
  void Add(std::string_view section, std::string_view key, std::string_view value);
  // Every section of that name.
  void DeleteSection(std::string_view section);

  // Nothing is done while nothing has changed.
  Files::Outcome Write();

 private:
  struct Section {
    std::string head;                // its line; "" for what stands before the first section
    std::vector<std::string> lines;  // as they stand in the file
    std::unordered_map<std::string, std::size_t> keys;  // lower-cased key to the first line that has it
  };

  void Read(std::string_view line);
  Section* Find(std::string_view section);
  const Section* Find(std::string_view section) const;
  Section& FindOrAdd(std::string_view section);
  static void AppendLine(Section& section, std::string line);

  std::string path_;
  std::vector<Section> sections_;
  std::unordered_map<std::string, std::size_t> byName_;  // lower-cased name to the first section of that name
  bool changed_ = false;
  std::string unreadable_;  // why the file on disk could not be read
};

}  // namespace kvr
