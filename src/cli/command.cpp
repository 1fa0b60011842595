#include "cli/command.h"

namespace quillmarden {

OptionSpec& addSystem(OptionSet& options, std::string& system) {
  return options.text("--system", system, "NAME", "システム名(必須)").required();
}

OptionSpec& addTable(OptionSet& options, std::string& table) {
  return options.text("--table", table, "NAME", "テーブル名または日本語名(必須)").required();
}

OptionSpec& addTables(OptionSet& options, std::vector<std::string>& tables) {
  return options.texts("--table", tables, "NAME", "テーブル名または日本語名。複数回指定できる。省略時は全てのテーブル");
}

OptionSpec& addSettings(OptionSet& options, std::vector<std::string>& settings, std::string help) {
  return options.texts("--set", settings, "NAME=VALUE", std::move(help)).check([](const std::string& text) {
    const auto sign = text.find('=');
    const bool named = sign != std::string::npos && text.find_first_not_of(' ') < sign;
    return named ? std::string() : "列名=値 の形で指定して下さい: " + text;
  });
}

OptionSpec& addOutput(OptionSet& options, std::string& output) {
  return options.text("--output", output, "FILE", "作成するファイル。省略時はシステムの作業フォルダに作成する");
}

}  // namespace quillmarden
