#include "sqlgen/snippet.h"

#include <algorithm>

#include "common/script_file.h"
#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/fields.h"

namespace quillmarden {

namespace {

struct Snippet;
/// Fields of a table, as one form of code. Gives whole lines.
using Form = std::string (*)(const Snippet& snippet);

struct Entry {
  SnippetEntry shown;
  Form form;
  std::string_view mark = "'";  ///< in front of a comment
  std::string_view add = "";    ///< of embedded forms: how the program adds to its text
};

/// What a form works with.
struct Snippet {
  Session& session;
  const frmTBDetail& table;
  const std::vector<Field>& fields;
  const Entry& entry;

  const std::string& name() const { return table.txtTableNameENG.text; }
  std::string comment(const Field& field) const { return "\t" + std::string(entry.mark) + oneLine(field.japaneseName); }
  bool first(const Field& field) const { return &field == fields.data(); }
};

constexpr std::size_t kAtOnce = 5;  ///< names on a line, and lines between two numbers

// --- SELECT and lists

std::string selectText(const Snippet& snippet, std::string_view prefix) {
  std::string list;
  for (std::size_t count = 0; count < snippet.fields.size(); ++count) {
    if (count > 0) list += ", ";
    if (count % kAtOnce == 0) list += "\r\n";
    list.append(prefix).append(snippet.fields[count].name);
  }
  return "Select \r\n" + list + "\r\n From \r\n" + snippet.name() + " a \r\n";
}

std::string selectWithAlias(const Snippet& snippet) { return selectText(snippet, "a."); }
std::string selectPlain(const Snippet& snippet) { return selectText(snippet, ""); }

std::string columnList(const Snippet& snippet) {
  ScriptText text;
  for (const Field& field : snippet.fields) text.print("   ", field.name, snippet.comment(field));
  return text.text;
}

std::string columnListWithAs(const Snippet& snippet) {
  ScriptText text;
  for (const Field& field : snippet.fields)
    text.print(snippet.first(field) ? "   " : " , ", "a.", field.name, " AS ", oneLine(field.japaneseName));
  return text.text;
}

// --- plain statements

std::string plainInsert(const Snippet& snippet) {
  ScriptText text;
  text.print("InSert Into ", snippet.name());
  text.print(" ( ");
  for (const Field& field : snippet.fields)
    text.print(snippet.first(field) ? "\t" : "\t,", field.name, snippet.comment(field));
  text.print(" ) Values (");
  for (const Field& field : snippet.fields) text.print(snippet.first(field) ? "\t " : "\t,", snippet.comment(field));
  text.print(" ) ");
  return text.text;
}

/// A line for each key field.
void putKeys(const Snippet& snippet, ScriptText& text) {
  std::string_view word = " Where ";
  for (const Field& field : snippet.fields) {
    if (!field.key) continue;
    text.print(word, field.name, " = ");
    word = " And ";
  }
}

std::string plainUpdate(const Snippet& snippet) {
  ScriptText text;
  text.print("UpDate ", snippet.name(), " Set ");
  for (const Field& field : snippet.fields)
    text.print(snippet.first(field) ? "\t" : "\t,", field.name, " = ", snippet.comment(field));
  putKeys(snippet, text);
  return text.text;
}

std::string accessUpdate(const Snippet& snippet) {
  ScriptText text;
  text.print("UpDate ", snippet.name(), " Set ");
  for (const Field& field : snippet.fields) text.print("\t,[", field.name, "] = ", snippet.comment(field), "' ");
  putKeys(snippet, text);
  return text.text;
}

// --- statements in pieces that a program joins

/// A field's value between two pieces of the statement: a text gets quotes.
std::string valueOf(const Snippet& snippet, const Field& field, const std::string& before) {
  Session& session = snippet.session;
  const std::string_view kind = trim(snippet.table.lblFileType.caption);
  const bool numeric = gFileType_NoDigits(*session.gDB, session.catalogue, kind, field.type).numeric;
  const std::string join = snippet.entry.mark == "#" ? " + " : " & ";
  const std::string quote = numeric ? "" : "'";
  std::string value = "\"" + before + quote + "\"" + join + std::string(field.name);
  return numeric ? value : value + join + "\"'\"";
}

/// The lines of an embedded statement.
class EmbeddedText {
 public:
  explicit EmbeddedText(const Snippet& snippet) : add_("\t Sql" + std::string(snippet.entry.add)) {}

