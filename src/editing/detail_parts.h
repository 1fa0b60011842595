#pragma once

#include <span>
#include <string>
#include <string_view>

#include "editing/frm_tb_detail.h"
#include "repository/tell_error.h"

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

/// The columns of a field row that the grid shows, ROWNO first.
std::span<const std::string_view> fieldColumns();

/// Whether the Repository's table has the column.
bool hasColumn(Database& database, std::string_view table, std::string_view column);

/// The column of MAS_PRJINFO behind a grid column that means something else for programs than for fields: their dates
/// and their specification; "" for any other.
std::string_view prjColumn(int number);

/// Whether the row's type is one that the drop-down does not hold: it was stored so and stays.
bool isUnknownType(const frmTBDetail& screen, int row);

/// Whether a save keeps the row: it has a name, or for persons a type.
bool isKept(const frmTBDetail& screen, int row);
/// What a save makes of the names in a row: the System's rules for names, and as typed where the cell holds a value.
/// `number` is the row's among the kept ones, which a program without one gets as its own.
std::string storedJapaneseName(const Session& session, const frmTBDetail& screen, int row, long number);
std::string storedFieldName(const Session& session, const frmTBDetail& screen, int row);

/// Readies the grid for the mode, kind and rights on the screen, without rows. Columns that already stand so stay.
void prepareSpread(Session& session, frmTBDetail& screen, bool locked);

/// A whole number with leading zeros, at least three digits: the form of row and column numbers.
std::string threeDigits(int number);

/// The window title from the names and the reference file.
void putCaption(frmTBDetail& screen);

/// Whether rows can be changed: a table is on show and neither rights nor a run lock it.
bool editable(const frmTBDetail& screen);

// --- cells that follow others

/// The domain owns type, digits, length and class of a row that is linked to one; and gives them back.
void lockDomainCells(Spread& grid, int row);
void releaseDomainCells(Spread& grid, int row);
/// Takes link, type, digits and class from the domain, and names where the row has none. False when there is no such
/// domain. 0 ends the link.
bool linkDomain(Session& session, frmTBDetail& screen, int row, long domainId);

/// The back colour of a program row's progress.
Colour progressColour(std::string_view progress);

/// The start and end positions of a row of a text file's layout; `position` moves on to the next row.
void putTextPositions(Spread& grid, int row, double& position);

// --- beside the grid

/// Position, remark and value list of the active row.
void showActiveRow(Session& session, Host& host, frmTBDetail& screen);

/// The key under which a column's width is kept in the form's settings.
std::string widthKey(DetailMode mode, int col);

}  // namespace quillmarden
