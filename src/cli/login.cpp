#include "cli/login.h"

namespace quillmarden {

namespace {

ExitStatus runLogin(Run& run) {
  run.output += "ユーザー名\t";
  putCell(run.output, run.session.gLoginUser);
  run.output += "\nファイル\t";
  putCell(run.output, run.session.gDB->path());
  run.output += "\n管理者\t";
  run.output += run.isAdmin ? "はい\n" : "いいえ\n";
  return kDone;
}

}  // namespace

constinit const Command kLoginCommand{
    .name = "login",
    .group = CommandGroup::Repository,
    .help = "ログインし、ユーザー名、ファイル、管理者かどうかを表示する。古いリポジトリは更新する",
    .prepare = prepareCommand<runLogin>,
    .entry = Entry::LogInSweep};

}  // namespace quillmarden
