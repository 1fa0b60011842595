#include <algorithm>

#include "engine/parser_state.h"

namespace quillmarden {

namespace {

// How tightly the operators bind, from Imp to "^".
enum Binding : int {
  kImp = 1,
  kEqv,
  kXor,
  kOr,
  kAnd,
  kNot,
  kComparison,
  kConcatenation,
  kSum,
  kModulo,
  kWholeDivision,
  kProduct,
  kSign,
  kPower
};

struct Operator {
  std::string_view text;
  int binding;
};

constexpr Operator kWordOperators[] = {{"AND", kAnd}, {"OR", kOr},   {"XOR", kXor},
                                       {"EQV", kEqv}, {"IMP", kImp}, {"MOD", kModulo}};

constexpr Operator kSymbolOperators[] = {
    {"=", kComparison},  {"<>", kComparison},   {"<", kComparison}, {">", kComparison}, {"<=", kComparison},
    {">=", kComparison}, {"&", kConcatenation}, {"+", kSum},        {"-", kSum},        {"\\", kWholeDivision},
    {"*", kProduct},     {"/", kProduct},       {"^", kPower}};

// The operator that a token stands for, or nullptr.
const Operator* binaryOperator(const Token& token) {
  if (token.kind == TokenKind::Word) {
    for (const Operator& candidate : kWordOperators) {
      if (token.isWord(candidate.text)) return &candidate;
    }
  } else if (token.kind == TokenKind::Symbol) {
    for (const Operator& candidate : kSymbolOperators) {
      if (token.text == candidate.text) return &candidate;
    }
  }
  return nullptr;
}

bool startsPredicate(const Token& token, const Token& following) {
  const auto isPredicate = [](const Token& word) {
    return word.isWord("LIKE") || word.isWord("IN") || word.isWord("BETWEEN");
  };
  return isPredicate(token) || token.isWord("IS") || (token.isWord("NOT") && isPredicate(following));
}

ExpressionPtr node(ExpressionKind kind) {
  auto result = std::make_unique<Expression>();
  result->kind = kind;
  return result;
}

// Operands of equal standing in one node: lists of conditions run to any length, and depth is limited.
bool isChain(std::string_view name) { return name == "AND" || name == "OR" || name == "&"; }

ExpressionPtr combine(std::string_view name, ExpressionPtr left, ExpressionPtr right) {
  if (isChain(name) && left->kind == ExpressionKind::Chain && left->name == name) {
    left->operands.push_back(std::move(right));
    return left;
  }
  ExpressionPtr result = node(isChain(name) ? ExpressionKind::Chain : ExpressionKind::Binary);
  result->name = name;
  result->operands.push_back(std::move(left));
  result->operands.push_back(std::move(right));
  return result;
}

}  // namespace

ExpressionPtr Parser::expression(int lowestBinding) {
  const Level level(*this);
  ExpressionPtr left = measured(prefix());
  while (true) {
    if (startsPredicate(here(), ahead(1))) {
      if (lowestBinding > kComparison) break;
      left = predicate(std::move(left));
    } else {
      const Operator* found = binaryOperator(here());
      if (found == nullptr || found->binding < lowestBinding) break;
      advance();
      left = combine(found->text, std::move(left), expression(found->binding + 1));
    }
    left = measured(std::move(left));
  }
  return left;
}

ExpressionPtr Parser::measured(ExpressionPtr tree) const {
  int below = tree->query == nullptr ? 0 : tree->query->height;
  // The operands in front of the last one of a chain have been measured before.
  if (tree->kind == ExpressionKind::Chain) {
    below = std::max(tree->height - 1, tree->operands.back()->height);
    if (tree->height == 1) below = std::max(below, tree->operands.front()->height);
  } else {
    for (const ExpressionPtr& operand : tree->operands) below = std::max(below, operand->height);
  }
  tree->height = below + 1;
  checkHeight(tree->height);
  return tree;
}

void Parser::checkHeight(int height) const {
  if (height > kMostLevels) fail("式の入れ子が深すぎます");
}

ExpressionPtr Parser::prefix() {
  if (here().isWord("NOT")) {
    advance();
    ExpressionPtr result = node(ExpressionKind::Unary);
    result->name = "NOT";
    result->operands.push_back(expression(kNot));
    return result;
  }
  if (here().isSymbol("-") || here().isSymbol("+")) {
    const bool minus = here().isSymbol("-");
    advance();
    ExpressionPtr operand = expression(kSign);
    if (!minus) return operand;
    ExpressionPtr result = node(ExpressionKind::Unary);
    result->name = "-";
    result->operands.push_back(std::move(operand));
    return result;
  }
  return primary();
}

ExpressionPtr Parser::primary() {
  const Token& token = here();
  if (token.isLiteral()) {
    ExpressionPtr result = node(ExpressionKind::Literal);
    result->value = token.value;
    result->isDate = token.kind == TokenKind::Date;
    result->slot = slot(token);
    advance();
    return result;
  }
  if (takeSymbol("(")) {
    ExpressionPtr result;
    if (startsSelect()) {
      result = node(ExpressionKind::Query);
      result->query = select();
    } else {
      result = expression();
    }
    expectSymbol(")");
    // What stands in parentheses is one operand, not a part of the chain around it.
    return result;
  }
  if (token.isWord("NULL") || token.isWord("TRUE") || token.isWord("FALSE")) {
    ExpressionPtr result = node(ExpressionKind::Constant);
    if (!token.isWord("NULL")) result->value = std::int64_t{token.isWord("TRUE") ? -1 : 0};
    advance();
    return result;
  }
  if (token.isWord("EXISTS") && ahead(1).isSymbol("(")) {
    advance();
    advance();
    ExpressionPtr result = node(ExpressionKind::Exists);
    if (!startsSelect()) fail("EXISTS の中に SELECT が必要です");
    result->query = select();
    expectSymbol(")");
    return result;
  }
  return nameOrCall();
}

ExpressionPtr Parser::nameOrCall() {
  // "Left(x, 1)" and its like bear the names of keywords.
  if (here().kind == TokenKind::Word && ahead(1).isSymbol("(") &&
      (startsName() || here().isWord("LEFT") || here().isWord("RIGHT"))) {
    std::string function(here().text);
    for (char& letter : function) letter = upperLetter(letter);
    advance();
    return call(std::move(function));
  }
  ExpressionPtr result = node(ExpressionKind::Name);
  result->name = name("式または項目名が必要です");
  while (here().isSymbol(".") || here().isSymbol("!")) {
    advance();
    if (!result->qualifier.empty()) result->qualifier += '.';
    result->qualifier += result->name;
    result->name = memberName("「.」の後ろに項目名が必要です");
  }
  return result;
}

ExpressionPtr Parser::call(std::string function) {
  ExpressionPtr result = node(ExpressionKind::Call);
  result->name = std::move(function);
  expectSymbol("(");
  if (result->name == "COUNT" && here().isSymbol("*")) {
    advance();
    expectSymbol(")");
    return result;
  }
  if (takeSymbol(")")) {
    if (result->name == "COUNT") fail("Count の中に項目名または * が必要です");
    return result;
  }
  do {
    result->operands.push_back(expression());
  } while (takeSymbol(","));
  expectSymbol(")");
  return result;
}

ExpressionPtr Parser::predicate(ExpressionPtr left) {
  if (takeWord("IS")) {
    ExpressionPtr result = node(ExpressionKind::IsNull);
    result->negated = takeWord("NOT");
    expectWord("NULL");
    result->operands.push_back(std::move(left));
    return result;
  }
  const bool negated = takeWord("NOT");
  if (takeWord("IN")) return inList(std::move(left), negated);
  ExpressionPtr result = node(here().isWord("LIKE") ? ExpressionKind::Like : ExpressionKind::Between);
  advance();
  result->negated = negated;
  result->operands.push_back(std::move(left));
  result->operands.push_back(expression(kConcatenation));
  if (result->kind == ExpressionKind::Between) {
    expectWord("AND");
    result->operands.push_back(expression(kConcatenation));
  }
  return result;
}

ExpressionPtr Parser::inList(ExpressionPtr left, bool negated) {
  expectSymbol("(");
  ExpressionPtr result = node(startsSelect() ? ExpressionKind::InQuery : ExpressionKind::InList);
  result->negated = negated;
  result->operands.push_back(std::move(left));
  if (result->kind == ExpressionKind::InQuery) {
    result->query = select();
  } else {
    do {
      result->operands.push_back(expression());
    } while (takeSymbol(","));
  }
  expectSymbol(")");
  return result;
}

}  // namespace quillmarden
