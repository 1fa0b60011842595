#include "workbook/emf.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>

namespace quillmarden {
namespace {

std::uint32_t at(const std::string& bytes, std::size_t offset) {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes.data() + offset, 4);
  return value;
}

/// How often each record type stands in the file. A broken chain of records gives nothing.
std::map<std::uint32_t, int> recordsOf(const std::string& bytes) {
  std::map<std::uint32_t, int> types;
  std::size_t offset = 0;
  while (offset + 8 <= bytes.size()) {
    const std::uint32_t size = at(bytes, offset + 4);
    if (size < 8 || size % 4 != 0 || offset + size > bytes.size()) {
      return {};
    }
    ++types[at(bytes, offset)];
    offset += size;
  }
  return offset == bytes.size() ? types : std::map<std::uint32_t, int>{};
}

TEST(EmfTest, IsAChainOfRecordsThatTheHeaderDescribes) {
  FontBook fonts;
  Emf emf(100, 50);
  emf.fill({0, 0, 100, 50}, 0xFFFFFF);
  emf.line(0, 0, 100, 0, 0.75, 0x000000);
  emf.text({2, 2, 96, 12}, "【商品】𠮷A", {"ＭＳ Ｐゴシック", 9, true}, 0x112233, Emf::Align::Centre, fonts);
  emf.text({2, 2, 96, 12}, "", {}, 0, Emf::Align::Left, fonts);
  // A 1 x 1 bitmap of 24 bits, and bytes that are none.
  std::string bmp(58, '\0');
  bmp[0] = 'B', bmp[1] = 'M', bmp[10] = 54, bmp[14] = 40, bmp[18] = 1, bmp[22] = 1, bmp[26] = 1, bmp[28] = 24;
  emf.bitmap({0, 0, 5, 5}, bmp);
  emf.bitmap({0, 0, 5, 5}, "BM");
  emf.bitmap({0, 0, 5, 5}, bmp.substr(0, 54));
  const std::string bytes = emf.bytes();

  const auto types = recordsOf(bytes);
  ASSERT_FALSE(types.empty());
  int records = 0;
  for (const auto& [type, count] : types) records += count;
  EXPECT_EQ(at(bytes, 40), 0x464D4520U);
  EXPECT_EQ(at(bytes, 48), bytes.size());
  EXPECT_EQ(at(bytes, 52), static_cast<std::uint32_t>(records));
  EXPECT_EQ(types.at(84), 1);  // texts
  EXPECT_EQ(types.at(81), 1);  // bitmaps
  EXPECT_EQ(types.at(33), types.at(34));
  EXPECT_EQ(types.at(38) + types.at(39) + types.at(82), types.at(40)) << "every object made is dropped";
  // 100 x 50 points in hundredths of a millimetre.
  EXPECT_EQ(at(bytes, 32), 3528U);
  EXPECT_EQ(at(bytes, 36), 1764U);
}

}  // namespace
}  // namespace quillmarden
