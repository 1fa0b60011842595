#include "support/scripted_host.h"

#include <gtest/gtest.h>
#include <stdlib.h>

namespace quillmarden {

TempFolder::TempFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "qmtest_XXXXXX").string();
  if (!mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder: " + pattern);
  path_ = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

ScriptedHost::ScriptedHost() {
  host.machine.computerName = "TESTPC";
  host.machine.appDataFolder = folder.path() / "appdata";
  host.machine.tempFolder = folder.path() / "temp";
  host.machine.programFolder = folder.path() / "program";
  for (const auto& made : {host.machine.appDataFolder, host.machine.tempFolder, host.machine.programFolder})
    std::filesystem::create_directories(made);
  host.machine.setClipboard = [this](std::string_view text) { clipboard = text; };
  host.machine.clipboard = [this] { return clipboard; };
  host.clock.now = [this] { return now; };
  host.dialogs.waitText = [this](std::string_view text) { waitTexts.emplace_back(text); };
  host.dialogs.progress = [](long, long) {};
  host.dialogs.stopRequested = [] { return false; };
  host.dialogs.yield = [] {};
  host.dialogs.message = [this](std::string_view text, int style, std::string_view title) {
    const auto heard = [style](int answer) {
      return answer == kByClosing ? closingAnswer(style) : answer == kByEnter ? presetAnswer(style) : answer;
    };
    messages.push_back(std::string(title) + "|" + std::string(text));
    if (answerAll_ != 0) return heard(answerAll_);
    if (script_.empty()) {
      ADD_FAILURE() << "unexpected message [" << title << "]\n" << text;
      return static_cast<int>(kNo);
    }
    Expected expected = std::move(script_.front());
    script_.pop_front();
    EXPECT_EQ(expected.title, title);
    EXPECT_EQ(expected.text, text);
    return heard(expected.answer);
  };
  auto open = [this](const std::filesystem::path& what) {
    opened.push_back(what.string());
    return true;
  };
  host.opener.openFile = open;
  host.opener.openFolder = open;
  host.opener.startProgram = open;
  host.opener.startWithArguments = [this](const std::filesystem::path& program, std::string_view arguments) {
    opened.push_back(program.string() + " " + std::string(arguments));
    return true;
  };
}

ScriptedHost::~ScriptedHost() {
  for (const Expected& left : script_) ADD_FAILURE() << "message never came [" << left.title << "]\n" << left.text;
}

void ScriptedHost::expect(std::string title, std::string text, int answer) {
  script_.push_back({std::move(title), std::move(text), answer});
}

void ScriptedHost::answerAll(int answer) { answerAll_ = answer; }

}  // namespace quillmarden
