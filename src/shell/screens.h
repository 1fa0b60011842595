#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/application.h"

namespace quillmarden {

/// Opens a screen with its record loaded, or raises one that is open. A screen that is not built yet is told to the
/// user; so is an unknown name.
void openScreen(Application& app, std::string_view screen);
/// Closes a screen after its own question about unsaved work. True when it stays open.
bool closeScreen(Application& app, std::string_view screen);
/// Closes the screens whose handlers have ended them. The front calls it after each event.
void settleScreens(Application& app);
/// Asks every screen about unsaved work. True when one of them is to stay.
bool unsavedWorkStays(Application& app);
/// Closes all screens but those named, without a question, the one raised last first.
void closeAllScreens(Application& app, const std::vector<std::string_view>& keep = {});

/// The window title of an open screen.
std::string screenCaption(const Application& app, std::string_view screen);
/// The front tells which window a person went to.
void screenActivated(Application& app, std::string_view screen);

/// A further detail screen with this table; its name, "" when the table does not exist.
std::string openDetail(Application& app, std::string_view tableId);
/// The name that the next further detail screen gets.
std::string freeDetailName(const Application& app);
/// The list and all open screens follow the rights as they are now.
void tellRights(Application& app);
/// Lays the visible detail screens side by side.
void mnuDetailsArrange_Click(Application& app);

/// Hides all screens, or shows those again that were to be seen, in their order. The bar, the icon, the list of open
/// detail screens and the memo stay.
void hideOrShowAll(Application& app);

/// Fills app.windows; done by the constructor.
void connectWindows(Application& app);

}  // namespace quillmarden
