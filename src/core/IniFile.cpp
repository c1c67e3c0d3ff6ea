// Settings text in memory: taking the lines apart, and changing only those that a caller changes.
#include "core/IniFile.h"

#include "core/Text.h"
#include "core/clsFileReader.h"
#include "core/clsFileWriter.h"
#include "core/modTools.h"

namespace kvr {

namespace {

// The name in a line of the form "[name]", nothing for any other line.
std::optional<std::string_view> SectionName(std::string_view line) {
  line = Trim(line);
  if (!line.starts_with('[')) return std::nullopt;
  return Trim(line.substr(1, line.find(']') - 1));
}

bool IsEntry(std::string_view line) {
  line = Trim(line);
  return !line.empty() && line[0] != ';';
}

std::string OneLine(std::string_view text) {
  std::string line(Trim(text));
  for (char& c : line) {
    if (c == '\r' || c == '\n' || c == '\0') c = ' ';
  }
  return line;
}

std::string EntryLine(std::string_view key, std::string_view value) {
  return OneLine(key) + "=" + OneLine(value);
}

}  // namespace

IniFile::IniFile(std::string pathText) : path_(std::move(pathText)), sections_(1) {
  clsFileReader reader;
  if (!reader.FileOpen(path_)) {
    if (Files::FileExists(path_)) unreadable_ = reader.Error();
    return;
  }
  while (!reader.FileEOF()) {
    const std::string_view line = reader.FileNextLine();
    // The empty line behind the last line break is no line of the file.
    if (!reader.FileEOF() || !line.empty()) Read(line);
  }
}

void IniFile::Read(std::string_view line) {
  if (const auto name = SectionName(line)) {
    byName_.try_emplace(LCase(*name), sections_.size());
    sections_.push_back({std::string(line), {}, {}});
  } else {
    AppendLine(sections_.back(), std::string(line));
  }
}

void IniFile::AppendLine(Section& section, std::string line) {
  if (IsEntry(line) && line.find('=') != npos)
    section.keys.try_emplace(LCase(modTools::SplitKeyValue(line).key), section.lines.size());
  section.lines.push_back(std::move(line));
}

const IniFile::Section* IniFile::Find(std::string_view section) const {
  const auto found = byName_.find(LCase(section));
  return found == byName_.end() ? nullptr : &sections_[found->second];
}

IniFile::Section* IniFile::Find(std::string_view section) {
  return const_cast<Section*>(std::as_const(*this).Find(section));
}

IniFile::Section& IniFile::FindOrAdd(std::string_view section) {
  if (Section* found = Find(section)) return *found;
  Section& last = sections_.back();
  const bool spaced = last.lines.empty() ? last.head.empty() : Trim(last.lines.back()).empty();
  if (!spaced) last.lines.emplace_back();
  byName_.emplace(LCase(section), sections_.size());
  sections_.push_back({OneLine(section).insert(0, 1, '[').append(1, ']'), {}, {}});
  return sections_.back();
}

std::optional<std::string_view> IniFile::Get(std::string_view section, std::string_view key) const {
  const Section* found = Find(section);
  if (!found) return std::nullopt;
  const auto line = found->keys.find(LCase(Trim(key)));
  if (line == found->keys.end()) return std::nullopt;
  return modTools::SplitKeyValue(found->lines[line->second]).value;
}

std::vector<std::pair<std::string, std::string>> IniFile::Entries(std::string_view section) const {
  std::vector<std::pair<std::string, std::string>> entries;
  const Section* found = Find(section);
  if (!found) return entries;
  for (const std::string& line : found->lines) {
    if (!IsEntry(line)) continue;
    const auto [key, value] = modTools::SplitKeyValue(line);
    entries.emplace_back(key, value);
  }
  return entries;
}

void IniFile::Put(std::string_view section, std::string_view key, std::string_view value) {
  const std::string newLine = EntryLine(key, value);
  Section* found = Find(section);
  const auto line = found ? found->keys.find(LCase(OneLine(key))) : decltype(found->keys.end()){};
  if (!found || line == found->keys.end()) {
    Add(section, key, value);
  } else if (Trim(newLine.substr(newLine.find('=') + 1)) !=
             modTools::SplitKeyValue(found->lines[line->second]).value) {
    found->lines[line->second] = newLine;
    changed_ = true;
  }
}

void IniFile::Add(std::string_view section, std::string_view key, std::string_view value) {
  Section& target = FindOrAdd(section);
  // The blank lines that set the section off from the next one stay behind the new line.
  std::size_t blanks = 0;
  while (!target.lines.empty() && Trim(target.lines.back()).empty()) {
    target.lines.pop_back();
    ++blanks;
  }
  AppendLine(target, EntryLine(key, value));
  target.lines.resize(target.lines.size() + blanks);
  changed_ = true;
}

void IniFile::DeleteSection(std::string_view section) {
  const std::string name = LCase(section);
  if (byName_.erase(name) == 0) return;
  std::erase_if(sections_, [&](const Section& one) {
    const auto oneName = SectionName(one.head);
    return oneName && LCase(*oneName) == name;
  });
  byName_.clear();
  for (std::size_t i = 0; i < sections_.size(); ++i) {
    if (const auto oneName = SectionName(sections_[i].head)) byName_.try_emplace(LCase(*oneName), i);
  }
  changed_ = true;
}

Files::Outcome IniFile::Write() {
  if (!changed_) return {};
  if (!unreadable_.empty()) return {unreadable_};
  clsFileWriter writer;
  writer.FileOpen(path_);
  for (const Section& section : sections_) {
    if (!section.head.empty()) writer.FilePrint(section.head);
    for (const std::string& line : section.lines) writer.FilePrint(line);
  }
  Files::Outcome outcome = writer.FileClose();
  if (outcome) changed_ = false;
  return outcome;
}

}  // namespace kvr
