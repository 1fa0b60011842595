#include "repository/tell_error.h"

#include "common/message.h"

namespace quillmarden {

void tellError(Session& session, Host& host, std::string_view routine, const EngineError& error) {
  session.log.putError(host, routine, error.number(), error.what());
  gMsgBox(host, joinLines({"エラーです.", std::string("  ") + error.what()}), kOkOnly, "こまった");
}

}  // namespace quillmarden
