#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/application.h"

namespace quillmarden {

/// What the shell does with a screen over its life. Empty functions: nothing is to be done, it may always close.
struct ScreenKind {
  std::string_view name;
  std::function<std::string(const Application& app, std::string_view screen)> caption = {};
  /// Fills the record as the screen opens. True when it cannot open, after its message.
  std::function<bool(Application& app, std::string_view screen)> load = {};
  /// Whether there is unsaved work; without this function there may be.
  std::function<bool(const Application& app, std::string_view screen)> changed = {};
  /// Asks about unsaved work. True when the screen is to stay.
  std::function<bool(Application& app, std::string_view screen)> stays = {};
  /// The screen has gone: keep its settings, tell others, blank the record.
  std::function<void(Application& app, std::string_view screen)> closed = {};
  /// Whether the record says that its handlers have ended the screen.
  std::function<bool(const Application& app)> unloaded = {};
  std::function<void(Application& app, std::string_view systemName)> systemChanged = {};
  bool followsRecord = false;  ///< systemChanged is also for the System that was current before, whose record changed
  std::function<void(Application& app, std::string_view tableId)> tableChosen = {};
  /// Rights of the System or of a table may be others now. Unsaved work stays.
  std::function<void(Application& app)> rightsChanged = {};
  bool staysWhenHidden = false;  ///< hiding all screens leaves it
};

/// Every screen that exists.
const std::vector<ScreenKind>& screenTable();
/// The kind of a screen, a further detail screen's included; nullptr for an unknown name.
const ScreenKind* screenKind(std::string_view screen);

}  // namespace quillmarden
