#pragma once

#include <string>
#include <vector>

#include "editing/frm_tb_list.h"
#include "excel/book_run.h"

namespace quillmarden {

/// A person of a group: what the rows of a メンバー table say of one.
struct Member {
  std::string name;
  std::string company;
  std::string companyShort;
  std::string division1;
  std::string division2;
  std::string post;
  std::string phone;
  std::string mail;
  std::string joined;
  std::string left;
  std::string role;
  std::string memo;
};

/// The rows of a メンバー table in their order: 型, 日本語名 (the content) and 備考. Throws EngineError.
Recordset memberRows(Database& database, std::string_view tableId);

/// Whether the options have this kind of a member's row put out; kinds that no option names always are.
bool isMemberKindShown(const AppSettings& settings, std::string_view kind);

/// The members of a メンバー table. A row of the kind 氏名 begins another person; a table without one is that person
/// itself. Several values of one kind are joined by ",", each with its remark in " (" and ")". Throws EngineError.
std::vector<Member> pGetMemberData(Database& database, std::string_view tableId);

/// The member list of the chosen groups; the rows of other kinds are passed over. Gives the file, "" after a message.
std::string pPutMemberExcel(Session& session, Host& host, BookRun& run, const frmTBList& list, bool openAfter);

/// In which Systems the chosen groups' members take part, a line a member and System: the rows of the kinds 参加日,
/// 終了日 and 役割 name the System in their remark. Gives the file, "" after a message.
std::string pPutMemberSystemExcel(Session& session, Host& host, BookRun& run, const frmTBList& list, bool openAfter);

/// A chosen table of the kind メンバー.
struct Group {
  std::string id;
  std::string name;
  std::string tableName;
};
/// The groups among the rows chosen for output; without any, among the selected rows; without any, among all.
std::vector<Group> chosenGroups(Database& database, const frmTBList& list);

/// The mail addresses of the chosen groups: joined by ",", a line a group; "" when there are none.
std::string mailAddresses(Database& database, const frmTBList& list);
/// Puts them on the clipboard, after a question.
void mnuMail_Click(Session& session, Host& host, const frmTBList& list);

}  // namespace quillmarden
