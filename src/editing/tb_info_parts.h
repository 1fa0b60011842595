#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editing/frm_tb_info.h"
#include "repository/rights.h"

namespace quillmarden {

// What the files of the header screen share among themselves.

inline constexpr std::string_view kDayForm = "yyyy/mm/dd";

inline constexpr std::string_view kNotBegun = "未着手";
inline constexpr std::string_view kInWork = "開発中";
inline constexpr std::string_view kDone = "完了";
inline constexpr std::string_view kInChange = "変更中";

inline constexpr std::string_view kMemberKind = "メンバー";
inline constexpr std::string_view kPrjKind = "PG管理";

/// Whether the header may be saved: of a new table by the System's right, else by the table's. A locked table takes the
/// save that unlocks it.
Right mayChangeHeader(Session& session, const frmTBInfo& screen);

/// The kind of a table with field rows goes back to what it was. True when it did, after its message.
bool kindMustStay(Session& session, Host& host, frmTBInfo& screen);

/// All that a person types and the save writes, in a fixed order.
std::vector<std::string> inputOf(const frmTBInfo& screen);

/// Whether the save ends the table's state as a result of a reverse run: its mark or the "@" at its name was taken
/// away.
bool endsReverse(const Session& session, const frmTBInfo& screen);

}  // namespace quillmarden
