#pragma once

#include <span>
#include <string>
#include <string_view>

#include "editing/frm_tb_detail.h"

namespace quillmarden {

// What the files of the detail screen share among themselves.

inline constexpr Colour kWhite = 0xFFFFFF;
inline constexpr Colour kBlack = 0x000000;
inline constexpr Colour kRed = 0x0000FF;
inline constexpr Colour kButtonFace = 0xF0F0F0;  ///< the back colour of buttons

inline constexpr std::string_view kCheckMark = "○";
inline constexpr std::string_view kMinuteForm = "yyyy/mm/dd hh:nn";
inline constexpr std::string_view kSecondForm = "yyyy/mm/dd hh:nn:ss";

/// The named columns of a table, each qualified by the alias, in this order; one that an older Repository lacks
/// stands as Null, so that a column's place is always its place here.
std::string selectColumns(Database& database, std::string_view table, std::string_view alias,
                          std::span<const std::string_view> columns);

/// Whether the Repository's table has the column.
bool hasColumn(Database& database, std::string_view table, std::string_view column);

/// Readies the grid for the mode, kind and rights on the screen, without rows. Columns that already stand so stay.
void prepareSpread(Session& session, frmTBDetail& screen, bool locked);

/// Logs and shows an engine's fault in the words of this screen.
void tellError(Session& session, Host& host, std::string_view routine, const EngineError& error);

/// A whole number with leading zeros, at least three digits: the form of row and column numbers.
std::string threeDigits(int number);

}  // namespace quillmarden
