#include "workbook/formula_shift.h"

#include <gtest/gtest.h>

namespace quillmarden {
namespace {

struct Case {
  const char* formula;
  const char* expected;
};

TEST(FormulaShift, rowsInserted) {
  // Two rows before row 5 of the sheet "A"; the formula stands on it.
  const Case cases[] = {
      {"A4+A5", "A4+A7"},
      {"$B$5*b5", "$B$7*B7"},
      {"SUM(A1:A9)+SUM(A5:A4)", "SUM(A1:A11)+SUM(A7:A4)"},
      {"SUM(5:7,$1:$9,C:D)", "SUM(7:9,$1:$11,C:D)"},
      {"A!A5+B!A5+'A'!A5", "A!A7+B!A5+'A'!A7"},
      {"\"A5 \"\"A5\"\"\"&A5", "\"A5 \"\"A5\"\"\"&A7"},
      {"LOG10(A5)+A5B+ATAN2(A5,1E5)+_A5", "LOG10(A7)+A5B+ATAN2(A7,1E5)+_A5"},
      {"T[[#This Row],[A5]]+[1]A!A5+A:C!A5", "T[[#This Row],[A5]]+[1]A!A5+A:C!A5"},
      {"#REF!+A5%+{1,2}", "#REF!+A7%+{1,2}"},
      {"A1048576+A1:A1048575", "#REF!+A1:A1048576"},
      {"表5+ＡA5", "表5+ＡA5"},
  };
  for (const auto& [formula, expected] : cases)
    EXPECT_EQ(shiftFormula(formula, "A", "A", {5, 2, true}), expected) << formula;
  EXPECT_EQ(shiftFormula("A5+a!A5", "B", "A", {5, 2, true}), "A5+a!A7") << "names of sheets compare without case";
}

TEST(FormulaShift, rowsRemoved) {
  const Case cases[] = {
      {"A4+A5+A7+A8", "A4+#REF!+#REF!+A5"},
      {"SUM(A1:A6)+SUM(A6:A9)+SUM(A1:A9)+SUM(A5:A7)", "SUM(A1:A4)+SUM(A5:A6)+SUM(A1:A6)+SUM(#REF!)"},
      {"'x y'!A6", "'x y'!A6"},
      {"A!A6", "A!#REF!"},
      {"SUM(6:6)", "SUM(#REF!)"},
  };
  for (const auto& [formula, expected] : cases)
    EXPECT_EQ(shiftFormula(formula, "A", "A", {5, 3, false}), expected) << formula;
}

TEST(FormulaShift, copiesMoveRelativeAddresses) {
  EXPECT_EQ(offsetFormula("A1+$A1+A$1+B2:C3+1:2+A:A", 2, 1), "B3+$A3+B$1+C4:D5+3:4+B:B");
  EXPECT_EQ(offsetFormula("A2+'S'!B2+A1", -1, 0), "A1+'S'!B1+#REF!");
}

TEST(FormulaShift, sheetsAreRenamedAndDropped) {
  EXPECT_EQ(renameInFormula("Old!A1+'Old'!B:B+Older!A1+\"Old!A1\"", "old", "O'Brien & 1"),
            "'O''Brien & 1'!A1+'O''Brien & 1'!B:B+Older!A1+\"Old!A1\"");
  EXPECT_EQ(renameInFormula("SUM(Old:Z!A1)+[1]Old!A1", "Old", "新"), "SUM('新:Z'!A1)+[1]Old!A1");
  EXPECT_EQ(renameInFormula("'It''s'!名前", "It's", "B1"), "'B1'!名前");
  const auto known = [](std::string_view sheet) { return sheet == "Here"; };
  EXPECT_EQ(dropSheets("Here!A1+Gone!A1*Gone!name+A1", known), "Here!A1+#REF!*#REF!+A1");
}

TEST(FormulaShift, tellsFormulasFromTexts) {
  for (const char* formula : {"1", "-A1+2%", "SUM(A1:B2,,\"x\")", "IF(A1<>B$1,\"a\"\"b\",#N/A)", "(A1,B2)", "{1,2;3,4}",
                              "1.5E-3*.5", "A1 B2", "'It''s'!A1&Sheet2!B2", "T[[#Headers],[x]]", "name.x+名前",
                              "[1]Sheet1!A1", "+-1", "Sheet1!#REF!", "A1#", "TRUE()"})
    EXPECT_TRUE(isFormula(formula)) << formula;
  for (const char* text : {"", "=", "== 備考 ===", "1+", "SUM(", "SUM(1))", "\"open", "A1 +* 2", "()", "1,2", "$",
                           "、a b)", "'x'", "{1", "1.2.3", "5a", "#", "a!", "A1:"})
    EXPECT_FALSE(isFormula(text)) << text;
  EXPECT_FALSE(isFormula(std::string(500, '(') + "1" + std::string(500, ')'))) << "nested beyond any program's limit";
  EXPECT_FALSE(isFormula(std::string(9000, '1')));
}

}  // namespace
}  // namespace quillmarden
