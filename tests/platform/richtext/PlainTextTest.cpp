// Rich text as plain text: documents with the text that a reader sees in them.
#include "richtext/PlainText.h"

#include <gtest/gtest.h>

namespace kvr::richtext {
namespace {

struct Case {
  std::string_view rtf, text;
};

TEST(PlainText, KeepsWhatIsVisible) {
  const Case cases[] = {
      {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\*\\generator Quill;}\\pard\\f0\\fs20 One\\b  "
       "two\\b0\\par\r\nthree\\par\r\n}",
       "One two\r\nthree"},
      {"{\\rtf1 a\\par\\par b\\line c\\tab d}", "a\r\n\r\nb\r\nc\td"},
      {"{\\rtf1 a\r\nb\\\r\nc}", "ab\r\nc"},
      {"{\\rtf1 \\{brace\\} \\\\ slash}", "{brace} \\ slash"},
      {"{\\rtf1 caf\\'e9 \\'80\\'9z \\ldblquote x\\rdblquote  5\\endash 6}", "café €9z “x” 5–6"},
      {"{\\rtf1 \\u246?\\u-10179?\\u-8704?{\\uc0\\u8364}x\\uc2\\u233ab!}", "ö😀€xé!"},
      {"{\\rtf1 a{\\pict\\bin4 }{}{}b{\\header never}{\\field{\\*\\fldinst LINK}{\\fldrslt here}}}",
       "abhere"},
      {"{\\rtf1 x\\cell y\\row}tail of no document", "x\ty"},
  };
  for (const Case& row : cases) EXPECT_EQ(PlainText(row.rtf), row.text) << row.rtf;
}

TEST(PlainText, ReadsAnything) {
  const Case cases[] = {{"", ""},
                        {"}", ""},
                        {"{\\rtf1 a\\", "a"},
                        {"{\\rtf1 \\'", ""},
                        {"\\u", ""},
                        {"{{{a", "a"},
                        {"{\\bin99999999999 a", ""},
                        {"{\\rtf1\\uc-5\\u65 b}", "Ab"},
                        {"\\u55357 x", std::string_view("\xEF\xBF\xBD")}};
  for (const Case& row : cases) EXPECT_EQ(PlainText(row.rtf), row.text) << row.rtf;
  EXPECT_EQ(PlainText(std::string(200000, '{') + "deep"), "deep");
}

}  // namespace
}  // namespace kvr::richtext
