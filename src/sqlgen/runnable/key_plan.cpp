#include "sqlgen/runnable/key_plan.h"

#include <algorithm>

#include "common/text.h"
#include "sqlgen/runnable/mysql_limits.h"

namespace quillmarden {

namespace {

constexpr std::size_t kMostFields = 32;
constexpr long kMostKeyBytes = 3072;
constexpr long kLargeBeginning = 255;  ///< characters of a text without a length of its own
constexpr long kTinyBytes = 255;

/// Whether a column stands in the table as the server has it.
bool isMade(const Writing& writing, const ScriptColumn* column) { return column && !writing.leftOut.contains(column); }

bool hasBrin(const ScriptType& type) {
  constexpr std::string_view kWithout[] = {"tsvector", "tsquery", "json", "jsonb", "money", "boolean"};
  return type.family != TypeFamily::Array &&
         std::find(std::begin(kWithout), std::end(kWithout), type.base) == std::end(kWithout);
}

/// What keeps a server from having a key or index over these fields, "" for nothing.
std::string faultOf(const Writing& writing, const ScriptTable& table, const PlannedKey& key) {
  if (key.fields.empty()) return "項目がありません";
  if (key.fields.size() > kMostFields) return "項目が多すぎます (最大 " + std::to_string(kMostFields) + ")";
  for (const std::string& field : key.fields) {
    const ScriptColumn* column = table.column(field);
    if (!isMade(writing, column)) return "項目がありません (" + field + ")";
    if (!writing.dialect.knowsTypes) continue;
    if (column->computed && writing.uncountable.contains(column)) return "計算式の項目です (" + field + ")";
    if (column->computed) continue;
    const ScriptType& type = *column->type;
    if (!type.keyable || (key.brin && !hasBrin(type))) return "型 " + type.sql + " の項目です (" + field + ")";
  }
  if (writing.dialect.kind != ScriptKind::PostgreSql || (key.index && !key.unique)) return {};
  const std::vector<std::string> parting = partitionFields(table);
  const bool holds = std::all_of(parting.begin(), parting.end(),
                                 [&](const std::string& field) { return contains(key.fields, field); });
  return holds ? "" : "パーティションの項目が含まれていません";
}

/// Lengths of a MySQL key, where its fields are longer together than a key may be, or have no length of their own.
std::vector<std::string> lengthsOf(const ScriptTable& table, const std::vector<std::string>& fields) {
  struct Part {
    long bytes = 8;
    long unit = 0;  ///< bytes of a character; 0 for what can't be shortened
    bool large = false;
  };
  std::vector<Part> parts(fields.size());
  long total = 0, texts = 0, fixed = 0;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const ScriptType& type = *table.column(fields[i])->type;
    const bool text =
        type.family == TypeFamily::Text || type.family == TypeFamily::Bytes || type.family == TypeFamily::Json;
    Part& part = parts[i];
    if (text) {
      ScriptType one = type;
      one.length = 1;
      part.unit = mostBytes(one);
      part.large = isLarge(type);
      const bool tiny = type.base.starts_with("tiny");
      part.bytes = !part.large ? mostBytes(type)
                   : tiny      ? kTinyBytes / part.unit * part.unit
                               : kLargeBeginning * part.unit;
      ++texts;
    } else if (type.family == TypeFamily::Uuid || type.family == TypeFamily::Address ||
               type.family == TypeFamily::Exact) {
      part.bytes = 32;
    }
    (text ? total : fixed) += part.bytes;
  }
  const bool tooLong = total + fixed > kMostKeyBytes;
  const long share = texts > 0 ? (kMostKeyBytes - fixed) / texts : 0;
  std::vector<std::string> lengths;
  for (const Part& part : parts) {
    const long bytes = tooLong && part.unit > 0 ? std::min(share, part.bytes) : part.bytes;
    const bool cut = part.large || (part.unit > 0 && bytes < part.bytes);
    lengths.push_back(cut ? "(" + std::to_string(std::max(bytes / part.unit, 1L)) + ")" : "");
  }
  return lengths;
}

void addField(std::vector<std::string>& fields, const std::string& name) {
  if (std::find(fields.begin(), fields.end(), name) == fields.end()) fields.push_back(name);
}

PlannedKey brinOfKey(const ScriptTable& table, const std::vector<std::string>& fields) {
  static const TableIndex own;
  PlannedKey brin;
  brin.index = &own;
  brin.name = "idx_" + table.shortName + "_brin";
  brin.brin = true;
  brin.fields = fields;
  return brin;
}

}  // namespace

