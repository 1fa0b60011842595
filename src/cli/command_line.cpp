#include "cli/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <string>
#include <string_view>

#include "cli/alter.h"
#include "cli/capacity.h"
#include "cli/console_host.h"
#include "cli/er.h"
#include "cli/format_file.h"
#include "cli/init.h"
#include "cli/layout.h"
#include "cli/list.h"
#include "cli/login.h"
#include "cli/mail.h"
#include "cli/members.h"
#include "cli/memo.h"
#include "cli/report.h"
#include "cli/row_list.h"
#include "cli/save.h"
#include "cli/show.h"
#include "cli/snippet.h"
#include "cli/sql.h"
#include "cli/system.h"
#include "cli/systems.h"
#include "cli/tables.h"
#include "cli/value_list.h"
#include "cli/view.h"
#include "common/log.h"
#include "common/text.h"
#include "screen/date_time.h"
#include "sqlgen/snippet.h"

namespace quillmarden {

namespace {

CLI::Validator dateValidator() {
  return CLI::Validator(
      [](std::string& text) {
        return parseDateTime(text) ? std::string() : "日時ではありません(yyyy/mm/dd hh:nn:ss): " + text;
      },
      "");
}

CLI::Validator filledValidator() {
  return CLI::Validator(
      [](std::string& text) {
        bool blank = text.find_first_not_of(' ') == std::string::npos;
        return blank ? std::string("空白は指定できません.") : std::string();
      },
      "");
}

CLI::Validator oneOf(std::vector<std::string> words) {
  return CLI::Validator(
      [words](std::string& text) {
        std::string list;
        for (const std::string& word : words) {
          if (word == text) return std::string();
          list += (list.empty() ? "" : ", ") + word;
        }
        return list + " のいずれかを指定して下さい: " + text;
      },
      "");
}

CLI::Validator settingValidator() {
  return CLI::Validator(
      [](std::string& text) {
        const auto sign = text.find('=');
        const bool named = sign != std::string::npos && text.find_first_not_of(' ') < sign;
        return named ? std::string() : "列名=値 の形で指定して下さい: " + text;
      },
      "");
}

CLI::Validator rowListValidator() {
  return CLI::Validator(
      [](std::string& text) { return parseRowList(text) ? std::string() : "行は 1,3-5 の形で指定して下さい: " + text; },
      "");
}

CLI::Validator snippetValidator() {
  std::vector<std::string> indexes;
  for (const SnippetEntry& entry : snippetEntries()) indexes.push_back(std::to_string(entry.index));
  return oneOf(std::move(indexes));
}

/// The menu's entries, a line each.
std::string snippetHelp() {
  std::string help = "コードの番号(必須)";
  for (const SnippetEntry& entry : snippetEntries())
    help.append("\n").append(std::to_string(entry.index)).append(": ").append(trim(entry.caption));
  return help;
}

/// An option that may come again, one value each time.
CLI::Option* addRepeated(CLI::App& app, const std::string& name, std::vector<std::string>& values,
                         const std::string& help) {
  return app.add_option(name, values, help)->allow_extra_args(false)->type_name("NAME");
}

/// What every command understands, behind its name or in front of it.
void addCommonOptions(CLI::App& app, Options& options) {
  const char* group = "共通オプション";
  auto add = [&](const char* name, std::string& value, const char* type, const char* help) {
    return app.add_option(name, value, help)->type_name(type)->group(group);
  };
  add("--repository", options.repository, "FILE", "リポジトリのファイル");
  add("--data-folder", options.dataFolder, "DIR", "ユーザーのアプリケーションデータのフォルダの代わり");
  add("--temp-folder", options.tempFolder, "DIR", "一時フォルダの代わり");
  add("--program-folder", options.programFolder, "DIR", "プログラムのフォルダの代わり");
  add("--now", options.now, "TIME", "現在日時を固定する(yyyy/mm/dd hh:nn:ss)")->check(dateValidator());
  add("--computer", options.computer, "NAME", "コンピュータ名の代わり");
  add("--answer", options.answer, "yes|no", "全ての質問への答え(省略時 yes)")->check(oneOf({"yes", "no"}));
  add("--encoding", options.encoding, "cp932|utf-8", "作成するテキストファイルの文字コード(省略時 cp932)")
      ->check(oneOf({"cp932", "utf-8"}));
}

void addUser(CLI::App& app, Options& options, const char* help) {
  addRepeated(app, "--user", options.users, help)->group("共通オプション");
}

void addSystem(CLI::App& app, Options& options) {
  app.add_option("--system", options.system, "システム名(必須)")->type_name("NAME")->required();
}

void addTable(CLI::App& app, Options& options) {
  app.add_option("--table", options.table, "テーブル名または日本語名(必須)")->type_name("NAME")->required();
}

void addTables(CLI::App& app, Options& options) {
  addRepeated(app, "--table", options.tables, "テーブル名または日本語名。複数回指定できる。省略時は全てのテーブル");
}

void addChosenTables(CLI::App& app, Options& options) {
  addTables(app, options);
  app.add_option("--output", options.output, "作成するファイル。省略時はシステムの作業フォルダに作成する")
      ->type_name("FILE");
}

void addTableFilters(CLI::App& app, Options& options) {
  auto add = [&](const char* name, std::string& value, const char* type, const char* help) {
    return app.add_option(name, value, help)->type_name(type);
  };
  add("--title", options.title, "TITLE", "先頭に表示し、検索する名称: 日本語名 か テーブル名(省略時 日本語名)")
      ->check(oneOf({"日本語名", "テーブル名"}));
  add("--host", options.host, "TEXT", "格納先で絞る");
  add("--class", options.tableClass, "TEXT", "分類で絞る");
  add("--data-class", options.dataClass, "TEXT", "データ分類、データ分類2のいずれかで絞る");
  add("--data-class2", options.dataClass2, "TEXT", "--data-class と同じ。両方指定すると、いずれかに該当するもの");
  add("--where", options.where, "TEXT", "名称の検索条件。* ? # [ ] が使える");
  add("--where-mode", options.whereMode, "MODE", "検索一致条件: から始まる か を含む(省略時 から始まる)")
      ->check(oneOf({"から始まる", "を含む"}));
  add("--rows", options.rows, "ROWS", "all: 全て、editor: 定義のみ、reverse: リバースのみ(省略時 all)")
      ->check(oneOf({"all", "editor", "reverse"}));
  app.add_flag("--all-systems", options.allSystems, "全システム共通のテーブルのみ");
  app.add_flag("--with-references", options.withReferences, "参照している他システムの共通テーブルも表示する");
}

void addValueListOptions(CLI::App& app, Options& options) {
  auto add = [&](const char* name, std::string& value, const char* type, const char* help) {
    return app.add_option(name, value, help)->type_name(type);
  };
  auto* list = add("--list", options.valueList, "NAME", "値名称。省略時は値リストの一覧を表示する");
  list->check(filledValidator());
  app.add_flag("--with-shared", options.withShared, "一覧に、他システムの全システム共通の値リストも表示する");
  app.add_flag("--grid", options.gridOnly, "値のみ表示する");
  add("--save", options.saveFile, "FILE", "値のファイル(UTF-8)。値リストの値をチェックして、全て置き換える")
      ->needs(list);
  add("--class", options.tableClass, "TEXT", "種別: フラグ か 区分。一覧を絞る。--list があるときは登録する")
      ->check(oneOf({"フラグ", "区分"}));
  add("--type", options.valueType, "TEXT", "型: 数値、文字 か Yes/No。一覧を絞る。--list があるときは登録する")
      ->check(oneOf({"数値", "文字", "Yes/No"}));
  add("--memo", options.memo, "TEXT", "値の説明を登録する")->needs(list);
  add("--shared", options.allowOthers, "yes|no", "全システム共通とするかどうかを登録する")
      ->check(oneOf({"yes", "no"}))
      ->needs(list);
}

struct Command {
  const char* name;
  const char* help;
  CommandRoutine routine;
  bool logsIn;
  void (*addOptions)(CLI::App& app, Options& options);
};

constexpr const char* kUserHelp = "ログインするユーザー名(省略時 admin)";

const Command kCommands[] = {
    {"init", "初期リポジトリを作成し、ファイル名を表示する。既存のファイルには作成しない", runInit, false,
     [](CLI::App& app, Options& options) {
       app.add_option("FILE", options.file, "作成するファイル。.mdb が含まれないときは .mdb を付ける")
           ->type_name("")
           ->check(filledValidator())
           ->required();
     }},
    {"login", "ログインし、ユーザー名、ファイル、管理者かどうかを表示する。古いリポジトリは更新する", runLogin, true,
     [](CLI::App&, Options&) {}},
    {"systems", "システムの一覧を表示する。1行に、システム名、タブ、データベース種別", runSystems, true,
     [](CLI::App&, Options&) {}},
    {"system", "システムの情報を表示する。1行に、列名、タブ、値。--set で列を変更して保存する", runSystem, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       app.add_flag("--new", options.newSystem, "--system の名前で、新しいシステムを登録する");
       addRepeated(app, "--set", options.sets, "変更する列と値。複数回指定できる。システム名は名称変更になる")
           ->type_name("NAME=VALUE")
           ->check(settingValidator());
     }},
    {"tables", "テーブルリストを表示する。1行に、先頭の名称(50桁)、もう一方の名称、ID。タブで区切る", runTables, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTableFilters(app, options);
     }},
    {"show", "テーブルの基本情報と、空行の後に項目(1行26セル、タブ区切り)を表示する", runShow, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTable(app, options);
       app.add_flag("--grid", options.gridOnly, "項目のみ表示する");
     }},
    {"save", "showと同じ形式のファイル(UTF-8)の項目で、テーブルの項目をチェックして保存する", runSave, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTable(app, options);
       app.add_option("--grid", options.gridFile, "項目のファイル(必須)。見出しなし、行末のセルは省略できる")
           ->type_name("FILE")
           ->required();
     }},
    {"value-list",
     "値リストの一覧(1行に、値名称、システム名、種別、型、内容)か、1つの値リスト(1行に、初期値、値、概要)"
     "を表示、登録する",
     runValueList, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addValueListOptions(app, options);
     }},
    {"memo", "テーブルの付帯メモ(1行に、記号、備考、作成日)を表示、保存する。タブで区切る", runMemo, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTable(app, options);
       app.add_option("--save", options.saveFile, "表示と同じ形式のファイル(UTF-8)で保存する。作成日は省略できる")
           ->type_name("FILE");
     }},
    {"sql", "CREATE文のファイルを作成し、ファイル名を表示する", runSql, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addChosenTables(app, options);
       app.add_flag("--full", options.full, "オプション設定によらず、DROP文以外を全て出力する");
       app.add_flag("--runnable", options.runnable, "データベースでそのまま実行できる形式で出力する");
     }},
    {"alter", "ALTER TABLE文を表示する", runAlter, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTable(app, options);
       app.add_option("--rows", options.rowList, "項目の行(必須)。1,3-5 の形で指定する。全ての行を続けては指定できない")
           ->type_name("ROWS")
           ->check(rowListValidator())
           ->required();
       app.add_option("--mode", options.alterMode, "add: 項目の追加、change: 項目の変更(必須)")
           ->type_name("add|change")
           ->check(oneOf({"add", "change"}))
           ->required();
     }},
    {"snippet", "項目を使うプログラムのコードを表示する", runSnippet, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTable(app, options);
       app.add_option("--rows", options.rowList, "項目の行。1,3-5 の形で指定する。省略時は全ての項目")
           ->type_name("ROWS")
           ->check(rowListValidator());
       app.add_option("--index", options.snippetIndex, snippetHelp())
           ->type_name("N")
           ->check(snippetValidator())
           ->required();
     }},
    {"view", "VIEW文のファイルを作成し、ファイル名を表示する", runView, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addChosenTables(app, options);
     }},
    {"layout", "テーブルレイアウトのブックをテーブルごとに作成し、ファイル名を表示する", runLayout, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTables(app, options);
       app.add_option("--output-folder", options.outputFolder, "作成するフォルダ。省略時はシステムの作業フォルダ")
           ->type_name("DIR");
     }},
    {"er", "ERのブックを作成し、ファイル名を表示する", runEr, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addChosenTables(app, options);
       app.add_option("--mode", options.mode, "1: キー項目のみ、2: 名称のみ、3: 備考も表示、その他: 全項目")
           ->type_name("N");
       app.add_flag("--fk-only", options.foreignOnly, "外部参照のある項目のみ");
     }},
    {"list", "テーブル一覧のブックを作成し、ファイル名を表示する", runList, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addChosenTables(app, options);
       app.add_flag("--fields", options.fields, "項目ごとに1行とする");
     }},
    {"members", "メンバー一覧のブックを作成し、ファイル名を表示する", runMembers, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addChosenTables(app, options);
     }},
    {"mail", "メンバーのメールアドレスを表示する。1行に1テーブル、コンマで区切る", runMail, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       addTables(app, options);
     }},
    {"report", "出力_ で始まるQueryを実行し、見出しの行と結果をタブ区切りで表示する", runReport, true,
     [](CLI::App& app, Options& options) {
       addSystem(app, options);
       app.add_option("--query", options.query, "Queryの名称(必須)")->type_name("NAME")->required();
       addRepeated(app, "--parameter", options.parameters, "パラメータの値。Queryの順に、2つまで指定できる")
           ->type_name("TEXT");
       app.add_option("--output", options.output, "表示せずに、このファイルのブックに出力する")->type_name("FILE");
     }},
    {"format-file", "書式ファイルがなければ初期の内容で作成し、ファイル名を表示する", runFormatFile, true,
     [](CLI::App& app, Options& options) {
       app.add_option("NAME", options.file, "書式ファイル名(システムの書式ファイル名と同じ)")
           ->type_name("")
           ->check(filledValidator())
           ->required();
       app.add_flag("--check", options.check, "作成せずに、定義エラーをチェックする");
     }},
    {"capacity", "レコード長と容量を再計算し、見出しの行と、テーブルごとの値をタブ区切りで表示する", runCapacity, true,
     [](CLI::App& app, Options& options) { addSystem(app, options); }},
};

