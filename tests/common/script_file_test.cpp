#include "common/script_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <iterator>
#include <system_error>

#include "support/scripted_host.h"

namespace quillmarden {
namespace {

std::string scriptText(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Runs in a process of its own that may write files of this size only. Gives what `run` returns.
int withFileLimit(rlim_t bytes, const std::function<int()>& run) {
  const pid_t child = fork();
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    _exit(setrlimit(RLIMIT_FSIZE, &limit) == 0 ? run() : 99);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

TEST(ScriptFile, EncodesAndTellsLosses) {
  TempFolder folder;
  ScriptText script;
  script.print("表", std::string("é"), ";");
  script.print();
  ScriptFile file(folder.file("s.txt"), TextEncoding::Cp932);
  EXPECT_EQ(file.write(script.text), U"é");
  EXPECT_EQ(file.write("é"), U"é") << "told for each piece";
  file.commit();
  EXPECT_EQ(scriptText(folder.file("s.txt")), "\x95\x5C?;\r\n\r\n?");
  ScriptFile over(folder.file("s.txt"), TextEncoding::Utf8);
  EXPECT_EQ(over.write("é"), U"");
  over.commit();
  EXPECT_EQ(scriptText(folder.file("s.txt")), "é");
}

TEST(ScriptFile, FullDiskKeepsWholePiecesAndTheFormerScript) {
  TempFolder folder;
  const std::string name = folder.file("s.txt");
  std::ofstream(name) << "former";
  const int result = withFileLimit(100, [&] {
    ScriptFile file(name, TextEncoding::Utf8);
    file.write(std::string(60, 'a'));
    try {
      file.write(std::string(60, 'b'));
      return 1;
    } catch (const std::system_error& error) {
      if (error.code() != std::errc::file_too_large) return 2;
    }
    file.write("c");  // a smaller piece still fits, right behind the last whole one
    return 0;
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(scriptText(name), "former");
  EXPECT_EQ(scriptText(partialFile(name)), std::string(60, 'a') + "c");
}

}  // namespace
}  // namespace quillmarden
