#pragma once

#include <filesystem>
#include <string_view>

#include "shell/application.h"

namespace quillmarden {

// From the splash screen to the end of the program. The front calls these; what is shown and in which order they tell
// it through Application::display.

/// Shows the splash screen and makes the data folders. The front's timer then calls frmSplash_Timer.
void startProgram(Application& app);
/// One tick of the splash screen's timer: on the 2nd the login opens, from the 5th on it takes the focus and the splash
/// screen goes. The program ends when the login cannot take the focus.
void frmSplash_Timer(Application& app);

/// The login button. On success the bar opens, then the list and a hidden detail screen, and the login closes.
void logIn(Application& app);
/// The login's cancel button, or its window's closing.
void cancelLogIn(Application& app);
/// The button that starts the maker of initial Repositories and ends this program.
void startReplicaMaker(Application& app);

/// The log-off button: unsaved work first, then the question; all screens close and the login opens again.
void CmdLogOff_Click(Application& app);
/// The same without its question, for a change after which nothing on the screens holds any more. Unsaved work is lost.
void logOffNow(Application& app);
/// Every way to end the program: unsaved work first, then the question in the bar's words or, with `caption`, in those
/// of the window that was closed.
void exitProgram(Application& app, std::string_view caption = {});
/// The end without a question: all screens unload, the Repository closes, the work files go. A sibling program starts
/// only then, so that the two never work on one file.
void exitProgramNow(Application& app, const std::filesystem::path& sibling = {});

}  // namespace quillmarden
