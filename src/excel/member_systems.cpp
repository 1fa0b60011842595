#include <array>
#include <map>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "excel/grid_sheet.h"
#include "excel/member_book.h"

namespace quillmarden {
namespace {

/// A member's part in one System.
struct Participation {
  std::string group;
  std::string member;
  std::string system;
  std::string joined;
  std::string left;
  std::string role;
};

std::string Participation::*valueOf(std::string_view type) {
  if (type == "参加日") return &Participation::joined;
  if (type == "終了日") return &Participation::left;
  return type == "役割" ? &Participation::role : nullptr;
}

/// The lines of a group, in the order in which its rows name members and Systems.
void addParticipations(Database& database, const Group& group, std::vector<Participation>& lines) {
  Recordset row = memberRows(database, group.id);
  std::string member = group.name;
  std::map<std::string, std::size_t, std::less<>> places;  // of the member's Systems in `lines`
  for (; !row.eof(); row.moveNext()) {
    const std::string_view type = trim(row.text(0));
    const std::string_view system = trim(row.text(2));
    if (type == "氏名") {
      member = trim(row.text(1));
      places.clear();
    }
    std::string Participation::*value = valueOf(type);
    if (value == nullptr || system.empty()) continue;
    const auto [place, added] = places.emplace(system, lines.size());
    if (added) lines.push_back({group.name, member, std::string(system), "", "", ""});
    std::string& text = lines[place->second].*value;
    text.append(text.empty() ? "" : ",").append(trim(row.text(1)));
  }
}

std::string putParticipations(Session& session, Host& host, BookRun& run, const frmTBList& list) {
  std::vector<Participation> lines;
  for (const Group& group : chosenGroups(*session.gDB, list)) addParticipations(*session.gDB, group, lines);
  if (lines.empty()) {
    gMsgBox(host, "出力する内容がありません.");
    return "";
  }
  const std::string path = workFile(session, run, "temptemp.xls");
  if (!mayReplaceOrTell(session, host, path)) return "";
  constexpr std::array kValues = {&Participation::group,  &Participation::member, &Participation::system,
                                  &Participation::joined, &Participation::left,   &Participation::role};
  const SheetGrid grid{.titles = {"グループ", "氏名", "システム", "参加日", "終了日", "役割"},
                       .rows = static_cast<int>(lines.size()),
                       .text = [&](int column, int row) -> std::string_view {
                         return lines[static_cast<std::size_t>(row - 1)].*kValues[static_cast<std::size_t>(column - 1)];
                       },
                       .numbers = false};
  Workbook book = gridBook(run, {{"システム名:", session.gCurrentSystemName}}, grid);
  saveBook(session, host, book, "参加システム一覧", path);
  tellCutTexts(host, run);
  return path;
}

}  // namespace

std::string pPutMemberSystemExcel(Session& session, Host& host, BookRun& run, const frmTBList& list, bool openAfter) {
  const WaitText wait(host, "Excel出力中です....");
  return runOutput(session, host, "pPutMemberSystemExcel", openAfter,
                   [&] { return putParticipations(session, host, run, list); });
}

}  // namespace quillmarden
