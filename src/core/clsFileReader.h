// A text file taken whole and handed out line by line.
//
// Decoding, in this order: a UTF-8 mark is removed; then 14 bytes "Encoding=UTF-8" in any case are removed;
// either one, or the caller, makes the text UTF-8. Otherwise the file is taken as UTF-8 when it is valid
// UTF-8 with at least one non-ASCII byte, else as Windows-1252. A UTF-16 mark is honoured. Invalid UTF-8
// bytes become U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace kvr {

enum class TextEncoding { FileDecides, AlwaysUtf8 };

class clsFileReader {
 public:
  // A missing or unreadable file gives an empty reader at its end; the result tells which, and why in
  // Error(). `maxChars` above 0 cuts the decoded text first.
  bool FileOpen(std::string_view pathText, std::size_t maxChars = 0,
                TextEncoding encoding = TextEncoding::FileDecides);
  // The same over bytes in hand.
  void TextOpen(std::string bytes, std::size_t maxChars = 0,
                TextEncoding encoding = TextEncoding::FileDecides);
  // The next line without its end (CR LF, LF or CR). A text ending in a line break delivers one last empty
  // line; past the end it is "". The view holds until the reader is opened again or closed.
  std::string_view FileNextLine();
  bool FileEOF() const { return atEnd_; }
  void FileClose();
  // Bytes of the whole text.
  std::size_t TextSize() const { return text_.size(); }
  // Number of the line last delivered, from 1.
  std::size_t LineNumber() const { return lineNumber_; }
  const std::string& Error() const { return error_; }

 private:
  std::string text_;
  std::size_t position_ = 0;
  std::size_t lineFeed_ = std::string::npos;  // position of the next one, the size when there is none
  std::size_t lineNumber_ = 0;
  bool atEnd_ = true;
  std::string error_;
};

// Bytes as UTF-8 text by the rules above; line ends stay as they are.
std::string DecodeText(std::string bytes, TextEncoding encoding);

// At most the first `count` characters (not bytes) of a UTF-8 text.
std::string_view FirstCharacters(std::string_view text, std::size_t count);

}  // namespace kvr