void setWords(CLI::App& app) {
  auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", "使い方");
  formatter->label("Options", "オプション");
  formatter->label("OPTIONS", "オプション");
  formatter->label("Positionals", "引数");
  formatter->label("SUBCOMMAND", "コマンド");
  formatter->label("REQUIRED", "");
  formatter->label("Needs", "要");
  formatter->column_width(34);
  app.formatter(formatter);
  app.set_help_flag("-h,--help", "この説明を表示する");
  app.option_defaults()->group("オプション");
  app.get_help_ptr()->group("オプション");
}

/// The parser's own words, without those that the line before them has said in Japanese.
std::string namesIn(std::string text) {
  for (const std::string_view said :
       {" is required", "The following argument was not expected: ", "The following arguments were not expected: "}) {
    if (const std::size_t at = text.find(said); at != std::string::npos) text.erase(at, said.size());
  }
  return text;
}

ExitStatus usageError(const CLI::ParseError& error) {
  std::string text = namesIn(error.what());
  if (dynamic_cast<const CLI::RequiredError*>(&error))
    text = "必要な指定がありません.\n " + text;
  else if (dynamic_cast<const CLI::ExtrasError*>(&error))
    text = "不明な指定があります.\n " + text;
  else if (dynamic_cast<const CLI::ValidationError*>(&error))
    text = "指定が不正です.\n " + text;
  else
    text = "コマンドラインが不正です.\n " + text;
  writeMessage("コマンドライン", text + "\n説明は --help で表示されます.");
  return kUsage;
}

}  // namespace

