#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/value.h"

namespace quillmarden {

/// The rows of a query or table, read at once when the set is opened, with a current row that can be read
/// and, where each shown column comes from a base table, edited.
///
/// A fresh set stands on its first row. Column look-ups compare names without case and take both
/// "name" and, where two tables of a join share it, "alias.name". Every fault throws EngineError.
class Recordset {
 public:
  struct State;
  explicit Recordset(std::unique_ptr<State> state);
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;
  ~Recordset();

  // --- rows
  int recordCount() const;
  bool bof() const;
  bool eof() const;
  void moveFirst();
  void moveNext();  ///< moving on from the last row gives eof(); beyond that throws kNoCurrentRecord

  // --- columns
  int fieldCount() const;
  const std::string& fieldName(int index) const;  ///< index from 0
  /// Index of the column, or -1. Look it up once before a long loop.
  int fieldIndex(std::string_view name) const;

  // --- cells of the current row; a name that is no column throws kNoSuchTableDef
  bool isNull(int index) const;
  std::string_view text(int index) const;  ///< Null gives "". Valid as long as the set, until seek().
  std::int64_t integer(int index) const;   ///< Null and non-numeric text give 0
  double number(int index) const;
  Value value(int index) const;
  bool isNull(std::string_view name) const;
  std::string_view text(std::string_view name) const;
  std::int64_t integer(std::string_view name) const;
  double number(std::string_view name) const;
  Value value(std::string_view name) const;

  // --- editing. A set that shows no base table's rows (GROUP BY, DISTINCT, UNION) and a column that is computed throw
  // kReadOnly. Cells read during an edit are still those of the stored row.
  void addNew();
  void edit();
  /// Sets a cell of the row under addNew() or edit().
  void set(std::string_view name, Value value);
  /// Writes the cells that were set, and no others, of the row under addNew() or edit(). Through a join a new row goes
  /// to the one table that its cells belong to. After an addNew the current row stays where it was, the new row is not
  /// part of the set, and lastId() gives the number that the engine gave to an Auto column. A refused row is given up.
  /// A row that another user has removed throws kNoCurrentRecord.
  void update();
  void cancelUpdate();
  /// Deletes the current row from its base table; of a join, from the side that has each of its rows once in the set.
  /// The set then has no current row until moveNext() or moveFirst().
  void remove();
  std::int64_t lastId() const;

  // --- sets opened by openTable() alone
  /// Finds the row whose "PrimaryKey" equals the values, in the index's column order, and makes it current.
  /// Text compares without case. False when there is none; the set then has no current row. A key of another number of
  /// values, or a table without one, throws kNoSuchTableDef.
  bool seek(const std::vector<Value>& key);

 private:
  std::unique_ptr<State> state_;
};

}  // namespace quillmarden
