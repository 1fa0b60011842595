#include "sqlgen/clauses.h"

#include <cmath>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/check_list.h"

namespace quillmarden {

HeadStyle blockHeadStyle() {
  HeadStyle style;
  style.ruler = "/*----------------------------------------------------*/";
  style.open = "/* \t";
  style.close = "*/";
  return style;
}

void putHead(const Generation& generation, const HeadStyle& style, ScriptText& script) {
  const frmTBDetail& table = generation.table;
  const auto put = [&](std::string_view label, std::string_view value) {
    std::string text = oneLine(value);
    // In a block comment the text must not end the comment.
    if (!style.close.empty()) text = gReplaceAll(text, style.close, "* /");
    script.print(style.open, label, text, style.close);
  };
  script.print(style.ruler);
  if (style.schema) put("Schema           = ", *style.schema);
  put(style.japaneseLabel, table.txtTableNameJPN.text);
  put(style.tableLabel, style.tableText.empty() ? std::string_view(table.txtTableNameENG.text) : style.tableText);
  const std::string_view ryaku = trim(table.lblRyaku.caption);
  if (!ryaku.empty()) put(style.ryakuLabel, table.lblRyaku.caption);
  put("TableID=", table.lblID.caption);
  if (!trim(table.lblBunrui.caption).empty()) put("分類      :", table.lblBunrui.caption);
  put("DataBase  : ", trim(table.lblFileType.caption));
  script.print();
  put("作成先    :", table.lblHost.caption);
  if (trim(table.lblFirstSQL.caption).empty()) {
    put("Quillmardenでは初めての作成です.", "");
    put("初回作成日:", formatDateTime(generation.host.clock.now(), "yyyy/mm/dd hh:nn"));
    put("作成回数  : 1 回目", "");
  } else {
    put("初回作成日:", table.lblFirstSQL.caption);
    put("最新作成日:", table.lblNewSQL.caption);
    put("作成回数  :", plainNumber(numberIn(table.lblNumSQL.caption) + 1) + " 回目");
  }
  if (!style.indexSpace.empty()) {
    script.print("-- INDEX用テーブルスペース指定があります.");
    script.print("-- INDEX用テーブルスペース : ", oneLine(style.indexSpace));
  }
  script.print(style.ruler);
  script.print("\r\n");
}

double numberIn(std::string_view text) { return text.empty() ? 0 : gStr2Double(gNumFromText(text, true)); }

std::string digitsText(const Field& field) {
  const double fraction = numberIn(field.fractionDigits);
  if (fraction <= 0) return std::string(field.wholeDigits);
  const double whole = numberIn(field.wholeDigits);
  return plainNumber(std::nearbyint(whole + fraction)) + "," + plainNumber(std::nearbyint(fraction));
}

std::string nullClause(const Field& field, bool hasDefault) {
  if (field.key) return " NOT NULL ";
  if (field.null.empty()) return " NULL ";
  if (hasDefault) return " NOT NULL ";
  return " " + std::string(field.null) + " ";
}

std::string cellNull(const Field& field) { return field.null.empty() ? " NULL " : " " + std::string(field.null) + " "; }

std::string bareDefault(const Field& field, bool numeric) {
  if (field.defaultText.empty()) return {};
  const bool bare = numeric || field.defaultText.find("()") != std::string_view::npos;
  std::string clause(bare ? " DEFAULT " : " DEFAULT '");
  return clause.append(field.defaultText).append(bare ? "" : "'");
}

std::string bracketedDefault(const Field& field, bool numeric) {
  if (field.defaultText.empty()) return {};
  const std::string text(field.defaultText);
  if (text.find("()") != std::string::npos) return " DEFAULT (" + text + ")";
  if (numeric) return " DEFAULT ((" + text + "))";
  return " DEFAULT ('" + text + "')";
}

std::string keyList(const std::vector<Field>& fields) {
  std::string keys;
  for (const Field& field : fields) {
    if (!field.key) continue;
    if (!keys.empty()) keys += ",";
    keys += field.name;
  }
  return keys;
}

std::string rangeOperator(const Field& field) {
  if (field.rangeKind == "≧") return ">=";
  if (field.rangeKind == "≦") return "<=";
  return toNarrow(field.rangeKind);
}

std::string alterRange(const AlterStyle& style, const Field& field) {
  const bool interval = field.rangeKind == "範囲";
  const std::string name(field.name);
  const std::string column = style.bracketedColumns ? "[" + name + "]" : name;
  const std::string start = plainNumber(numberIn(field.rangeStart));
  std::string text;
  if (style.dropsRange) {
    text += "ALTER TABLE " + style.table + "\r\n\t DROP CONSTRAINT CK_" + name + "\r\n";
    if (interval) text += "\t\r\n";
    text.append(style.end).append("\r\n");
  }
  text += (interval ? "ALTER TABLE  " : "ALTER TABLE ") + style.table + "\r\n\t ADD CONSTRAINT CK_" + name + "\r\n";
  if (interval) {
    text += "\t CHECK (" + column + " >= " + start + " AND " + column + " <=" + plainNumber(numberIn(field.rangeEnd)) +
            " ) \r\n";
  } else {
    text += "\t CHECK (" + column + " " + rangeOperator(field) + start + " ) \r\n";
  }
  return text.append(style.end);
}

std::string alterValueCheck(const AlterStyle& style, const Field& field, std::string_view check) {
  const std::string name(field.name);
  std::string text = "ALTER TABLE " + style.table + "\r\n\t DROP CONSTRAINT CK_" + name + "\r\n";
  text.append(style.end).append("\r\n");
  text += "ALTER TABLE " + style.table + "\r\n\t ADD CONSTRAINT CK_" + name + "\r\n\t CHECK (" + name;
  text.append(check).append(") \r\n");
  return text.append(style.end).append("\r\n");
}

void putAlterValueChecks(const Generation& generation, const AlterStyle& style, const std::vector<Field>& fields,
                         ScriptText& script) {
  for (const Field& field : fields) {
    if (field.valueList.empty()) continue;
    const std::string& check = pGetCheckList(generation, field.valueList);
    if (!check.empty()) script.print(alterValueCheck(style, field, check));
  }
}

std::string cleanComment(std::string_view remark) {
  std::string text;
  text.reserve(remark.size());
  for (std::size_t i = 0; i < remark.size(); ++i) {
    if (remark[i] == '\r' || remark[i] == '\n') {
      text += '.';
      if (remark[i] == '\r' && i + 1 < remark.size() && remark[i + 1] == '\n') ++i;
    } else {
      text += remark[i];
    }
  }
  return std::string(trim(text));
}

std::string memoText(const frmTBDetail& table) { return gReplaceAll(trim(table.TxtMemo.text), "\r\n", ""); }

std::string oneLine(std::string_view text) {
  std::string line(text);
  for (char& character : line)
    if (character == '\r' || character == '\n') character = ' ';
  return line;
}

std::string_view schemaOf(const SystemRecord& system) {
  const std::string_view schema = trim(system.odbcSource);
  return schema.empty() ? "public" : schema;
}

}  // namespace quillmarden