  void open(std::string_view sign, const std::string& piece) { text_.print("\t Sql", sign, "\"", piece, "\""); }
  void put(const std::string& piece, const std::string& comment = "") { putCode("\"" + piece + "\"", comment); }
  void putCode(const std::string& code, const std::string& comment) { text_.print(add_, code, comment); }
  /// Behind every fifth field the number of the next.
  void putNumber(std::size_t done) {
    if (done % kAtOnce == 0) text_.print("\t'", std::to_string(done + 1));
  }
  const std::string& text() const { return text_.text; }

 private:
  std::string add_;
  ScriptText text_;
};

std::string embeddedInsert(const Snippet& snippet) {
  const std::vector<Field>& fields = snippet.fields;
  const auto separator = [](std::size_t place) { return place == 0 ? "  " : " ,"; };
  EmbeddedText text(snippet);
  text.open(" = ", " InSert Into " + snippet.name() + " ( ");
  for (std::size_t i = 0; i < fields.size(); ++i) {
    text.put(separator(i) + std::string(fields[i].name), snippet.comment(fields[i]));
    text.putNumber(i + 1);
  }
  text.put(" ) Values (");
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string type = "(" + oneLine(fields[i].type) + ")";
    text.putCode(valueOf(snippet, fields[i], separator(i)), snippet.comment(fields[i]) + type);
    text.putNumber(i + 1);
  }
  text.put(" ) ");
  return text.text();
}

std::string embeddedUpdate(const Snippet& snippet) {
  EmbeddedText text(snippet);
  text.open("   = ", " UpDate " + snippet.name());
  text.put(" Set ");
  const auto putField = [&](const std::string& word, const Field& field) {
    text.putCode(valueOf(snippet, field, word + std::string(field.name) + " = "), snippet.comment(field));
  };
  for (const Field& field : snippet.fields) putField(snippet.first(field) ? "  " : " ,", field);
  std::string word = " Where ";
  for (const Field& field : snippet.fields) {
    if (!field.key) continue;
    putField(word, field);
    word = " And ";
  }
  return text.text();
}

// --- the menu

const std::vector<Entry>& entries() {
  static const std::vector<Entry> all = {
      {{0, "Select文:(テーブル名あり)"}, selectWithAlias},
      {{1, "Select文"}, selectPlain},
      {{5, "          項目/日本語名の出力"}, columnList, "--"},
      {{7, "          項目 AS 日本語名"}, columnListWithAs},
      {{13, "VB      InSert文(組込み.Net)"}, embeddedInsert, "'", " &= "},
      {{14, "          UpDate文(組込み.Net)"}, embeddedUpdate, "'", " &= "},
      {{17, "          InSert文"}, plainInsert},
      {{18, "          Update文"}, plainUpdate},
      {{19, "          項目/日本語名の出力"}, columnList},
      {{20, "          Access用"}, accessUpdate},
      {{21, "          InSert文(組込み)"}, embeddedInsert, "'", " = SQl & "},
      {{22, "          UpDate文(組込み)"}, embeddedUpdate, "'", " = SQl & "},
      {{25, "Python InSert文"}, embeddedInsert, "#", " += "},
      {{26, "          UpDate文"}, embeddedUpdate, "#", " += "},
      {{33, "PL/SQL:InSert文"}, plainInsert, "--"},
      {{34, "           Update文"}, plainUpdate, "--"},
  };
  return all;
}

}  // namespace

const std::vector<SnippetEntry>& snippetEntries() {
  static const std::vector<SnippetEntry> shown = [] {
    std::vector<SnippetEntry> list;
    for (const Entry& entry : entries()) list.push_back(entry.shown);
    return list;
  }();
  return shown;
}

std::string codeSnippet(Session& session, const frmTBDetail& table, const std::vector<int>& rows, int index) {
  const auto entry =
      std::find_if(entries().begin(), entries().end(), [&](const Entry& known) { return known.shown.index == index; });
  if (entry == entries().end()) return {};
  std::vector<Field> fields;
  for (const int row : rows)
    if (Field field = readField(table, row); !field.name.empty()) fields.push_back(field);
  std::string text = entry->form({session, table, fields, *entry});
  // Python tells names apart by their case, and the program's own is in small letters there.
  return entry->mark == "#" ? gReplaceAll(text, "Sql", "sql") : text;
}

void mnuCopyCode_Click(Session& session, Host& host, const frmTBDetail& screen, const GridSelection& selection,
                       int index) {
  host.machine.setClipboard(codeSnippet(session, screen, selectedRows(screen, selection), index));
}

}  // namespace quillmarden
