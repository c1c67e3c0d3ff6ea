// Reading and writing single settings by section and file, with the limits of their lengths.
#include "core/modINI.h"

#include "core/IniFile.h"
#include "core/Text.h"
#include "core/clsFileReader.h"
#include "core/modLogging.h"

namespace kvr {

namespace {

constexpr std::size_t kMostOfString = 255;
constexpr std::size_t kMostOfLongString = 4096;
// Stands for an empty value, which some readers of these files drop together with its key.
constexpr std::string_view kNullWord = "{{null}}";

std::int32_t LeadingInteger(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  std::int32_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

}  // namespace

modINI::modINI(ActivityLog& log) : log_(log) {}
modINI::~modINI() = default;

void modINI::IniSetContext(std::string_view section, std::string_view file) {
  section_ = Trim(section);
  file_ = Trim(file);
}

IniFile* modINI::Context() {
  if (section_.empty() || file_.empty()) {
    log_.LogRed("IniFile Logic Error: [Section] and FileName Not Registered in Private.Ini!");
    return nullptr;
  }
  std::unique_ptr<IniFile>& file = files_[file_];
  if (!file) file = std::make_unique<IniFile>(file_);
  return file.get();
}

std::int32_t modINI::IniGetInt(std::string_view key, std::int32_t fallback) {
  const IniFile* file = Context();
  if (!file) return 0;
  const auto value = file->Get(section_, key);
  return value ? LeadingInteger(*value) : fallback;
}

std::string modINI::IniGetText(std::string_view key, std::string_view fallback) {
  const IniFile* file = Context();
  if (!file) return {};
  return std::string(file->Get(section_, key).value_or(fallback));
}

std::string modINI::IniGetString(std::string_view key, std::string_view fallback) {
  return std::string(FirstCharacters(IniGetText(key, fallback), kMostOfString));
}

std::string modINI::IniGetLongString(std::string_view key, std::string_view fallback) {
  const std::string value = IniGetText(key, fallback);
  return value == kNullWord ? std::string() : std::string(FirstCharacters(value, kMostOfLongString));
}

std::vector<std::pair<std::string, std::string>> modINI::IniGetSection() {
  const IniFile* file = Context();
  return file ? file->Entries(section_) : std::vector<std::pair<std::string, std::string>>();
}

void modINI::IniPutInt(std::string_view key, std::int32_t value) {
  IniPutString(key, std::to_string(value));
}

void modINI::IniPutString(std::string_view key, std::string_view value) {
  if (IniFile* file = Context()) file->Put(section_, key, value);
}

void modINI::IniPutLongString(std::string_view key, std::string_view value) {
  IniPutString(key, Trim(value).empty() ? kNullWord : value);
}

void modINI::IniAddString(std::string_view key, std::string_view value) {
  if (IniFile* file = Context()) file->Add(section_, key, value);
}

void modINI::IniDeleteSection() {
  if (IniFile* file = Context()) file->DeleteSection(section_);
}

bool modINI::Flush() {
  bool written = true;
  for (const auto& [path, file] : files_) {
    const Files::Outcome outcome = file->Write();
    if (outcome) continue;
    log_.LogRed("Cannot write the settings file " + path + ": " + outcome.error);
    written = false;
  }
  return written;
}

}  // namespace kvr
