#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "screen/host.h"

namespace quillmarden {

// Folders whose name ends in "_-_-": below the user's data for workbooks, below the temporary folder for scripts. A
// login and the end of the program sweep them, but not what a person was told of as a result.

inline constexpr std::string_view kWorkFolderEnding = "_-_-";

/// The user's own part of the machine's temporary folder: that folder itself where nobody else may write to it, else
/// "quillmarden-<number of the user>" in it, made for the user alone when missing. A folder or link that others have
/// put there is not taken, but the next free number behind the name; the program's data folder when all are taken.
std::filesystem::path userTempFolder(const Machine& machine);

/// Notes that a person is told of this file as a result, before it is written; a file outside of work folders needs no
/// note. With `stays` no sweep takes it any more, else none on this day.
void noteResult(const std::filesystem::path& file, const DateTime& now, bool stays);
/// Whether a note, another program, or a process that is writing the file keeps it from being swept.
bool isKeptResult(const std::filesystem::path& file, const DateTime& now);

/// Empties and removes this user's work folders in the application data folder, the program's data folder in it and the
/// temporary folder; what is kept stays, and its folder with it. Links are not followed. Errors are ignored.
/// `keep` is emptied, but stays.
void removeWorkFolders(const Host& host, const std::filesystem::path& keep = {});

}  // namespace quillmarden
