#include "editing/grid_backup.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <system_error>
#include <tuple>
#include <utility>

#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_backup_text.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kEnding = ".grid";
constexpr std::string_view kLockEnding = ".lock";

fs::path backupFolder(const Session& session) { return toPath(gPathJoin(session.gDataFolder, "EditedGrids")); }

fs::path lockOf(const fs::path& file) {
  fs::path lock = file;
  lock += kLockEnding;
  return lock;
}

/// Holds a lock file for this process; -1 when another one has it or it cannot be made. The copy itself is replaced
/// with each write, so that a lock on it would be lost. A lock file that another process removed in between is no
/// lock.
int takeLock(const fs::path& lock) {
  const int descriptor = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor < 0) return -1;
  struct ::stat held {};
  struct ::stat named {};
  const bool mine = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && ::fstat(descriptor, &held) == 0 &&
                    ::stat(lock.c_str(), &named) == 0 && held.st_ino == named.st_ino && held.st_dev == named.st_dev;
  if (mine) return descriptor;
  ::close(descriptor);
  return -1;
}

/// A name that no other program and no other screen of this one has.
fs::path newFile(const Session& session) {
  static int screens = 0;
  fs::path file;
  std::error_code ignored;
  // A program that died may have had our number.
  do {
    const std::string name = std::to_string(::getpid()) + "_" + std::to_string(++screens) + std::string(kEnding);
    file = backupFolder(session) / name;
  } while (fs::exists(file, ignored));
  return file;
}

std::string fullPath(const std::string& path) {
  std::error_code error;
  const fs::path whole = fs::weakly_canonical(path, error);
  return error ? path : whole.string();
}

GridCopy copyOf(const Session& session, Host& host, const frmTBDetail& screen) {
  GridCopy copy;
  copy.head.repository = fullPath(session.gDB->path());
  copy.head.system = screen.lblSystemName.caption;
  copy.head.tableId = screen.lblID.caption;
  copy.head.tableName = screen.txtTableNameENG.text;
  copy.head.japaneseName = screen.txtTableNameJPN.text;
  copy.head.kind = screen.lblFileType.caption;
  copy.head.user = session.gLoginUser;
  copy.head.time = formatDateTime(host.clock.now(), kSecondForm);
  copy.personal = screen.PicPmark.visible;
  copy.loaded = screen.loaded;
  copy.rows = screen.Spread.rows(1, screen.Spread.maxRows());
  return copy;
}

/// A copy by its file, nothing for one that is damaged or gone.
std::optional<GridCopy> readCopy(const fs::path& file) {
  std::error_code error;
  const std::optional<std::string> bytes = readFile(file, error);
  if (!bytes) return std::nullopt;
  std::optional<GridCopy> copy = parseGridCopy(*bytes);
  if (copy) copy->head.file = file;
  return copy;
}

void putRows(frmTBDetail& screen, std::vector<SpreadRow> rows) {
  Spread& grid = screen.Spread;
  grid.replaceRows(1, grid.maxRows(), std::move(rows));
  for (int row = 1; row <= grid.maxRows(); ++row) {
    if (screen.mode == DetailMode::Prj)
      grid.setBackColour(field_col::kClass, row, progressColour(grid.text(field_col::kClass, row)));
    else if (grid.holds(field_col::kDomainName, row))
      lockDomainCells(grid, row);
    else if (isUnknownType(screen, row))
      grid.setBackColour(field_col::kType, row, kRed);
  }
}

/// When the rows of the table were last saved, "" for none.
std::string lastSave(Database& database, const frmTBDetail& screen) {
  const std::string table = screen.mode == DetailMode::Prj ? "MAS_PRJINFO" : "MAS_TABLEDETAILES";
  const Recordset row =
      database.openRecordset("SELECT Max(更新年月日) AS newest FROM " + table + " WHERE ID = " + screen.lblID.caption);
  return row.eof() ? "" : std::string(row.text(0));
}

bool tell(Host& host, const GridLeftOver& leftOver, std::string_view text) {
  gMsgBox(host, joinLines({text, "  " + leftOver.title()}), kOkOnly, "こまった");
  return true;
}

/// True on failure, after its message.
bool restore(Session& session, Host& host, const GridLeftOver& leftOver, frmTBDetail& screen) {
  std::optional<GridCopy> copy = readCopy(leftOver.file);
  if (!copy) return tell(host, leftOver, "編集内容の控えが読み込めません.");
  if (pGet_TableID2TableDetails(session, host, screen, leftOver.tableId))
    return tell(host, leftOver, "対象のテーブルが存在しません.");
  if (!editable(screen)) return tell(host, leftOver, "対象のテーブルは編集できません.");
  if (lastSave(*session.gDB, screen) > leftOver.time &&
      gMsgBox(host,
              joinLines({"対象のテーブルは、控えの後に更新されています.", "  " + leftOver.title(),
                         "控えの内容を表示しますか?"}),
              kYesNo | kQuestionIcon, "確認") != kYes)
    return true;
  if (copy->personal) mnuPmark_Click(screen);
  putRows(screen, std::move(copy->rows));
  // A save of them is held against what they were made from.
  if (copy->loaded.known) screen.loaded = std::move(copy->loaded);
  screen.undo.clear(false);
  screen.changed = true;
  screen.picRen.visible = true;
  showActiveRow(session, host, screen);
  return false;
}

}  // namespace

