#include "workbook/styles.h"

namespace quillmarden {

namespace {

struct BuiltinFormat {
  int id;
  std::string_view code;
};

// Numbers 27 to 58 mean what a Japanese program makes of them.
constexpr BuiltinFormat kBuiltin[] = {
    {1, "0"},
    {2, "0.00"},
    {3, "#,##0"},
    {4, "#,##0.00"},
    {9, "0%"},
    {10, "0.00%"},
    {11, "0.00E+00"},
    {12, "# ?/?"},
    {13, "# ?\?/?\?"},
    {14, "mm-dd-yy"},
    {15, "d-mmm-yy"},
    {16, "d-mmm"},
    {17, "mmm-yy"},
    {18, "h:mm AM/PM"},
    {19, "h:mm:ss AM/PM"},
    {20, "h:mm"},
    {21, "h:mm:ss"},
    {22, "m/d/yy h:mm"},
    {27, "[$-411]ge.m.d"},
    {28, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {30, "m/d/yy"},
    {31, "yyyy\"年\"m\"月\"d\"日\""},
    {32, "h\"時\"mm\"分\""},
    {33, "h\"時\"mm\"分\"ss\"秒\""},
    {37, "#,##0 ;(#,##0)"},
    {38, "#,##0 ;[Red](#,##0)"},
    {39, "#,##0.00;(#,##0.00)"},
    {40, "#,##0.00;[Red](#,##0.00)"},
    {41, "_(* #,##0_);_(* (#,##0);_(* \"-\"_);_(@_)"},
    {42, "_($* #,##0_);_($* (#,##0);_($* \"-\"_);_(@_)"},
    {43, "_(* #,##0.00_);_(* (#,##0.00);_(* \"-\"?\?_);_(@_)"},
    {44, "_($* #,##0.00_);_($* (#,##0.00);_($* \"-\"?\?_);_(@_)"},
    {45, "mm:ss"},
    {46, "[h]:mm:ss"},
    {47, "mmss.0"},
    {48, "##0.0E+0"},
    {49, "@"},
    {55, "yyyy\"年\"m\"月\""},
    {56, "m\"月\"d\"日\""},
    {29, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {34, "yyyy\"年\"m\"月\""},
    {35, "m\"月\"d\"日\""},
    {36, "[$-411]ge.m.d"},
    {50, "[$-411]ge.m.d"},
    {51, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {52, "yyyy\"年\"m\"月\""},
    {53, "m\"月\"d\"日\""},
    {54, "[$-411]ggge\"年\"m\"月\"d\"日\""},
    {57, "[$-411]ge.m.d"},
    {58, "[$-411]ggge\"年\"m\"月\"d\"日\""},
};

}  // namespace

std::string_view builtinNumberFormat(int id) {
  for (const BuiltinFormat& format : kBuiltin)
    if (format.id == id) return format.code;
  return {};
}

int builtinNumberFormatId(std::string_view code) {
  if (code.empty() || code == "General") return 0;
  for (const BuiltinFormat& format : kBuiltin)
    if (format.code == code) return format.id;
  return -1;
}

}  // namespace quillmarden
