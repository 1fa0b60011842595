#include "cli/init.h"

#include <fmt/format.h>

#include <filesystem>

#include "cli/console_session.h"
#include "common/text.h"
#include "engine/value.h"
#include "repository/schema.h"
#include "repository/users.h"

namespace quillmarden {

namespace {

struct InitOptions {
  std::string file;
};

void addInitOptions(OptionSet& set, InitOptions& options) {
  set.text("FILE", options.file, "", "作成するファイル。.mdb が含まれないときは .mdb を付ける").filled().required();
}

ExitStatus runInit(Run& run, const InitOptions& options) {
  std::string file = repositoryName(options.file);
  std::error_code ignored;
  if (std::filesystem::symlink_status(file, ignored).type() != std::filesystem::file_type::not_found)
    return failure(run, fmt::format("既に同じ名前のファイルが存在します.\n {}", file));
  // A login by this name finds that file today, and would find another one from now on.
  if (file != options.file && std::filesystem::is_regular_file(options.file, ignored))
    return failure(run, fmt::format("既に同じ名前のファイルが存在します.\n {}", options.file));

  std::vector<std::string> users;
  for (const std::string& user : run.options.users) {
    users.emplace_back(trim(user));
    if (const std::string fault = userNameFault(users.back()); !fault.empty())
      return failure(run, fmt::format("{}\n ユーザー名 : {}", fault, user));
  }
  try {
    createRepository(file, users);
  } catch (const EngineError& error) {
    return failure(run, fmt::format("データベースを作成できませんでした.\n {}\n {}", file, error.what()));
  }
  run.output = file + "\n";
  return kDone;
}

}  // namespace

constinit const Command kInitCommand{
    .name = "init",
    .group = CommandGroup::Repository,
    .help = "初期リポジトリを作成し、ファイル名を表示する。既存のファイルには作成しない",
    .prepare = prepareCommand<InitOptions, addInitOptions, runInit>,
    .entry = Entry::None};

}  // namespace quillmarden
