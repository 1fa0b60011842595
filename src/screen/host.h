#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "screen/date_time.h"

namespace quillmarden {

/// Buttons and icon of a message, to be joined with |.
enum MessageStyle : int {
  kOkOnly = 0,
  kOkCancel = 1,
  kYesNo = 4,
  kStopIcon = 16,
  kQuestionIcon = 32,
  kWarningIcon = 48,
  kInformationIcon = 64,
  kDefaultSecond = 256,  ///< the second button is the preset one
  kKeepsOnYes = 512,     ///< it is the first button that loses nothing, as "go on editing?" has it
};

/// Answers of a message.
enum MessageAnswer : int { kOk = 1, kCancel = 2, kYes = 6, kNo = 7 };

/// What a message hears when it is closed without a button, by [Esc] or the window's own ×: the answer that loses
/// nothing.
constexpr int closingAnswer(int style) {
  if ((style & 7) == kOkOnly) return kOk;
  const bool first = style & kKeepsOnYes;
  if ((style & 7) == kYesNo) return first ? kYes : kNo;
  return first ? kOk : kCancel;
}
/// What it hears from [Enter]. A question whose first button loses work presets the second.
constexpr int presetAnswer(int style) {
  const bool second = (style & kDefaultSecond) && (style & 7) != kOkOnly;
  if ((style & 7) == kYesNo) return second ? kNo : kYes;
  return second ? kCancel : kOk;
}

/// What the program says to a person and hears back.
struct Dialogs {
  /// Shows a message with lines parted by "\n" and gives the pressed button.
  std::function<int(std::string_view text, int style, std::string_view title)> message;
  /// Shows a wait text; the empty text clears it.
  std::function<void(std::string_view text)> waitText;
  /// How far a long run is, of a total.
  std::function<void(long done, long total)> progress;
  /// Whether the person asked to stop the run. Long loops test it between two tables.
  std::function<bool()> stopRequested;
  /// Lets the screen repaint and take input.
  std::function<void()> yield;
  /// Asks for a folder; "" when the person gives none. An empty function: there is nobody to ask.
  std::function<std::string(std::string_view prompt)> browseFolder = {};
  /// Asks where a new file is to lie, beginning with a suggestion; "" when the person gives none. A file that is there
  /// already may be the answer. An empty function: there is nobody to ask.
  std::function<std::string(std::string_view prompt, const std::filesystem::path& suggested)> newFile = {};
  /// Asks which of some ways to go, each the caption of a button; `details` are lines to read over it. Gives the place
  /// of the way, -1 when the person takes none of them. An empty function: there is nobody to ask.
  std::function<int(std::string_view text, std::string_view details, const std::vector<std::string>& ways,
                    std::string_view title)>
      choose = {};
};

struct Clock {
  std::function<DateTime()> now;
};

/// The machine and the folders that stand outside the Repository.
struct Machine {
  std::string computerName;
  std::filesystem::path appDataFolder;  ///< per-user application data
  std::filesystem::path tempFolder;
  std::filesystem::path programFolder;  ///< where the assets are installed
  std::function<void(std::string_view text)> setClipboard;
  std::function<std::string()> clipboard;
};

/// Hands files to the programs of the desktop.
struct Opener {
  std::function<bool(const std::filesystem::path& file)> openFile;
  std::function<bool(const std::filesystem::path& folder)> openFolder;
  std::function<bool(const std::filesystem::path& program)> startProgram;
  /// The same with a command line behind the program. An empty function: it is not to be had here.
  std::function<bool(const std::filesystem::path& program, std::string_view arguments)> startWithArguments = {};
};

/// The seam to the outside, filled once at start: for the desktop, the console, or a test's script.
struct Host {
  Dialogs dialogs;
  Clock clock;
  Machine machine;
  Opener opener;
};

}  // namespace quillmarden
