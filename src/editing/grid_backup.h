#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "editing/frm_tb_detail.h"

namespace quillmarden {

/// The copy of one detail screen's unsaved rows in the user's data folder. While this record holds a copy, other
/// programs of the user leave it alone; when the program dies, the copy stays and is free.
class GridBackup {
 public:
  GridBackup() = default;
  ~GridBackup();  ///< leaves a copy where it is: only drop() removes one
  GridBackup(GridBackup&& other) noexcept;
  GridBackup& operator=(GridBackup&& other) noexcept;

  /// Writes the rows when the screen is changed and they differ from the copy; removes the copy when it is not changed.
  /// To be called a moment after each change, after a save and after a load. False when the copy could not be
  /// written (logged once).
  bool keep(Session& session, Host& host, const frmTBDetail& screen);
  /// Removes the copy: the changes were saved or given up.
  void drop();
  /// Takes a copy over that nobody holds; one that was held before is removed. False when another program has it.
  bool claim(const std::filesystem::path& file);
  bool holds() const { return !file_.empty(); }
  const std::filesystem::path& file() const { return file_; }

 private:
  std::filesystem::path file_;
  int lock_ = -1;
  std::string tableId_;
  long revision_ = -1;
  bool failed_ = false;
};

/// A copy that a program left behind when it died.
struct GridLeftOver {
  std::filesystem::path file;
  std::string repository;  ///< full path of the file
  std::string system;
  std::string tableId;
  std::string tableName;
  std::string japaneseName;
  std::string kind;
  std::string time;  ///< "yyyy/mm/dd hh:nn:ss"
  std::string user;
  int rows = 0;

  /// "System : name (time)", as messages call it.
  std::string title() const;
};

/// The copies that no running program holds, of the open Repository, the oldest first. Damaged files are left out and
/// stay where they are.
std::vector<GridLeftOver> leftOverGrids(const Session& session);

/// Loads the table and puts the copied rows into the grid, marked as changed; `backup` then holds the copy. True on
/// failure, after its message: the table is gone or read-only, or another program took the copy.
bool restoreGrid(Session& session, Host& host, const GridLeftOver& leftOver, frmTBDetail& screen, GridBackup& backup);

/// Removes a copy that nobody holds.
void dropLeftOver(const GridLeftOver& leftOver);

enum class LeftOverAnswer { Restore, Drop, Later };
/// Asks what is to become of a copy.
LeftOverAnswer askLeftOver(Host& host, const GridLeftOver& leftOver);

}  // namespace quillmarden