bool PlannedKey::partial() const {
  return std::any_of(lengths.begin(), lengths.end(), [](const std::string& length) { return !length.empty(); });
}

std::vector<PlannedKey> plannedKeys(const Writing& writing, const ScriptTable& table) {
  const ScriptKind kind = writing.dialect.kind;
  std::vector<PlannedKey> keys;
  if (const std::vector<std::string> fields = table.keyFields(); !fields.empty()) {
    keys.emplace_back().fields = fields;
    keys.back().unique = true;
  }
  for (const TableIndex& index : table.indexes) {
    PlannedKey& key = keys.emplace_back();
    key.index = &index;
    key.name = index.name;
    key.brin = index.brin && kind == ScriptKind::PostgreSql;
    key.unique = index.unique() && !key.brin;
    for (const TableIndex::Field& field : index.fields) addField(key.fields, std::string(trim(field.name)));
  }
  if (table.brin && kind == ScriptKind::PostgreSql && !table.keyFields().empty())
    keys.push_back(brinOfKey(table, table.keyFields()));
  std::size_t made = countOfIndexes(table, {});
  std::vector<const std::vector<std::string>*> taken;
  for (PlannedKey& key : keys) {
    key.fault = faultOf(writing, table, key);
    if (key.fault.empty() && kind == ScriptKind::MySql) {
      key.lengths = lengthsOf(table, key.fields);
      if (made == kMostMySqlIndexes) key.fault = "インデックスが多すぎます (最大 " + std::to_string(made) + ")";
    }
    // These have one index for a list of fields.
    if (key.fault.empty() && (kind == ScriptKind::Oracle || kind == ScriptKind::Teradata)) {
      const auto same = [&](const std::vector<std::string>* other) { return *other == key.fields; };
      if (std::any_of(taken.begin(), taken.end(), same)) key.fault = "同じ項目のインデックスがあるため作成しません";
      taken.push_back(&key.fields);
    }
    made += key.fault.empty() ? 1 : 0;
  }
  return keys;
}

std::size_t countOfIndexes(const ScriptTable& table, const std::vector<PlannedKey>& keys) {
  const auto brings = [](const ScriptColumn& column) {
    return !column.computed && column.type->numbersItself && toLower(column.type->sql) == "serial";
  };
  const auto made = [](const PlannedKey& key) { return key.fault.empty(); };
  return static_cast<std::size_t>(std::count_if(table.columns.begin(), table.columns.end(), brings) +
                                  std::count_if(keys.begin(), keys.end(), made));
}

std::vector<std::string> partitionFields(const ScriptTable& table) {
  std::vector<std::string> fields;
  std::string_view list = table.partition;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const std::string_view wanted = trim(list.substr(0, comma));
    for (const ScriptColumn& column : table.columns)
      if (equalsNoCase(column.name, wanted) && !column.computed && column.type->keyable)
        addField(fields, std::string(column.name));
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  if (fields.size() > kMostFields) fields.clear();
  return fields;
}

std::string keyList(Writing& writing, const ScriptTable& table, const PlannedKey& key) {
  std::string list;
  for (std::size_t i = 0; i < key.fields.size(); ++i) {
    list.append(i == 0 ? "" : ", ").append(quotedColumn(writing, table.id, key.fields[i]));
    if (i < key.lengths.size()) list += key.lengths[i];
  }
  return list;
}

}  // namespace quillmarden
