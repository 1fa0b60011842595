#include "common/printable.h"

#include <gtest/gtest.h>

namespace quillmarden {
namespace {

TEST(Printable, KeepsTextLineFeedsAndTabsAlone) {
  EXPECT_EQ(printable("受注\tA\n😀é\u00A0"), "受注\tA\n😀é\u00A0");
  EXPECT_EQ(printable("a\x1b[31mb\rc\x7f"
                      "d\u0080\u009b\u009fe"),
            "a [31mb c d   e");
  EXPECT_EQ(printable(std::string_view("a\0b", 3)), "a b");
  EXPECT_EQ(printable("a\x9b"
                      "31m\xc2"),
            "a\uFFFD31m\uFFFD")
      << "a terminal that reads single bytes takes 9B for an escape";
}

TEST(Printable, FindsControlCharactersAndStrayBytes) {
  for (const std::string_view odd : {"a\n", "\t", "\x1b", "\x7f", "\u0085", "\x9b", "受\xe6\xb3"})
    EXPECT_TRUE(holdsControl(odd)) << odd;
  for (const std::string_view plain : {"", " ", "受注 O'Neil", "\u00A0", "~"})
    EXPECT_FALSE(holdsControl(plain)) << plain;
}

}  // namespace
}  // namespace quillmarden
