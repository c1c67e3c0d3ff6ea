// A text file collected in memory: how it begins and how it reaches the disk.
#include "core/clsFileWriter.h"

#include "core/clsFileReader.h"

namespace kvr {

void clsFileWriter::FileOpen(std::string_view pathText, int keepVersions) {
  path_ = pathText;
  text_.clear();
  keepVersions_ = keepVersions;
  opened_ = {};
}

void clsFileWriter::FileOpenAppend(std::string_view pathText) {
  FileOpen(pathText);
  if (!Files::FileExists(pathText)) return;
  std::optional<std::string> bytes = Files::ReadWhole(pathText, &opened_.error);
  if (!bytes) return;
  // Bytes in another encoding become UTF-8 like the lines that follow; UTF-8 keeps its marks.
  std::string decoded = DecodeText(*bytes, TextEncoding::FileDecides);
  text_ = !decoded.empty() && bytes->ends_with(decoded) ? std::move(*bytes) : std::move(decoded);
  if (!text_.empty() && text_.back() != '\n' && text_.back() != '\r') text_ += "\r\n";
}

Files::Outcome clsFileWriter::FileClose() {
  Files::Outcome outcome = opened_ ? Files::WriteWhole(path_, text_, keepVersions_) : std::move(opened_);
  FileOpen({});
  return outcome;
}

}  // namespace kvr
