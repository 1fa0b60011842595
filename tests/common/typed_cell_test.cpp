#include "common/typed_cell.h"

#include <gtest/gtest.h>

namespace quillmarden {
namespace {

/// The text that a cell takes, or its fault.
std::string put(const SpreadColumn& column, std::string_view typed) {
  const TypedCell cell = typedCell(column, column.kind, typed);
  return cell.fault.empty() ? cell.text : cell.fault;
}

TEST(TypedCellTest, TextsAreLimitedInBytesOfTheCodePage) {
  SpreadColumn name{.title = "名", .kind = CellKind::Edit, .maxLength = 5};
  EXPECT_EQ(put(name, "漢字a"), "漢字a");
  EXPECT_EQ(put(name, "ｶﾝｼﾞa"), "ｶﾝｼﾞa");
  EXPECT_EQ(put(name, "漢字ab"), "が長すぎます. 5バイト(全角2文字)までです.");
  EXPECT_EQ(put(name, "a\r\nb\tc"), "a\nb\tc");
  name.oneLine = true;
  EXPECT_EQ(put(name, "a\r\nb\tc"), "ab c");
  EXPECT_EQ(put(name, std::string_view("a\0", 2)), "にNUL文字が含まれています.");
  EXPECT_EQ(typedCell(name, CellKind::Static, "a").fault, "は変更できません.");
}

TEST(TypedCellTest, ListsTakeTheirEntriesAndOpenOnesOtherTextsToo) {
  SpreadColumn type{.title = "型", .kind = CellKind::List, .maxLength = 8, .entries = {"VARCHAR", "ﾃｷｽﾄ型", "ﾃｷｽﾄ型2"}};
  EXPECT_EQ(put(type, " varchar "), "VARCHAR");
  EXPECT_EQ(put(type, "テキスト型"), "ﾃｷｽﾄ型");
  EXPECT_EQ(put(type, ""), "");
  EXPECT_EQ(put(type, "VAR"), "が一覧にありません.");
  type.open = true;
  EXPECT_EQ(put(type, "VAR"), "VAR");
  EXPECT_EQ(put(type, "COBOL2014"), "が長すぎます. 8バイト(全角4文字)までです.");
}

TEST(TypedCellTest, NumbersChecksAndDatesHaveTheirForm) {
  const SpreadColumn digits{.title = "桁", .kind = CellKind::Integer, .minimum = -1, .maximum = 100};
  EXPECT_EQ(put(digits, " １００ "), "100");
  EXPECT_EQ(put(digits, "1,00"), "100");
  EXPECT_EQ(put(digits, ""), "");
  EXPECT_EQ(put(digits, "1.5"), "が整数ではありません.");
  EXPECT_EQ(put(digits, "101"), "は、-1から100までです.");
  EXPECT_EQ(put(digits, "百"), "が数値ではありません.");
  const SpreadColumn range{.title = "範", .kind = CellKind::Float, .minimum = -9, .maximum = 9};
  EXPECT_EQ(put(range, "-1.50"), "-1.5");
  const SpreadColumn key{.title = "K", .kind = CellKind::Check};
  EXPECT_EQ(put(key, "○") + put(key, "True") + put(key, "1"), "-1-1-1");
  EXPECT_EQ(put(key, "") + put(key, "０") + put(key, "x"), "00は、-1 か 0 です.");
  const SpreadColumn day{.title = "日", .kind = CellKind::Edit, .date = true};
  EXPECT_EQ(put(day, "2026/4/1"), "2026/04/01");
  EXPECT_EQ(put(day, "２０２６-4-1 9:05"), "2026/04/01 09:05:00");
  EXPECT_EQ(put(day, "2026/02/30"), "が日付ではありません.");
}

}  // namespace
}  // namespace quillmarden
