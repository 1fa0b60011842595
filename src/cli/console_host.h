#pragma once

#include <string_view>

#include "cli/options.h"
#include "screen/host.h"

namespace quillmarden {

/// The host of a run without screens: messages and questions go to standard error, title first, and each question gets
/// the answer that the options give. Nothing is ever opened. `options.now` must be a date.
Host consoleHost(const Options& options);

/// Keeps closed standard descriptors from being taken by the next file that is opened, lets a broken pipe be an error
/// of the write, and turns the first interrupt, termination or hang-up into a request to stop; a second one of its kind
/// ends the program.
void prepareProcess();
/// Whether the user has asked to stop.
bool interrupted();

// Texts come out of shared files; what steers a terminal must not come with them. Control characters become blanks.

/// Writes all of it to standard output. False, with a message, when it cannot take it.
bool writeStandardOutput(std::string_view text);
/// "title: text" to standard error.
void writeMessage(std::string_view title, std::string_view text);

}  // namespace quillmarden
