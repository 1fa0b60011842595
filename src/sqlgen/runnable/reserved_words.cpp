#include "sqlgen/runnable/reserved_words.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace quillmarden {

namespace {

// In alphabetical order. PostgreSQL 15 and MariaDB 10.11 refuse these as names; those that MySQL 8 alone refuses are
// there too. Quotes around a word that a server would have taken cost nothing.
// clang-format off
constexpr std::string_view kOracle[] = {
    "access", "add", "all", "alter", "and", "any", "as", "asc", "audit", "between", "by", "case", "char",
    "check", "cluster", "column", "column_value", "comment", "compress", "connect", "create", "cross",
    "current", "date", "decimal", "default", "delete", "desc", "distinct", "drop", "else", "exclusive",
    "exists", "file", "float", "for", "from", "full", "grant", "group", "having", "identified", "ignore",
    "immediate", "in", "increment", "index", "indextype", "initial", "inner", "insert", "integer", "intersect",
    "interval", "into", "is", "join", "left", "level", "like", "lock", "long", "maxextents", "minus",
    "mlslabel", "mode", "modify", "natural", "nested_table_id", "noaudit", "nocompress", "not", "nowait",
    "null", "number", "of", "offline", "on", "online", "option", "or", "order", "outer", "partition", "pctfree",
    "prior", "prompt", "public", "raw", "rename", "resource", "respect", "revoke", "right", "row", "rowid",
    "rownum", "rows", "select", "session", "set", "share", "size", "smallint", "start", "successful", "synonym",
    "sysdate", "table", "then", "to", "trigger", "uid", "union", "unique", "update", "user", "using",
    "validate", "values", "varchar", "varchar2", "view", "whenever", "where", "with",
};
constexpr std::string_view kTeradata[] = {
    "abort", "abortsession", "abs", "access_lock", "account", "acos", "acosh", "add", "add_months", "admin",
    "after", "aggregate", "all", "alter", "amp", "and", "ansidate", "any", "arglparen", "as", "asc", "asin",
    "asinh", "at", "atan", "atan2", "atanh", "atomic", "authorization", "ave", "average", "avg", "before",
    "begin", "between", "bigint", "binary", "blob", "both", "bt", "but", "by", "byte", "byteint", "bytes",
    "call", "case", "case_n", "casespecific", "cast", "cd", "char", "char2hexint", "char_length", "character",
    "character_length", "characters", "chars", "check", "checkpoint", "class", "clob", "close", "cluster", "cm",
    "coalesce", "collation", "collect", "column", "comment", "commit", "compress", "connect", "constraint",
    "constructor", "consume", "contains", "continue", "convert_table_header", "corr", "cos", "cosh", "count",
    "covar_pop", "covar_samp", "create", "cross", "cs", "csum", "ct", "ctcontrol", "cube", "current",
    "current_date", "current_role", "current_time", "current_timestamp", "current_user", "cursor", "cv",
    "cycle", "database", "datablocksize", "date", "dateform", "day", "deallocate", "dec", "decimal", "declare",
    "default", "deferred", "degrees", "del", "delete", "desc", "deterministic", "diagnostic", "disabled",
    "distinct", "do", "domain", "double", "drop", "dual", "dump", "dynamic", "each", "echo", "else", "elseif",
    "enabled", "end", "eq", "equals", "error", "errorfiles", "errortables", "escape", "et", "except", "exec",
    "execute", "exists", "exit", "exp", "expand", "expanding", "explain", "external", "extract", "fallback",
    "fastexport", "fetch", "first", "float", "for", "foreign", "format", "found", "freespace", "from", "full",
    "function", "ge", "generated", "get", "give", "global", "grant", "graphic", "group", "grouping", "gt",
    "handler", "hash", "hashamp", "hashbakamp", "hashbucket", "hashrow", "having", "help", "hour", "identity",
    "if", "ignore", "immediate", "in", "inconsistent", "index", "initiate", "inner", "inout", "input", "ins",
    "insert", "instance", "instead", "int", "integer", "integerdate", "intersect", "interval", "into", "is",
    "iterate", "jar", "join", "journal", "key", "kurtosis", "language", "large", "le", "leading", "leave",
    "left", "like", "limit", "ln", "loading", "local", "locator", "lock", "locking", "log", "logging", "logon",
    "long", "loop", "lower", "lt", "macro", "map", "mavg", "max", "maximum", "mcharacters", "mdiff", "merge",
    "method", "min", "mindex", "minimum", "minus", "minute", "mlinreg", "mload", "mod", "mode", "modifies",
    "modify", "monitor", "monresource", "monsession", "month", "msubstr", "msum", "multiset", "named",
    "natural", "ne", "new", "new_table", "next", "no", "none", "normalize", "not", "nowait", "null", "nullif",
    "nullifzero", "number", "numeric", "object", "objects", "octet_length", "of", "off", "old", "old_table",
    "on", "only", "open", "option", "or", "order", "ordering", "out", "outer", "over", "overlaps", "override",
    "parameter", "partition", "password", "percent", "percent_rank", "perm", "permanent", "position",
    "precision", "prepare", "preserve", "primary", "privileges", "procedure", "profile", "proportional",
    "protection", "public", "qualified", "qualify", "quantile", "queue", "radians", "random", "range_n", "rank",
    "reads", "real", "recursive", "references", "referencing", "regr_avgx", "regr_avgy", "regr_count",
    "regr_intercept", "regr_r2", "regr_slope", "regr_sxx", "regr_sxy", "regr_syy", "relative", "release",
    "rename", "repeat", "replace", "replcontrol", "replication", "request", "resignal", "respect", "restart",
    "restore", "result", "resume", "ret", "retrieve", "return", "returns", "revalidate", "revoke", "right",
    "rights", "role", "rollback", "rollforward", "rollup", "row", "row_number", "rowid", "rows", "sample",
    "sampleid", "scroll", "second", "sel", "select", "session", "set", "setresrate", "sets", "setsessrate",
    "show", "signal", "sin", "sinh", "skew", "smallint", "some", "soundex", "specific", "spool", "sql",
    "sqlexception", "sqltext", "sqlwarning", "sqrt", "ss", "start", "startup", "statement", "statistics",
    "stddev_pop", "stddev_samp", "stepinfo", "string_cs", "subscriber", "substr", "substring", "sum", "summary",
    "suspend", "system", "table", "tan", "tanh", "tbl_cs", "td_anytype", "td_valist", "temporary", "terminate",
    "then", "threshold", "time", "timestamp", "timezone_hour", "timezone_minute", "title", "to", "top", "trace",
    "trailing", "transaction", "transactiontime", "transform", "translate", "translate_chk", "trigger", "trim",
    "type", "uc", "udtcastas", "udtcastlparen", "udtmethod", "udttype", "udtusage", "uescape", "undefined",
    "undo", "union", "unique", "until", "until_changed", "until_closed", "upd", "update", "upper", "uppercase",
    "user", "using", "validtime", "value", "values", "var_pop", "var_samp", "varbyte", "varchar", "vargraphic",
    "variant_type", "varying", "view", "volatile", "wait", "when", "where", "while", "width_bucket", "with",
    "without", "work", "xmlplan", "year", "zeroifnull", "zone",
};
constexpr std::string_view kSqlServer[] = {
    "add", "all", "alter", "and", "any", "append", "as", "asc", "authorization", "backup", "begin", "between",
    "break", "browse", "bulk", "by", "cascade", "case", "check", "checkpoint", "close", "clustered", "coalesce",
    "collate", "column", "commit", "compute", "constraint", "contains", "containstable", "continue", "convert",
    "create", "cross", "current", "current_date", "current_time", "current_timestamp", "current_user", "cursor",
    "database", "dbcc", "deallocate", "declare", "default", "delete", "deny", "desc", "disk", "distinct",
    "distributed", "double", "drop", "dump", "dynamic", "else", "end", "errlvl", "escape", "except", "exec",
    "execute", "exists", "exit", "external", "fast_forward", "fetch", "file", "fillfactor", "for", "foreign",
    "forward_only", "freetext", "freetexttable", "from", "full", "fullscan", "function", "global", "go", "goto",
    "grant", "group", "having", "holdlock", "identity", "identity_insert", "identitycol", "if", "in", "index",
    "inner", "insert", "intersect", "into", "is", "join", "key", "keyset", "kill", "left", "like", "lineno",
    "load", "local", "merge", "national", "native_compilation", "nocheck", "nonclustered", "not", "null",
    "nullif", "of", "off", "offsets", "on", "open", "opendatasource", "openquery", "openrowset", "openxml",
    "optimistic", "option", "or", "order", "outer", "over", "percent", "pivot", "plan", "precision", "primary",
    "print", "proc", "procedure", "public", "raiserror", "read", "read_only", "readtext", "reconfigure",
    "references", "replication", "resample", "restore", "restrict", "return", "revert", "revoke", "right",
    "rollback", "rowcount", "rowguidcol", "rule", "save", "schema", "scroll", "scroll_locks", "securityaudit",
    "select", "semantickeyphrasetable", "semanticsimilaritydetailstable", "semanticsimilaritytable",
    "session_user", "set", "setuser", "shutdown", "some", "static", "statistics", "system_user", "table",
    "tablesample", "textsize", "then", "to", "top", "tran", "transaction", "trigger", "truncate", "try_convert",
    "tsequal", "type_warning", "union", "unique", "unpivot", "update", "updatetext", "use", "user", "values",
    "varying", "view", "waitfor", "when", "where", "while", "with", "within", "writetext",
};
constexpr std::string_view kMySql[] = {
    "accessible", "add", "all", "alter", "analyze", "and", "as", "asc", "asensitive", "before", "between",
    "bigint", "binary", "blob", "both", "by", "call", "cascade", "case", "change", "char", "character", "check",
    "collate", "column", "condition", "constraint", "continue", "convert", "create", "cross", "cube",
    "cume_dist", "current_date", "current_role", "current_time", "current_timestamp", "current_user", "cursor",
    "database", "databases", "day_hour", "day_microsecond", "day_minute", "day_second", "dec", "decimal",
    "declare", "default", "delayed", "delete", "delete_domain_id", "dense_rank", "desc", "describe",
    "deterministic", "distinct", "distinctrow", "div", "do_domain_ids", "double", "drop", "dual", "each",
    "else", "elseif", "empty", "enclosed", "escaped", "except", "exists", "exit", "explain", "false", "fetch",
    "first_value", "float", "float4", "float8", "for", "force", "foreign", "from", "fulltext", "function",
    "generated", "get", "grant", "group", "grouping", "groups", "having", "high_priority", "hour_microsecond",
    "hour_minute", "hour_second", "if", "ignore", "ignore_domain_ids", "in", "index", "infile", "inner",
    "inout", "insensitive", "insert", "int", "int1", "int2", "int3", "int4", "int8", "integer", "intersect",
    "interval", "into", "io_after_gtids", "io_before_gtids", "is", "iterate", "join", "json_table", "key",
    "keys", "kill", "lag", "last_value", "lateral", "lead", "leading", "leave", "left", "like", "limit",
    "linear", "lines", "load", "localtime", "localtimestamp", "lock", "long", "longblob", "longtext", "loop",
    "low_priority", "master_bind", "master_demote_to_replica", "master_demote_to_slave",
    "master_ssl_verify_server_cert", "match", "maxvalue", "mediumblob", "mediumint", "mediumtext", "middleint",
    "minute_microsecond", "minute_second", "mod", "modifies", "natural", "no_write_to_binlog", "not",
    "nth_value", "ntile", "null", "numeric", "of", "offset", "on", "optimize", "optimizer_costs", "option",
    "optionally", "or", "order", "out", "outer", "outfile", "over", "page_checksum", "parallel",
    "parse_vcol_expr", "partition", "percent_rank", "portion", "precision", "primary", "procedure", "purge",
    "qualify", "range", "rank", "read", "read_write", "reads", "real", "recursive", "ref_system_id",
    "references", "regexp", "release", "rename", "repeat", "replace", "require", "resignal", "restrict",
    "return", "returning", "revoke", "right", "rlike", "row", "row_number", "rows", "schema", "schemas",
    "second_microsecond", "select", "sensitive", "separator", "set", "show", "signal", "smallint", "spatial",
    "specific", "sql", "sql_big_result", "sql_calc_found_rows", "sql_small_result", "sqlexception", "sqlstate",
    "sqlwarning", "ssl", "starting", "stats_auto_recalc", "stats_persistent", "stats_sample_pages", "stored",
    "straight_join", "system", "table", "tablesample", "terminated", "then", "tinyblob", "tinyint", "tinytext",
    "to", "trailing", "trigger", "true", "undo", "union", "unique", "unlock", "unsigned", "update", "usage",
    "use", "using", "utc_date", "utc_time", "utc_timestamp", "values", "varbinary", "varchar", "varcharacter",
    "varying", "virtual", "when", "where", "while", "window", "with", "write", "xor", "year_month", "zerofill",
};
constexpr std::string_view kPostgreSql[] = {
    "all", "analyse", "analyze", "and", "any", "array", "as", "asc", "asymmetric", "authorization", "binary",
    "both", "case", "cast", "check", "collate", "collation", "column", "concurrently", "constraint", "create",
    "cross", "current_catalog", "current_date", "current_role", "current_schema", "current_time",
    "current_timestamp", "current_user", "default", "deferrable", "desc", "distinct", "do", "else", "end",
    "except", "false", "fetch", "for", "foreign", "freeze", "from", "full", "grant", "group", "having", "ilike",
    "in", "initially", "inner", "intersect", "into", "is", "isnull", "join", "lateral", "leading", "left",
    "like", "limit", "localtime", "localtimestamp", "natural", "not", "notnull", "null", "offset", "on", "only",
    "or", "order", "outer", "overlaps", "placing", "primary", "references", "returning", "right", "select",
    "session_user", "similar", "some", "symmetric", "table", "tablesample", "then", "to", "trailing", "true",
    "union", "unique", "user", "using", "variadic", "verbose", "when", "where", "window", "with",
};
// clang-format on

constexpr char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Every column of a run asks, most of them in vain: a table by hash, made by the compiler, answers at the first look.
constexpr std::size_t kSlots = 2048;

constexpr std::size_t slotOf(std::string_view word) {
  std::size_t hash = 0;
  for (const char c : word) hash = hash * 31 + static_cast<unsigned char>(lowered(c));
  return hash % kSlots;
}

/// The place of each word, from 1, in its slot or the next free one.
template <const auto& words>
constexpr std::array<std::uint16_t, kSlots> slotsOf() {
  static_assert(std::size(words) < kSlots / 4);
  std::array<std::uint16_t, kSlots> slots{};
  for (std::size_t i = 0; i < std::size(words); ++i) {
    std::size_t slot = slotOf(words[i]);
    while (slots[slot] != 0) slot = (slot + 1) % kSlots;
    slots[slot] = static_cast<std::uint16_t>(i + 1);
  }
  return slots;
}

template <const auto& words>
bool holds(std::string_view word) {
  static constexpr std::array<std::uint16_t, kSlots> kPlaces = slotsOf<words>();
  const auto same = [](char wordOfKind, char c) { return wordOfKind == lowered(c); };
  for (std::size_t slot = slotOf(word); kPlaces[slot] != 0; slot = (slot + 1) % kSlots) {
    const std::string_view known = words[kPlaces[slot] - 1];
    if (std::equal(known.begin(), known.end(), word.begin(), word.end(), same)) return true;
  }
  return false;
}

}  // namespace

bool isReservedWord(ScriptKind kind, std::string_view word) {
  switch (kind) {
    case ScriptKind::Oracle:
      return holds<kOracle>(word);
    case ScriptKind::Teradata:
      return holds<kTeradata>(word);
    case ScriptKind::SqlServer:
      return holds<kSqlServer>(word);
    case ScriptKind::MySql:
      return holds<kMySql>(word);
    case ScriptKind::PostgreSql:
      break;
  }
  return holds<kPostgreSql>(word);
}

}  // namespace quillmarden
