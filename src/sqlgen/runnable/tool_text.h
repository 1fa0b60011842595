#pragma once

#include <cstddef>
#include <string>

#include "common/script_file.h"
#include "sqlgen/runnable/dialect.h"

namespace quillmarden {

/// The longest line that Oracle's command-line tool takes, in characters.
constexpr std::size_t kLongestOracleLine = 2499;

/// Statements and comments as the kind's command-line tool reads them: without what it would act on itself, in lines
/// of a length that it takes. The text holds whole lines.
std::string toolText(ScriptKind kind, std::string text);

/// The same for the head of a script's file, with what has to come before any text of the definitions: the file's
/// encoding, and how the server is to read literals.
std::string toolFileHead(ScriptKind kind, TextEncoding encoding, const std::string& head);

}  // namespace quillmarden
