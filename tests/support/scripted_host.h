#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

#include "screen/host.h"

namespace quillmarden {

/// A folder of its own that goes away with the test.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

/// Answers without a word: what a message hears from [Esc] or its ×, and from [Enter].
enum : int { kByClosing = -1, kByEnter = -2 };

/// A host that follows a script: the messages must come in this order with this title and text, and each gets its
/// answer. An unexpected message and, at the end, a left-over one fail the test. Its folders lie in a TempFolder,
/// its clock stands still until the test moves it.
class ScriptedHost {
 public:
  ScriptedHost();
  ~ScriptedHost();

  void expect(std::string title, std::string text, int answer = kOk);
  /// Every message is taken from now on: questions get this answer, texts land in `messages`.
  void answerAll(int answer);

  Host host;
  TempFolder folder;
  DateTime now{2026, 11, 24, 9, 5, 0};
  std::string clipboard;
  std::vector<std::string> waitTexts;
  std::vector<std::string> opened;    ///< files, folders and programs handed to the desktop
  std::vector<std::string> messages;  ///< "title|text" of all that came

 private:
  struct Expected {
    std::string title;
    std::string text;
    int answer;
  };
  std::deque<Expected> script_;
  int answerAll_ = 0;
};

}  // namespace quillmarden
