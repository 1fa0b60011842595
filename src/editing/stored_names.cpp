#include "common/text.h"
#include "common/typed_cell.h"
#include "editing/detail_parts.h"
#include "editing/file_link.h"

namespace quillmarden {

namespace {

namespace col = field_col;

/// Column 2 names a field of a database or of a text file; elsewhere it holds a value, the path of a file for one.
bool namesField(const frmTBDetail& screen, int row) {
  const bool fields = screen.mode == DetailMode::Table || screen.mode == DetailMode::Text;
  return fields && !isFileLinkType(screen.Spread.text(col::kType, row));
}

std::string withFiveDigits(long number) {
  const std::string digits = std::to_string(number);
  return std::string(digits.size() < 5 ? 5 - digits.size() : 0, '0') + digits;
}

}  // namespace

bool isUnknownType(const frmTBDetail& screen, int row) {
  const SpreadColumn& column = screen.Spread.column(col::kType);
  const std::string_view type = trim(screen.Spread.text(col::kType, row));
  return !type.empty() && column.kind == CellKind::List && !column.open && entryOf(column, type) == nullptr;
}

bool isKept(const frmTBDetail& screen, int row) {
  const auto holds = [&](int column) { return !trim(screen.Spread.text(column, row)).empty(); };
  return holds(col::kJapaneseName) || holds(col::kFieldName) ||
         (screen.mode == DetailMode::Member && holds(col::kType));
}

std::string storedJapaneseName(const Session& session, const frmTBDetail& screen, int row, long number) {
  const std::string_view typed = trim(screen.Spread.text(col::kJapaneseName, row));
  if (screen.mode == DetailMode::Prj) return typed.empty() ? withFiveDigits(number) : std::string(typed);
  return gZenkaku2Hankaku(typed, true, session.gCurrentSystem.replaceJpnSpace);
}

std::string storedFieldName(const Session& session, const frmTBDetail& screen, int row) {
  const std::string_view typed = trim(screen.Spread.text(col::kFieldName, row));
  if (!namesField(screen, row)) return std::string(typed);
  const SystemRecord& system = session.gCurrentSystem;
  std::string name;
  if (system.fieldLower)
    name = toLower(typed);
  else if (system.fieldUpper)
    name = toUpper(typed);
  else if (system.fieldAsTyped)
    name = typed;
  else
    name = session.settings.lowerFieldName ? toLower(typed) : toUpper(typed);
  return system.fieldNarrow ? toNarrow(name) : name;
}

}  // namespace quillmarden
