#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "editing/frm_tb_detail.h"

namespace quillmarden {

/// Whether rows of the type hold the path of a file as their value.
bool isFileLinkType(std::string_view type);

/// Whether a cell holds the path of a file: the specification of a program, the value of a FileLink row.
bool isFileLinkCell(const frmTBDetail& screen, int col, int row);

/// A file was dropped on a cell or chosen for it. Where the System says so the file is copied beside the Repository
/// first. True when the cell was not changed.
bool linkFile(Session& session, Host& host, frmTBDetail& screen, int col, int row, std::string_view file);

/// Opens the file that the cell names; one that is gone is told.
void openFileLink(Session& session, Host& host, const frmTBDetail& screen, int col, int row);

/// The folder of the copies: beside the Repository, "_FileLink_" and its file name in lower case without ".mdb".
std::filesystem::path fileLinkFolder(const Session& session);

}  // namespace quillmarden
