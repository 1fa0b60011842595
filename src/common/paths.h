#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "screen/host.h"

namespace quillmarden {

// Paths come in as people type them: "\" and "/" both part folders.

/// Both trimmed; a blank part gives the other. Exactly one separator stands between them.
std::string gPathJoin(std::string_view folder, std::string_view file);
/// gPathJoin after gSafeFileName of the file part, which is cut to what file systems take.
std::string gSafePathJoin(std::string_view folder, std::string_view file);
/// UTF-8 text to a path of this platform, with both separators understood.
std::filesystem::path toPath(std::string_view text);

/// Makes all missing levels, from the left, at most 20; deeper ones are left out. False with the last error's text.
bool gMakeFolder(std::string_view path, std::string* error = nullptr);
bool gChkFolder(std::string_view path);
/// Whether the file is there; with `show`, a miss is told to the user.
bool gFileExists(Host& host, std::string_view path, bool show);
/// Of "\\server\share" the server; else the path itself.
std::string gGetServerName(std::string_view path);
/// The program's folder under the user's application data, made when missing.
std::string gGetDataFolder(const Machine& machine);

/// Where the assets lie: beside the program as it was built, below its prefix as it was installed, else at the place
/// that the build names.
std::filesystem::path assetsFolder(const std::filesystem::path& configured);
/// A template's path: in the program's folder or, where that has none, in the user's data folder. In the former when
/// neither has it.
std::filesystem::path templatePath(const Machine& machine, std::string_view name);

/// Asks for a folder with the program's one prompt. False when none was chosen; `selected` is then as it was.
bool gBrowseFolder(Host& host, std::string& selected);

/// Copies a file beside its target and renames it over it. False with a message for the user.
bool gFileCopy(std::string_view from, std::string_view to, bool overwrite, std::string* message);

}  // namespace quillmarden
