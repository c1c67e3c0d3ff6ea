// Taking a text file whole, and handing out its lines as views. How its bytes become text is in
// TextDecoding.cpp.
#include "core/clsFileReader.h"

#include "core/Files.h"
#include "core/Text.h"

namespace kvr {

namespace {

// The longest character and the longest marks before the text.
constexpr std::size_t kBytesOfCharacter = 4;
constexpr std::size_t kBytesOfMarks = 3 + 14;

}  // namespace

bool clsFileReader::FileOpen(std::string_view pathText, std::size_t maxChars, TextEncoding encoding) {
  // Where the file decides on its encoding, the whole of it has to be seen.
  std::size_t mostBytes = npos;
  if (maxChars > 0 && encoding == TextEncoding::AlwaysUtf8 && maxChars < npos / kBytesOfCharacter / 2)
    mostBytes = maxChars * kBytesOfCharacter + kBytesOfMarks;
  FileClose();
  std::string why;
  std::optional<std::string> bytes = Files::ReadWhole(pathText, &why, mostBytes);
  if (!bytes) {
    error_ = std::move(why);
    return false;
  }
  TextOpen(std::move(*bytes), maxChars, encoding);
  return true;
}

void clsFileReader::TextOpen(std::string bytes, std::size_t maxChars, TextEncoding encoding) {
  FileClose();
  text_ = DecodeText(std::move(bytes), encoding);
  if (maxChars > 0) text_.resize(FirstCharacters(text_, maxChars).size());
  atEnd_ = text_.empty();
}

void clsFileReader::FileClose() {
  *this = clsFileReader();
}

std::string_view clsFileReader::FileNextLine() {
  if (atEnd_) return {};
  ++lineNumber_;
  const std::string_view rest = std::string_view(text_).substr(position_);
  // The next line feed is kept until it is passed, so that a text of carriage returns alone is not searched
  // to its end for every line.
  if (lineFeed_ == npos || lineFeed_ < position_)
    lineFeed_ = std::min(text_.find('\n', position_), text_.size());
  const std::size_t untilFeed = lineFeed_ - position_;
  const std::size_t length = std::min(rest.substr(0, untilFeed).find('\r'), untilFeed);
  const std::string_view line = rest.substr(0, length);
  position_ += length;
  if (position_ == text_.size()) {
    atEnd_ = true;
    return line;
  }
  const bool pair = text_[position_] == '\r' && position_ + 1 < text_.size() && text_[position_ + 1] == '\n';
  position_ += pair ? 2 : 1;
  return line;
}

}  // namespace kvr
