#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/ini_file.h"

// A profile file of any bytes: read, changed, written and read again. What was put must come back, in this and in the
// next run, and a text that was written once is written the same from then on.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using quillmarden::IniText;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  IniText ini(bytes);
  ini.get("APP_SETTING", "LoninUserName");

  const std::string value(bytes.substr(0, bytes.find('=')));
  ini.put("APP_SETTING", "LoninUserName", value);
  const std::string stored = ini.get("app_setting", "loninusername");
  const IniText again(ini.bytes());
  if (again.get("APP_SETTING", "LoninUserName") != stored) std::abort();
  if (again.bytes() != ini.bytes()) std::abort();

  // Names from the file itself: put says whether they can be found again.
  const std::string name(bytes.substr(0, 12));
  if (ini.put(name, name, "1") && ini.get(name, name) != "1") std::abort();
  return 0;
}
