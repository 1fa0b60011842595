#include "sqlgen/alter_statements.h"

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/oracle_clauses.h"
#include "sqlgen/sql_server_clauses.h"

namespace quillmarden {

namespace {

constexpr std::string_view kConstraints = "制約等は、Create文作成側のものを利用してください.";
constexpr std::string_view kDropFirst = "すでに制約がある場合は、DROPが必要です.";
constexpr std::string_view kFirst = "     ";  ///< in front of the first column
constexpr std::string_view kNext = "    ,";

DigitRule ruleOf(const Generation& generation, const Field& field) {
  Session& session = generation.session;
  return gFileType_NoDigits(*session.gDB, session.catalogue, trim(generation.table.lblFileType.caption), field.type);
}

/// "(digits) " behind a type that takes them.
std::string digitsOf(const DigitRule& rule, const Field& field) {
  if (rule.noDigits || field.type.empty()) return {};
  const bool withFraction = numberIn(field.fractionDigits) > 0;
  return "(" + (withFraction ? digitsText(field) : plainNumber(numberIn(field.wholeDigits))) + ") ";
}

std::string typeText(const DigitRule& rule, const Field& field) {
  return std::string(field.type) + digitsOf(rule, field);
}

/// What a computed column has in place of a type.
std::string computedText(const Field& field) {
  return " AS (" + (field.remark.empty() ? std::string("計算式を記入して下さい") : std::string(field.remark)) + ")";
}

void putColumnComments(const std::string& table, const std::vector<Field>& fields, bool replacesQuotes,
                       ScriptText& text) {
  for (const Field& field : fields) {
    if (field.remark.empty() || field.computed()) continue;
    const std::string remark = cleanComment(field.remark);
    text.print("\r\n COMMENT ON  COLUMN ", table, ".", field.name, " IS '",
               replacesQuotes ? gReplaceAll(remark, "'", "\"") : remark, "'");
    text.print(";");
  }
}

}  // namespace

void putAlter4Oracle(const Generation& generation, const std::vector<Field>& fields, AlterMode mode, ScriptText& text) {
  const std::string& table = generation.table.txtTableNameENG.text;
  text.print("ALTER TABLE ", table, " ", mode == AlterMode::Add ? " ADD " : " MODIFY ");
  text.print("(");
  for (const Field& field : fields)
    text.print(&field == fields.data() ? kFirst : kNext, field.name, " ", typeText(ruleOf(generation, field), field),
               defaultAndNull(field));
  text.print(")");
  text.print(";");
  putColumnComments(table, fields, true, text);
}

// A column is changed by a statement of its own, which takes no default: one that is there stays, a new one is a
// constraint.
void putAlter4SQLServer(const Generation& generation, const std::vector<Field>& fields, AlterMode mode,
                        ScriptText& text) {
  const bool adds = mode == AlterMode::Add;
  const auto columnText = [&](const Field& field) {
    const std::string name = "[" + std::string(field.name) + "]";
    if (field.computed()) return name + computedText(field);
    DigitRule rule = ruleOf(generation, field);
    const std::string defaultClause = adds ? bracketedDefault(field, rule.numeric) : "";
    if (field.type == "@AUTO_NO") rule.noDigits = true;
    return name + " " + bracketedType(field.type) + digitsOf(rule, field) + defaultClause + cellNull(field);
  };
  const auto open = [&] {
    text.print("ALTER TABLE ", quotedTable(generation), " ", adds ? " ADD " : " ALTER COLUMN ");
  };
  for (const Field& field : fields) {
    const bool first = &field == fields.data();
    if (first || !adds) open();
    text.print(first || !adds ? kFirst : kNext, columnText(field));
    if (!adds || &field == &fields.back()) text.print(" go");
  }
  text.print("--", kConstraints);
  text.print("--", kDropFirst);
}

void putAlter4PostgreSQL(const Generation& generation, const std::vector<Field>& fields, AlterMode mode,
                         ScriptText& text) {
  const std::string& table = generation.table.txtTableNameENG.text;
  const auto addText = [&](const Field& field) {
    const std::string name(field.name);
    if (field.computed()) return name + computedText(field);
    const DigitRule rule = ruleOf(generation, field);
    return name + " " + typeText(rule, field) + bracketedDefault(field, rule.numeric) + cellNull(field);
  };
  const auto putChange = [&](const Field& field) {
    const DigitRule rule = ruleOf(generation, field);
    const auto put = [&](const std::string& change) {
      text.print(" ALTER  TABLE ", table, " ALTER ", field.name, " ", change, ";");
    };
    put("TYPE " + std::string(trim(typeText(rule, field))));
    const std::string null(trim(cellNull(field)));
    put(null == "NULL" ? "DROP NOT NULL" : "SET " + null);
    if (!field.defaultText.empty()) put("SET" + bracketedDefault(field, rule.numeric));
  };
  if (mode == AlterMode::Add) {
    text.print("ALTER TABLE ", table, " ", " ADD ");
    for (const Field& field : fields) text.print(&field == fields.data() ? kFirst : ", ADD ", addText(field));
    text.print(";");
  } else {
    for (const Field& field : fields)
      if (!field.computed()) putChange(field);
  }
  putColumnComments(table, fields, false, text);
  text.print("--", kConstraints);
  text.print("--", kDropFirst);
}

// The server has a column's comment in its definition, and forgets it where a change does not repeat it.
void putAlter4MySQL(const Generation& generation, const std::vector<Field>& fields, AlterMode mode, ScriptText& text) {
  const std::string& table = generation.table.txtTableNameENG.text;
  const auto commentText = [](const Field& field) {
    if (field.remark.empty()) return std::string();
    return " COMMENT '" + gReplaceAll(cleanComment(field.remark), "'", "''") + "'";
  };
  if (mode == AlterMode::Add) {
    text.print("ALTER TABLE ", table, " ", " ADD ");
    for (const Field& field : fields) {
      const DigitRule rule = ruleOf(generation, field);
      text.print(&field == fields.data() ? kFirst : ", ADD ", field.name, " ", typeText(rule, field),
                 bareDefault(field, rule.numeric), cellNull(field), commentText(field));
    }
    text.print(";");
  } else {
    for (const Field& field : fields) {
      const DigitRule rule = ruleOf(generation, field);
      text.print(" ALTER  TABLE ", table, " MODIFY ", field.name, " ", typeText(rule, field), cellNull(field),
                 commentText(field), ";");
      if (!field.defaultText.empty())
        text.print(" ALTER  TABLE ", table, " ALTER ", field.name, " SET", bareDefault(field, rule.numeric), ";");
    }
  }
  text.print("/*", kConstraints, "*/");
  text.print("/*", kDropFirst, "*/");
}

}  // namespace quillmarden
