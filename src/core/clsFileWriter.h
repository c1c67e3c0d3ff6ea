// A text file collected in memory and written whole when it is closed, with CR LF behind every line.
#pragma once

#include <string>
#include <string_view>

#include "core/Files.h"

namespace kvr {

class clsFileWriter {
 public:
  void FileOpen(std::string_view pathText, int keepVersions = 0);
  // Begins with what the file holds, as UTF-8 text whose last line is ended. A file that is there but cannot
  // be read is left alone: FileClose then fails.
  void FileOpenAppend(std::string_view pathText);
  void FilePrint(std::string_view line) {
    text_.append(line);
    text_.append("\r\n");
  }
  const std::string& Text() const { return text_; }
  // Until here nothing on disk has changed; after a failure the old file stands whole.
  Files::Outcome FileClose();

 private:
  std::string path_;
  std::string text_;
  int keepVersions_ = 0;
  Files::Outcome opened_;
};

}  // namespace kvr