std::optional<ExitStatus> parseCommandLine(int argc, char** argv, CommandLine& commandLine) {
  CLI::App app("Quillmarden: データベース定義のリポジトリから、SQL文などを作成する", "quillmarden-cli");
  setWords(app);
  app.set_version_flag("--version", "quillmarden-cli " + gGetVersion(), "バージョンを表示する")->group("オプション");
  app.require_subcommand(0, 1);
  Options& options = commandLine.options;
  addCommonOptions(app, options);
  addUser(app, options, kUserHelp);
  for (const Command& command : kCommands) {
    CLI::App* sub = app.add_subcommand(command.name, command.help)->group("コマンド");
    // The options of all commands together cost more than a login, and only a command that is named is asked for them.
    if (std::find(argv, argv + argc, std::string_view(command.name)) == argv + argc) continue;
    sub->get_help_ptr()->group("オプション");
    command.addOptions(*sub, options);
    addCommonOptions(*sub, options);
    addUser(*sub, options, command.logsIn ? kUserHelp : "登録するユーザー名。複数回指定できる(adminは常に登録する)");
  }

  try {
    app.parse(argc, argv);
    for (const Command& command : kCommands) {
      if (!app.got_subcommand(command.name)) continue;
      commandLine.routine = command.routine;
      commandLine.logsIn = command.logsIn;
    }
    // Not asked of the parser, which would complain about a missing command where an unknown one stands.
    if (!commandLine.routine) throw CLI::RequiredError("COMMAND");
    // Nor this one, so that it may stand on either side of the command.
    if (commandLine.logsIn && options.repository.empty() && app.count("--repository") == 0 &&
        app.get_subcommands().front()->count("--repository") == 0)
      throw CLI::RequiredError("--repository");
    return std::nullopt;
  } catch (const CLI::CallForHelp&) {
    const auto chosen = app.get_subcommands();
    std::string text = chosen.empty() ? app.help() : chosen.front()->help("quillmarden-cli");
    return writeStandardOutput(text) ? kDone : kFailed;
  } catch (const CLI::CallForVersion& version) {
    return writeStandardOutput(std::string(version.what()) + "\n") ? kDone : kFailed;
  } catch (const CLI::ParseError& error) {
    return usageError(error);
  }
}

}  // namespace quillmarden
