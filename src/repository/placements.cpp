#include "repository/placements.h"

#include <algorithm>

#include "common/message.h"
#include "common/printable.h"
#include "common/text.h"
#include "repository/change_rows.h"
#include "repository/rights.h"

namespace quillmarden {

namespace {

std::string placementLine(std::string_view text) { return std::string(" 格納先 : ").append(text); }

Outcome refusePlacement(Host& host, std::string_view reason, std::string_view text) {
  gMsgBox(host, joinLines({reason, placementLine(text)}), kOkOnly | kStopIcon);
  return Outcome::Refused;
}

bool isPlacement(Database& database, std::string_view text) {
  const std::vector<std::string> known = readPlacements(database);
  return std::any_of(known.begin(), known.end(), [&](const std::string& own) { return equalsNoCase(own, text); });
}

template <typename Change>
Outcome changePlacements(Session& session, Host& host, std::string_view routine, Change&& change) {
  if (refused(host, mayWrite(session))) return Outcome::Refused;
  return changeRows(session, host, routine, [&] { return change(*session.gDB); });
}

}  // namespace

std::vector<std::string> readPlacements(Database& database) {
  std::vector<std::string> texts;
  for (Recordset rows = database.openRecordset("SELECT 格納先 FROM MAS_HOST ORDER BY 格納先"); !rows.eof();
       rows.moveNext())
    if (std::string text(trim(rows.text(0))); !text.empty()) texts.push_back(std::move(text));
  return texts;
}

Outcome addPlacement(Session& session, Host& host, std::string_view text) {
  text = trim(text);
  return changePlacements(session, host, "addPlacement", [&](Database& database) {
    if (text.empty()) return refusePlacement(host, "格納先が未入力です.", text);
    if (holdsControl(text)) return refusePlacement(host, "使用してはいけない文字が含まれています.", text);
    if (isPlacement(database, text)) return refusePlacement(host, "この格納先は既に登録されています.", text);
    if (gMsgBox(host, joinLines({"格納先を追加します.", placementLine(text)}), kYesNo | kQuestionIcon) != kYes)
      return Outcome::Refused;
    database.execute("INSERT INTO MAS_HOST (格納先) VALUES (paraText)", {{"paraText", std::string(text)}});
    return Outcome::Done;
  });
}

Outcome removePlacement(Session& session, Host& host, std::string_view text) {
  text = trim(text);
  return changePlacements(session, host, "removePlacement", [&](Database& database) {
    if (!isPlacement(database, text)) return refusePlacement(host, "指定の格納先が存在しません.", text);
    const std::vector<ParameterValue> wanted = {{"paraText", std::string(text)}};
    const auto users = database
                           .openRecordset(
                               "SELECT Count(*) FROM MAS_TABLEINFO WHERE 削除フラグ = 0 AND "
                               "Trim$(格納先) = paraText",
                               wanted)
                           .integer(0);
    std::string question = joinLines({"格納先を削除します.", placementLine(text)});
    if (users > 0) question += "\n " + std::to_string(users) + "件のテーブルで使用されています.";
    if (gMsgBox(host, question, kYesNo | kQuestionIcon) != kYes) return Outcome::Refused;
    database.execute("DELETE * FROM MAS_HOST WHERE Trim$(格納先) = paraText", wanted);
    return Outcome::Done;
  });
}

}  // namespace quillmarden
