#include "workbook/convert.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

#include "workbook/workbook_error.h"

namespace quillmarden {

namespace {

/// A folder of our own that goes with all that is in it.
class WorkFolder {
 public:
  WorkFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillmarden-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
      throw WorkbookError(WorkbookFault::ConversionFailed, name, "作業フォルダを作れません.");
    path_ = name;
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

std::filesystem::path findProgram() {
  const char* variable = std::getenv("PATH");
  const std::string folders = variable == nullptr ? "/usr/local/bin:/usr/bin:/bin" : variable;
  for (std::size_t at = 0; at < folders.size();) {
    const std::size_t end = std::min(folders.find(':', at), folders.size());
    if (end > at) {
      const std::filesystem::path candidate = std::filesystem::path(folders.substr(at, end - at)) / "soffice";
      if (::access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    at = end + 1;
  }
  throw WorkbookError(WorkbookFault::ConverterMissing, "",
                      "旧形式のブックを読むには LibreOffice が必要です. インストールするか, "
                      "ブックを .xlsx 形式で保存し直してください.");
}

/// Runs a program without a shell, in a process group of its own and with nothing to read or print to. True when it
/// ended well within the limit; at the limit the whole group is ended.
bool run(const std::filesystem::path& program, std::vector<std::string> arguments, std::chrono::seconds limit) {
  std::vector<char*> argv;
  std::string name = program.string();
  argv.push_back(name.data());
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&files, 2, "/dev/null", O_WRONLY, 0);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  posix_spawnattr_setpgroup(&attributes, 0);
  pid_t child = 0;
  const int failed = ::posix_spawn(&child, name.c_str(), &files, &attributes, argv.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  posix_spawnattr_destroy(&attributes);
  if (failed != 0) return false;

  // A handle on the process becomes readable when it ends: waiting with a limit, without asking again and again.
  const int handle = static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
  pollfd waiting{handle, POLLIN, 0};
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(limit).count();
  const bool ended = handle >= 0 && ::poll(&waiting, 1, static_cast<int>(milliseconds)) == 1;
  if (!ended) ::kill(-child, SIGKILL);
  int status = 0;
  ::waitpid(child, &status, 0);
  if (handle >= 0) ::close(handle);
  return ended && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Whether the file is a compound one. LibreOffice takes one that holds no book for a text, unless it is told what it
/// is.
bool isCompound(const std::filesystem::path& file) {
  constexpr std::string_view kMagic = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
  std::string head(kMagic.size(), '\0');
  std::ifstream(file, std::ios::binary).read(head.data(), static_cast<std::streamsize>(head.size()));
  return head == kMagic;
}

std::string fileUri(const std::filesystem::path& path) {
  std::string uri = "file://";
  for (const char c : path.string()) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = std::isalnum(byte) != 0 || c == '/' || c == '-' || c == '_' || c == '.' || c == '~';
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    uri += plain ? std::string(1, c) : std::string{'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return uri;
}

}  // namespace

std::string convertToPackage(const std::filesystem::path& file, std::chrono::seconds limit) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error))
    throw WorkbookError(WorkbookFault::NotFound, file.string(), "ファイルがありません.");
  const std::filesystem::path program = findProgram();
  const WorkFolder folder;
  // A copy under a name of ours: no name can be taken for an option, and the original is not locked.
  const std::filesystem::path copy = folder.path() / "book.xls";
  const std::filesystem::path result = folder.path() / "out" / "book.xlsx";
  std::filesystem::copy_file(file, copy, error);
  std::vector<std::string> arguments = {"-env:UserInstallation=" + fileUri(folder.path() / "profile"), "--headless",
                                        "--norestore"};
  if (isCompound(copy)) arguments.push_back("--infilter=MS Excel 97");
  for (const std::string& argument : {std::string("--convert-to"), std::string("xlsx:Calc MS Excel 2007 XML"),
                                      std::string("--outdir"), result.parent_path().string(), copy.string()})
    arguments.push_back(argument);
  const bool good = !error && run(program, std::move(arguments), limit);
  std::ifstream stream(result, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (!good || bytes.empty())
    throw WorkbookError(WorkbookFault::ConversionFailed, file.string(), "LibreOffice で変換できませんでした.");
  return bytes;
}

}  // namespace quillmarden
