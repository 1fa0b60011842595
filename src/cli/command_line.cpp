#include "cli/command_line.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/commands.h"
#include "cli/console_host.h"
#include "common/log.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

constexpr const char* kOptionsHeading = "オプション";
constexpr const char* kCommonHeading = "共通オプション";

/// What every command understands, behind its name or in front of it.
void addCommonOptions(OptionSet& set, Options& options, Entry entry) {
  set.text("--repository", options.repository, "FILE", "リポジトリのファイル。.mdb が含まれないときは .mdb を付ける");
  set.text("--data-folder", options.dataFolder, "DIR", "ユーザーのアプリケーションデータのフォルダの代わり");
  set.text("--temp-folder", options.tempFolder, "DIR", "一時フォルダの代わり");
  set.text("--program-folder", options.programFolder, "DIR", "プログラムのフォルダの代わり");
  set.text("--now", options.now, "TIME", "現在日時を固定する(yyyy/mm/dd hh:nn:ss)").check([](const std::string& text) {
    return parseDateTime(text) ? std::string() : "日時ではありません(yyyy/mm/dd hh:nn:ss): " + text;
  });
  set.text("--computer", options.computer, "NAME", "コンピュータ名の代わり");
  set.choice("--answer", options.answerYes, "yes|no", "全ての質問への答え(省略時 yes)", {{"yes", true}, {"no", false}});
  set.choice("--encoding", options.encoding, "cp932|utf-8",
             "作成するテキストファイルの文字コード(省略時 cp932、--runnableでは utf-8)",
             {{"cp932", TextEncoding::Cp932}, {"utf-8", TextEncoding::Utf8}});
  set.texts("--user", options.users, "NAME",
            entry == Entry::None ? "登録するユーザー名。複数回指定できる(adminは常に登録する)"
                                 : "ログインするユーザー名(省略時 admin)");
}

/// The options of one command, or of all of them, as the parser knows them.
class ParsedOptions {
 public:
  void add(CLI::App& app, const OptionSet& set, const char* heading) {
    for (const OptionSpec& spec : set.options()) {
      CLI::Option* option = spec.form == OptionSpec::Form::Flag ? app.add_flag(spec.name, spec.help)
                                                                : app.add_option(spec.name)->description(spec.help);
      option->group(heading);
      if (spec.form != OptionSpec::Form::Flag) addValue(*option, spec);
      for (const std::string& other : spec.wanted) option->needs(app.get_option(other));
      for (const std::string& other : spec.unwanted) option->excludes(app.get_option(other));
      options_.emplace_back(option, &spec);
    }
  }

  /// Hands the values to where they belong, in the order of the set.
  void take() const {
    for (const auto& [option, spec] : options_) {
      if (spec->form == OptionSpec::Form::Flag && option->count() > 0) spec->take("");
      if (spec->form == OptionSpec::Form::Flag) continue;
      for (const std::string& value : option->results()) spec->take(value);
    }
  }

 private:
  static void addValue(CLI::Option& option, const OptionSpec& spec) {
    option.type_name(spec.type)->required(spec.isRequired);
    if (spec.form == OptionSpec::Form::Repeated)
      option.expected(1, CLI::detail::expected_max_vector_size)->allow_extra_args(false);
    option.check(CLI::Validator([&spec](std::string& value) { return optionFault(spec, value); }, ""));
  }

  std::vector<std::pair<CLI::Option*, const OptionSpec*>> options_;
};

void setWords(CLI::App& app) {
  auto formatter = std::make_shared<CLI::Formatter>();
  formatter->label("Usage", "使い方");
  formatter->label("Options", kOptionsHeading);
  formatter->label("OPTIONS", kOptionsHeading);
  formatter->label("Positionals", "引数");
  formatter->label("SUBCOMMAND", "コマンド");
  formatter->label("REQUIRED", "");
  formatter->label("Needs", "要");
  formatter->column_width(34);
  app.formatter(formatter);
  app.set_help_flag("-h,--help", "この説明を表示する");
  app.get_help_ptr()->group(kOptionsHeading);
}

/// The parser's own words, without those that the line before them has said in Japanese.
std::string namesIn(std::string text) {
  if (const std::size_t at = text.find(" excludes "); at != std::string::npos) text.replace(at, 10, ", ");
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
  else if (dynamic_cast<const CLI::ExcludesError*>(&error))
    text = "同時に指定できません.\n " + text;
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
  app.set_version_flag("--version", "quillmarden-cli " + gGetVersion(), "バージョンを表示する")->group(kOptionsHeading);
  app.require_subcommand(0, 1);

  std::deque<OptionSet> sets;  // the parser's options look into them
  ParsedOptions parsed;
  Options& options = commandLine.options;
  const auto addCommon = [&](CLI::App& to, Entry entry) {
    addCommonOptions(sets.emplace_back(), options, entry);
    parsed.add(to, sets.back(), kCommonHeading);
  };
  addCommon(app, Entry::LogIn);
  std::vector<std::pair<const Command*, CommandRoutine>> named;
  for (const Command* command : commands()) {
    CLI::App* sub = app.add_subcommand(command->name, command->help)->group(groupHeading(command->group));
    if (std::find(argv, argv + argc, std::string_view(command->name)) == argv + argc) continue;
    sub->get_help_ptr()->group(kOptionsHeading);
    named.emplace_back(command, command->prepare(sets.emplace_back()));
    parsed.add(*sub, sets.back(), kOptionsHeading);
    addCommon(*sub, command->entry);
  }

  try {
    app.parse(argc, argv);
    parsed.take();
    for (auto& [command, routine] : named) {
      if (!app.got_subcommand(command->name)) continue;
      commandLine.routine = std::move(routine);
      commandLine.entry = command->entry;
    }
    // Not asked of the parser, which would complain about a missing command where an unknown one stands.
    if (!commandLine.routine) throw CLI::RequiredError("COMMAND");
    // Nor this one, so that it may stand on either side of the command.
    if (commandLine.entry != Entry::None && options.repository.empty() && app.count("--repository") == 0 &&
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
