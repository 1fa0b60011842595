#pragma once

#include <array>
#include <string>
#include <string_view>

#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// The keys of a Format file, in the order of its form.
enum class LayoutKey : std::size_t {
  PageLines,
  PageFields,
  JapaneseName,
  TableName,
  SystemName,
  CreatedAt,
  ChangedAt,
  ChangeCount,
  Outline1,
  Outline2,
  Outline3,
  Outline4,
  OutlineWidth,
  FileType,
  Interval,
  ExpectedRows,
  ExpectedRetention,
  Author,
  PctFree,
  PctUsed,
  Initial,
  Next,
  MinExtents,
  MaxExtents,
  PctIncrease,
  StartRow,
  FieldJapaneseName,
  FieldName,
  KeyMark,
  Type,
  WholeDigits,
  FractionDigits,
  FieldNumber,
  FieldClass,
  NullMark,
  Remark,
  ValueList,
  FieldChangedAt,
  Reference,
  CheckConstraint,
  CommentInterval,
  CommentNumber,
  CommentText,
  CommentDate,
};

inline constexpr std::size_t kLayoutKeyCount = static_cast<std::size_t>(LayoutKey::CommentDate) + 1;

/// Where on a user's template each piece of a table definition goes: cell addresses for the header, column letters
/// for the field rows, a few numbers. All are kept as the text that the file holds.
struct LayoutFormat {
  std::array<std::string, kLayoutKeyCount> values;

  const std::string& operator[](LayoutKey key) const { return values[static_cast<std::size_t>(key)]; }
  std::string& operator[](LayoutKey key) { return values[static_cast<std::size_t>(key)]; }
  /// Whether the key is given: anything but blanks.
  bool has(LayoutKey key) const;
};

/// The key's text in the file, with its colon.
std::string_view layoutKeyText(LayoutKey key);

/// The Format file of a template: the template's name and ".inf" in the user's data folder.
std::string layoutFormatPath(const Session& session, std::string_view name);

/// Reads the Format file of the template `name`. A missing file is told to the user and noted in `errorText`. With
/// `check` the faults of the content go to `errorText` as well. 0 when all is well; -1 for a fault found by the check
/// or a file that can't be read, `format` being filled as far as it went.
int gGetLayoutFormat(Session& session, Host& host, std::string_view name, LayoutFormat& format, std::string& errorText,
                     bool check);

/// Adds each fault of the content to `errorText`, a line or two each. -1 when `errorText` is not empty, else 0.
int pChkLayoutFormat(const LayoutFormat& format, std::string& errorText);

/// Writes the default Format file when there is none; one that is there stays as it is. True on failure, after its
/// message.
bool writeDefaultLayoutFormat(Session& session, Host& host, std::string_view name);

/// The same, then opens the file for editing.
void gPutLayoutFormatDefault(Session& session, Host& host, std::string_view name);

}  // namespace quillmarden