std::string GridLeftOver::title() const {
  return system + " : " + (japaneseName.empty() ? tableName : japaneseName) + " (" + time + ")";
}

GridBackup::~GridBackup() {
  if (lock_ >= 0) ::close(lock_);
}

GridBackup::GridBackup(GridBackup&& other) noexcept { *this = std::move(other); }

GridBackup& GridBackup::operator=(GridBackup&& other) noexcept {
  if (this == &other) return *this;
  if (lock_ >= 0) ::close(lock_);
  file_ = std::exchange(other.file_, {});
  lock_ = std::exchange(other.lock_, -1);
  tableId_ = std::exchange(other.tableId_, {});
  revision_ = std::exchange(other.revision_, -1);
  failed_ = std::exchange(other.failed_, false);
  return *this;
}

bool GridBackup::claim(const fs::path& file) {
  const int lock = takeLock(lockOf(file));
  if (lock < 0) return false;
  drop();
  file_ = file;
  lock_ = lock;
  return true;
}

bool GridBackup::keep(Session& session, Host& host, const frmTBDetail& screen) {
  if (!screen.changed || screen.batch) {
    drop();
    return true;
  }
  // Another table on the same screen: what was typed for the former one has been saved or given up.
  if (!tableId_.empty() && tableId_ != screen.lblID.caption) drop();
  if (holds() && revision_ == screen.Spread.revision()) return true;
  std::string reason;
  bool written = holds() || (gMakeFolder(backupFolder(session).string(), &reason) && claim(newFile(session)));
  written = written && replaceFile(file_, gridCopyText(copyOf(session, host, screen)));
  if (written) {
    tableId_ = screen.lblID.caption;
    revision_ = screen.Spread.revision();
  } else if (!failed_) {
    session.log.gPutLog(host, "GridBackup: " + backupFolder(session).string() + " " + reason);
  }
  failed_ = !written;
  return written;
}

void GridBackup::drop() {
  if (holds()) {
    std::error_code ignored;
    fs::remove(file_, ignored);
    fs::remove(lockOf(file_), ignored);
  }
  if (lock_ >= 0) ::close(lock_);
  lock_ = -1;
  file_.clear();
  tableId_.clear();
  revision_ = -1;
}

std::vector<GridLeftOver> leftOverGrids(const Session& session) {
  std::vector<GridLeftOver> found;
  const std::string repository = fullPath(session.gDB->path());
  std::error_code error;
  for (fs::directory_iterator entry(backupFolder(session), error), end; !error && entry != end;
       entry.increment(error)) {
    if (entry->path().extension() != kEnding) continue;
    const int lock = takeLock(lockOf(entry->path()));
    if (lock < 0) continue;
    if (const std::optional<GridCopy> copy = readCopy(entry->path()); copy && copy->head.repository == repository)
      found.push_back(copy->head);
    ::close(lock);
  }
  std::sort(found.begin(), found.end(), [](const GridLeftOver& left, const GridLeftOver& right) {
    return std::tie(left.time, left.file) < std::tie(right.time, right.file);
  });
  return found;
}

bool restoreGrid(Session& session, Host& host, const GridLeftOver& leftOver, frmTBDetail& screen, GridBackup& backup) {
  GridBackup claimed;
  if (!claimed.claim(leftOver.file)) return tell(host, leftOver, "控えは、他の画面で使用中です.");
  try {
    // A copy that could not be restored stays for the next start.
    if (restore(session, host, leftOver, screen)) return true;
  } catch (const EngineError& error) {
    tellError(session, host, "restoreGrid", error);
    return true;
  }
  backup.drop();
  backup = std::move(claimed);
  backup.keep(session, host, screen);
  return false;
}

void dropLeftOver(const GridLeftOver& leftOver) {
  GridBackup claimed;
  if (claimed.claim(leftOver.file)) claimed.drop();
}

LeftOverAnswer askLeftOver(Host& host, const GridLeftOver& leftOver) {
  const std::string rows = "  " + std::to_string(leftOver.rows) + "行 : " + leftOver.user;
  const std::string text =
      joinLines({"前回、保存されていない編集内容があります.", "  " + leftOver.title(), rows, "編集を再開しますか?"});
  if (gMsgBox(host, text, kYesNo | kQuestionIcon, "確認") == kYes) return LeftOverAnswer::Restore;
  const bool drop = gMsgBox(host, joinLines({"編集内容を破棄しますか?", "  " + leftOver.title()}),
                            kYesNo | kQuestionIcon | kDefaultSecond, "確認") == kYes;
  return drop ? LeftOverAnswer::Drop : LeftOverAnswer::Later;
}

}  // namespace quillmarden
