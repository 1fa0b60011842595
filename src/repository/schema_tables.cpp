#include <initializer_list>
#include <utility>

#include "repository/schema.h"

namespace quillmarden {
namespace {

using Fields = std::vector<FieldDef>;
using Names = std::initializer_list<const char*>;

/// Columns of one type, in this order.
Fields all(FieldType type, Names names, int size = 0) {
  Fields fields;
  for (const char* name : names) fields.push_back({.name = name, .type = type, .size = size});
  return fields;
}
Fields text(Names names, int size = 0) { return all(FieldType::Text, names, size); }
Fields memo(Names names) { return all(FieldType::Memo, names); }
Fields integer(Names names) { return all(FieldType::Integer, names); }
Fields whole(Names names) { return all(FieldType::Long, names); }
Fields real(Names names) { return all(FieldType::Double, names); }
Fields flag(Names names) { return all(FieldType::Flag, names); }
Fields date(Names names) { return all(FieldType::Date, names); }
Fields autoNumber(const char* name) { return all(FieldType::Auto, {name}); }

Fields join(std::initializer_list<Fields> parts) {
  Fields fields;
  for (const Fields& part : parts) fields.insert(fields.end(), part.begin(), part.end());
  return fields;
}

/// Who wrote a row, when and where.
Fields audit() {
  return join({date({"作成年月日", "更新年月日"}), text({"作成者", "更新者", "make_server", "COMPNAME"})});
}

/// The shorter form of tables whose rows do not note computers.
Fields auditWithoutComputers() {
  return join({date({"作成年月日"}), text({"作成者"}), date({"更新年月日"}), text({"更新者"})});
}

TableDef table(const char* name, std::vector<std::string> key, std::initializer_list<Fields> parts) {
  TableDef made{.name = name, .fields = join(parts), .indexes = {}};
  if (!key.empty())
    made.indexes.push_back({.name = "PrimaryKey", .fields = std::move(key), .primary = true, .unique = true});
  return made;
}

/// A copy of a catalogue view behind the columns that name the reading.
TableDef snapshot(const char* name, std::initializer_list<Fields> parts) {
  TableDef made = table(name, {}, {text({"システム名", "コンピュータ名", "USER_NAME", "DB_NAME"}), date({"日付"})});
  const Fields view = join(parts);
  made.fields.insert(made.fields.end(), view.begin(), view.end());
  return made;
}

Fields indexSpaceOfSystem() {
  Fields field = text({"index_space"}, 50);
  field.front().allowZeroLength = false;
  return field;
}

/// What a field definition of any kind has, up to the marks of a read from a live database.
Fields fieldDefinition() {
  return join({whole({"ID", "ROWNO", "表示順"}), text({"日本語名", "項目名"}), flag({"KEY", "INDEX"}), text({"型"}),
               integer({"整数桁数", "少数桁数"}), whole({"長さ"}), text({"Null値", "項目分類", "項目参照先"}),
               memo({"備考"}), text({"初期値", "範囲分類", "範囲開始", "範囲終了"}), whole({"DomainID"}),
               flag({"DomainRef"}), text({"外部参照"}), whole({"外部参照TABLEID", "外部参照ROWNO"}),
               text({"外部参照登録方法"}), integer({"pmark"}), flag({"REVERSE_DB"})});
}

/// A field as it was before a change, and spare columns.
Fields history() {
  return join({whole({"変更履歴番号"}), text({"旧日本語名", "旧項目名", "旧型"}), integer({"旧整数桁数", "旧少数桁数"}),
               whole({"旧長さ"}), text({"旧項目分類"}), memo({"旧備考"}),
               text({"文字1", "文字2", "文字3", "文字4", "文字5"}), real({"値1", "値2", "値3", "値4", "値5"})});
}

std::vector<TableDef> definitionTables() {
  return {
      table("MAS_SYSTEM", {"システム名"},
            {autoNumber("ID"), text({"システム名", "略名"}), memo({"概要"}), date({"作成年月日", "更新年月日"}),
             text({"作成者", "更新者"}), flag({"修正許可"}), integer({"ユーザー制限"}), flag({"出力しない"}),
             text({"connectdatabsse", "odbcsouce", "username", "password", "databasetype", "tablelayoutpath",
                   "書式ファイル名", "tablespace", "indexspace"}),
             indexSpaceOfSystem(), whole({"DB_BLOCK_SIZE"}), text({"accessfilename"}, 255),
             integer({"table_name_ucase", "field_name_lcase", "field_name_ucase", "narrow_flg", "boltablenarrow",
                      "bolryakulower", "bolryakudelmoji", "replacejpnspace", "filelinkcopy", "field_name_astyped"}),
             text({"make_server", "COMPNAME"})}),
      table("MAS_TABLEINFO", {"ID"},
            {autoNumber("ID"),
             text({"システム名", "テーブル名"}),
             text({"略名"}, 50),
             text({"日本語名", "分類"}),
             memo({"概要"}),
             text({"格納先", "ファイル種別", "作成間隔"}),
             whole({"現在数", "想定数", "現在保持", "想定保持"}),
             flag({"修正許可"}),
             integer({"削除フラグ"}),
             flag({"全システム共通"}),
             whole({"件数定義ID"}),
             flag({"レコード更新削除"}),
             text({"データ入力元", "画面名等", "進捗状況", "担当者名"}),
             date({"作成日", "変更日", "完了日"}),
             text({"データ分類", "データ分類2"}),
             whole({"ORA_INITIAL", "ORA_NEXT", "ORA_MINEXTENTS", "ORA_MAXEXTENTS", "ORA_PCTINCREASE", "ORA_PCTFREE",
                    "ORA_PCTUSED"}),
             text({"ORA_TABLESPASE", "ORA_INDEXSPASE"}),
             date({"SQL文初回作成日", "SQL文最新作成日"}),
             whole({"作成回数"}),
             date({"チェックポイント日付"}),
             whole({"参照数"}),
             real({"レコード長", "ブロック格納件数", "必要容量"}),
             whole({"項目数"}),
             flag({"REVERSE_DB"}),
             integer({"pmark", "brinindex", "inttriggerflg"}),
             text({"reffile"}, 255),
             text({"partition_field"}, 100),
             audit()}),
      table("MAS_TABLEDETAILES", {"ID", "ROWNO"},
            {fieldDefinition(), text({"DB_COLUMN_NAME", "DB_DATA_TYPE"}),
             whole({"DB_DATA_LENGTH", "DB_DATA_PRECISION", "DB_DATA_SCALE"}), text({"DB_NULLABLE"}),
             memo({"DB_DATA_DEFAULT"}), real({"DB_NUM_DISTINCT"}), text({"DB_LOW_VALUE", "DB_HIGH_VALUE"}),
             real({"MAX_TRANS", "DB_DENSITY", "NUM_NULLS", "BYTE"}), text({"DB_CONSTRAINT_NAME"}),
             memo({"DB_SEARCH_CONDITION"}), audit()}),
      // Of the marks of a read, a program's row has one column: it holds the program's ID. Its dates have columns of
      // their own, since digits are whole numbers.
      table("MAS_PRJINFO", {"ID", "ROWNO"},
            {fieldDefinition(), text({"DB_COLUMN_NAME"}), audit(), date({"開始日", "完了日"}),
             text({"参照仕様書ファイル"}, 100)}),
      table("MAS_INDEX", {"INDEX_NAME", "ID", "ROWNO"},
            {text({"INDEX_NAME"}), whole({"ID", "ROWNO"}), text({"備考"}), integer({"順序", "bolUNIQUE", "brinindex"}),
             audit()}),
      table("MAS_DOMAIN", {"ID"},
            {autoNumber("ID"), text({"システム名", "日本語名", "項目名", "型"}), integer({"整数桁数", "少数桁数"}),
             whole({"長さ"}), text({"項目分類"}), memo({"備考"}), integer({"sortnum", "pmark"}),
             flag({"全システム共通"}), integer({"削除フラグ"}), audit()}),
      table("MAS_DIVISION", {"システム名", "値名称"},
            {text({"システム名", "値名称"}), memo({"内容"}), text({"型", "種別"}), flag({"全システム共通"}),
             integer({"削除フラグ"}), audit()}),
      table("MAS_DIVISIONDETAILES", {},
            {text({"システム名", "値名称"}), integer({"行番号"}), text({"値", "内容"}), flag({"初期値"}),
             auditWithoutComputers()}),
      table(
          "MAS_KENSU", {"ID"},
          {autoNumber("ID"), text({"システム名", "定義名", "概要"}), whole({"件数"}),
           text({"テーブル1", "テーブル2", "テーブル3"}), flag({"全システム共通"}), integer({"削除フラグ"}), audit()}),
      table("MAS_TABLEBIKO", {"ID", "NUM"},
            {whole({"ID", "NUM"}), text({"システム名", "ファイル名", "日本語名"}), memo({"備考"}),
             date({"作成年月日", "更新年月日"}), text({"make_server"})}),
      table("MAS_TABLEHIS", {}, {whole({"ID", "ROWNO"}), history(), audit()}),
      table("DAT_DOMAINCHANGE", {}, {text({"システム名"}), whole({"ID"}), history(), audit()}),
      table("DAT_REFERENCE", {"システム名", "ID", "ROWNO", "ID_REF", "ROWNO_REF"},
            {text({"システム名"}), whole({"ID", "ROWNO", "ID_REF", "ROWNO_REF"}), text({"記号", "参照区分", "FK"}),
             auditWithoutComputers()}),
      table("DAT_TABLEREF", {"システム名", "ID"},
            {text({"システム名"}), whole({"ID"}), flag({"全て", "検索", "追加", "更新", "削除", "参照"})}),
  };
}

std::vector<TableDef> catalogueTables() {
  return {
      table("MAS_FILE", {"ファイル種別"}, {text({"ファイル種別"})}),
      table("MAS_FILETYPE", {"ファイル種別", "型"},
            {text({"ファイル種別", "型"}), flag({"桁数チェック"}), whole({"桁数"}), flag({"数値項目"}),
             text({"型_変換"}, 50)}),
      table("MAS_FILECONV", {"元ファイル種別", "元型"},
            {text({"元ファイル種別"}, 20), text({"元型"}, 50), text({"先ファイル種別"}, 20), text({"先型"}, 50),
             flag({"先桁数チェック"}), whole({"先桁数"}), flag({"先数値項目"}), integer({"整数_桁数", "少数_桁数"})}),
      table("MAS_HOST", {}, {text({"格納先"})}),
      table("MAS_USER", {"ユーザー名"}, {text({"ユーザー名", "グループ"}), date({"ログオン日付"})}),
  };
}

// Sizes in a live database outgrow a Long, so they are real numbers here.
std::vector<TableDef> snapshotTables() {
  return {
      snapshot("ORA_SERCH_INFO", {date({"開始年月日", "修了年月日"}), text({"状態"})}),
      snapshot("ORA_USER_TABLES",
               {text({"TABLE_NAME", "TABLESPACE_NAME"}),
                real({"PCT_FREE", "PCT_USED", "INI_TRANS", "MAX_TRANS", "INITIAL_EXTENT", "NEXT_EXTENT", "MIN_EXTENTS",
                      "MAX_EXTENTS", "PCT_INCREASE", "NUM_ROWS", "BLOCKS", "AVG_ROW_LEN"})}),
      snapshot("ORA_USER_TAB_COLUMNS",
               {text({"TABLE_NAME", "COLUMN_NAME", "DATA_TYPE"}), real({"DATA_LENGTH", "DATA_PRECISION", "DATA_SCALE"}),
                text({"NULLABLE"}), real({"COLUMN_ID"}), memo({"DATA_DEFAULT"}), real({"NUM_DISTINCT"}),
                text({"LOW_VALUE", "HIGH_VALUE"}), real({"DENSITY", "NUM_NULLS"})}),
      snapshot("ORA_USER_TAB_COMMENTS", {text({"TABLE_NAME", "TABLE_TYPE"}), memo({"COMMENTS"})}),
      snapshot("ORA_USER_COL_COMMENTS", {text({"TABLE_NAME", "COLUMN_NAME"}), memo({"COMMENTS"})}),
      snapshot("ORA_USER_CONSTRAINTS", {text({"CONSTRAINT_NAME", "CONSTRAINT_TYPE", "TABLE_NAME"}),
                                        memo({"SEARCH_CONDITION"}), text({"STATUS"}), date({"LAST_CHANGE"})}),
      snapshot("ORA_USER_INDEXES",
               {text({"INDEX_NAME", "TABLE_NAME", "UNIQUENESS", "COMPRESSION"}), real({"INI_TRANS", "MAX_TRANS"}),
                text({"TABLESPACE_NAME"}),
                real({"INITIAL_EXTENT", "NEXT_EXTENT", "MIN_EXTENTS", "MAX_EXTENTS", "PCT_INCREASE", "PCT_FREE"}),
                text({"STATUS"})}),
      snapshot("ORA_USER_IND_COLUMNS",
               {text({"INDEX_NAME", "TABLE_NAME", "COLUMN_NAME"}), real({"COLUMN_POSITION", "COLUMN_LENGTH"})}),
      snapshot("ORA_USER_OBJECTS", {text({"OBJECT_NAME", "OBJECT_TYPE"}), date({"CREATED", "LAST_DDL_TIME"}),
                                    text({"STATUS", "TEMPORARY"})}),
      snapshot("ORA_USER_TABLESPACES",
               {text({"TABLESPACE_NAME"}), real({"MIN_EXTLEN"}),
                text({"CONTENTS", "LOGGING", "EXTENT_MANAGEMENT", "ALLOCATION_TYPE", "STATUS"})}),
      snapshot("ORA_USER_FREE_SPACE", {text({"TABLESPACE_NAME"}), real({"BYTES", "BLOCKS"})}),
  };
}

}  // namespace

const std::vector<TableDef>& repositoryTables() {
  static const std::vector<TableDef> tables = [] {
    std::vector<TableDef> made = definitionTables();
    for (auto part : {catalogueTables(), snapshotTables()}) made.insert(made.end(), part.begin(), part.end());
    return made;
  }();
  return tables;
}

}  // namespace quillmarden
