#include "cli/login.h"

namespace quillmarden {

ExitStatus runLogin(Run& run) {
  run.output += "ユーザー名\t";
  putCell(run.output, run.session.gLoginUser);
  run.output += "\nファイル\t";
  putCell(run.output, run.session.gDB->path());
  run.output += "\n管理者\t";
  run.output += run.isAdmin ? "はい\n" : "いいえ\n";
  return kDone;
}

}  // namespace quillmarden
