#include "common/script_file.h"

#include "common/text.h"

namespace quillmarden {

ScriptFile::ScriptFile(const std::filesystem::path& file, TextEncoding encoding) : file_(file), encoding_(encoding) {}

std::u32string ScriptFile::write(std::string_view utf8) {
  std::u32string lost;
  if (encoding_ == TextEncoding::Cp932)
    file_.write(toCp932(utf8, &lost));
  else
    file_.write(utf8);
  return lost;
}

}  // namespace quillmarden
