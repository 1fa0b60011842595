// Runs the transcripts beside this file against the built programs. A transcript is a list of steps:
//
//   $ command      run by bash in a folder of the transcript's own
//   text           what it writes to standard output, line by line
//   ! text         what it writes to standard error, line by line; "! ..." stands for any further lines
//   ? number       its exit status when that is not 0
//
// Lines that begin with # and empty lines are for the reader. "quillmarden-cli" and "quillmarden-sample" are on the
// path, "sample.mdb" is a fresh copy of the sample Repository, and `qm COMMAND …` runs a command on it with a fixed
// clock and folders. The transcript's own folder is written as <folder>; an empty line of output as a lone ".".

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/scripted_host.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPrelude = R"(set -o pipefail
export PATH="$(dirname "$QM_CLI"):$PATH" HOME="$PWD" TMPDIR="$PWD" XDG_DATA_HOME="$PWD/home"
export LC_ALL=C.UTF-8
qm() {
  local command=$1
  shift
  quillmarden-cli "$command" --repository sample.mdb --data-folder data --temp-folder temp \
    --now '2026/11/24 09:05:00' --computer TESTPC "$@"
}
)";

struct Step {
  int line = 0;
  std::string command;
  std::vector<std::string> output;
  std::vector<std::string> messages;
  int status = 0;
};

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string contentOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<Step> stepsOf(const fs::path& script) {
  std::vector<Step> steps;
  int number = 0;
  for (const std::string& line : linesOf(contentOf(script))) {
    ++number;
    if (line.empty() || line.starts_with('#')) continue;
    if (line.starts_with("$ ")) {
      steps.push_back({number, line.substr(2), {}, {}, 0});
      continue;
    }
    if (steps.empty()) throw std::runtime_error("output before the first command");
    Step& step = steps.back();
    if (line.starts_with("! "))
      step.messages.push_back(line.substr(2));
    else if (line.starts_with("? "))
      step.status = std::stoi(line.substr(2));
    else
      step.output.push_back(line == "." ? "" : line);
  }
  return steps;
}

void expectLines(const char* what, const std::vector<std::string>& expected, const std::vector<std::string>& actual) {
  if (expected == actual) return;
  std::string text = std::string(what) + ": expected\n";
  for (const std::string& line : expected) text += "  " + line + '\n';
  text += "came\n";
  for (const std::string& line : actual) text += "  " + line + '\n';
  ADD_FAILURE() << text;
}

std::vector<std::string> actualLines(const fs::path& file, const std::string& folder) {
  std::string text = contentOf(file);
  for (std::size_t at; (at = text.find(folder)) != std::string::npos;) text.replace(at, folder.size(), "<folder>");
  return linesOf(text);
}

void compareMessages(std::vector<std::string> expected, std::vector<std::string> actual) {
  if (!expected.empty() && expected.back() == "...") {
    expected.pop_back();
    actual.resize(std::min(actual.size(), expected.size()));
  }
  expectLines("standard error", expected, actual);
}

/// The sample Repository, made once for all transcripts.
const fs::path& sample() {
  static TempFolder folder;
  static const fs::path file = [] {
    fs::path made = folder.path() / "sample.mdb";
    std::string command = std::string(QM_SAMPLE) + " " + made.string() + " >/dev/null";
    if (std::system(command.c_str()) != 0) throw std::runtime_error("the sample could not be made");
    return made;
  }();
  return file;
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, runs) {
  TempFolder folder;
  fs::create_directory(folder.path() / "temp");
  fs::copy_file(sample(), folder.path() / "sample.mdb");
  const std::string own = fs::canonical(folder.path()).string();
  for (const Step& step : stepsOf(fs::path(QM_TEST_DATA) / (GetParam() + ".script"))) {
    SCOPED_TRACE(GetParam() + ".script:" + std::to_string(step.line) + ": $ " + step.command);
    std::ofstream(folder.path() / ".step") << kPrelude << step.command << '\n';
    std::string run = "cd '" + own + "' && QM_CLI='" QM_CLI "' bash .step >.out 2>.err </dev/null";
    int status = std::system(run.c_str());
    EXPECT_EQ(step.status, WIFEXITED(status) ? WEXITSTATUS(status) : -1) << "exit status";
    expectLines("standard output", step.output, actualLines(folder.path() / ".out", own));
    compareMessages(step.messages, actualLines(folder.path() / ".err", own));
    // The steps build on each other; after a wrong one the rest says nothing.
    if (HasFailure()) break;
  }
}

std::vector<std::string> transcripts() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(QM_TEST_DATA))
    if (entry.path().extension() == ".script") names.push_back(entry.path().stem().string());
  std::sort(names.begin(), names.end());
  return names;
}

INSTANTIATE_TEST_SUITE_P(cli, Transcript, testing::ValuesIn(transcripts()),
                         [](const auto& test) { return test.param; });

}  // namespace
}  // namespace quillmarden
