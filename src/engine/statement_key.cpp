#include "engine/sqlite_writer.h"
#include "engine/token.h"

namespace quillmarden {

StatementKey statementKey(std::string_view sql) {
  StatementKey result;
  result.key.reserve(sql.size());
  Tokenizer tokenizer(sql);
  std::size_t copied = 0;
  for (Token token = tokenizer.next(); token.kind != TokenKind::End; token = tokenizer.next()) {
    if (!token.isLiteral()) continue;
    result.key.append(sql.substr(copied, token.begin - copied));
    // No statement holds control characters outside of literals, so that the mark cannot be met by chance.
    result.key += '\x01';
    switch (token.kind) {
      case TokenKind::Whole:
        result.key += 'w';
        break;
      case TokenKind::Real:
        result.key += 'r';
        break;
      case TokenKind::Date:
        result.key += 'd';
        break;
      default:
        result.key += 't';
        break;
    }
    result.literals.push_back(std::move(token.value));
    copied = token.end;
  }
  result.key.append(sql.substr(copied));
  return result;
}

}  // namespace quillmarden
