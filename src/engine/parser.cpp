#include "engine/parser.h"

#include <algorithm>
#include <array>
#include <utility>

#include "engine/parser_state.h"

namespace quillmarden {

namespace {

// Words that stand between the parts of a statement and so cannot be names without brackets.
constexpr std::string_view kReserved[] = {
    "SELECT", "FROM",  "WHERE",   "GROUP",    "ORDER",       "HAVING", "UNION",  "INNER", "LEFT", "RIGHT",
    "OUTER",  "JOIN",  "ON",      "AS",       "AND",         "OR",     "NOT",    "XOR",   "EQV",  "IMP",
    "IN",     "LIKE",  "BETWEEN", "IS",       "NULL",        "SET",    "VALUES", "INTO",  "MOD",  "BY",
    "TRUE",   "FALSE", "EXISTS",  "DISTINCT", "DISTINCTROW", "INSERT", "UPDATE", "DELETE"};

bool isReserved(const Token& token) {
  return std::any_of(std::begin(kReserved), std::end(kReserved),
                     [&](std::string_view word) { return token.isWord(word); });
}

}  // namespace

Parser::Parser(std::string_view sql) : sql_(sql) {
  Tokenizer tokenizer(sql);
  int literals = 0;
  do {
    tokens_.push_back(tokenizer.next());
    if (tokens_.back().isLiteral()) ++literals;
    slots_.push_back(literals);
  } while (tokens_.back().kind != TokenKind::End);
}

Parser::Level::Level(Parser& parser) : parser_(parser) {
  if (++parser_.depth_ <= kMostLevels) return;
  --parser_.depth_;
  parser_.fail("式の入れ子が深すぎます");
}

const Token& Parser::ahead(std::size_t count) const { return tokens_[std::min(at_ + count, tokens_.size() - 1)]; }

int Parser::slot(const Token& literal) const { return slots_[static_cast<std::size_t>(&literal - tokens_.data())]; }

bool Parser::takeWord(std::string_view upper) {
  if (!here().isWord(upper)) return false;
  advance();
  return true;
}

bool Parser::takeSymbol(std::string_view symbol) {
  if (!here().isSymbol(symbol)) return false;
  advance();
  return true;
}

void Parser::expectWord(std::string_view upper) {
  if (!takeWord(upper)) fail(std::string(upper) + " が必要です");
}

void Parser::expectSymbol(std::string_view symbol) {
  if (!takeSymbol(symbol)) fail("「" + std::string(symbol) + "」が必要です");
}

void Parser::fail(std::string_view expected) const { failAt(here(), expected); }

void Parser::failAt(const Token& token, std::string_view expected) const { throwSyntax(sql_, token.begin, expected); }

bool Parser::startsName() const {
  return here().kind == TokenKind::BracketedName || (here().kind == TokenKind::Word && !isReserved(here()));
}

std::string Parser::name(std::string_view what) {
  if (!startsName()) fail(what);
  std::string result(here().text);
  advance();
  return result;
}

std::string Parser::memberName(std::string_view what) {
  if (here().kind != TokenKind::Word && here().kind != TokenKind::BracketedName) fail(what);
  std::string result(here().text);
  advance();
  return result;
}

std::vector<std::string> Parser::nameList(std::string_view what) {
  std::vector<std::string> names;
  expectSymbol("(");
  do {
    names.push_back(name(what));
    // The direction is a hint for sorting; no look-up depends on it.
    if (!takeWord("ASC")) takeWord("DESC");
  } while (takeSymbol(","));
  expectSymbol(")");
  return names;
}

Statement Parser::statement() {
  Statement result;
  result.parameters = parameters();
  if (startsSelect()) {
    result.body = std::shared_ptr<const SelectStatement>(select());
  } else if (here().isWord("INSERT")) {
    result.body = std::shared_ptr<const InsertStatement>(insert());
  } else if (here().isWord("UPDATE")) {
    result.body = std::shared_ptr<const UpdateStatement>(update());
  } else if (here().isWord("DELETE")) {
    result.body = std::shared_ptr<const DeleteStatement>(deletion());
  } else if (here().kind == TokenKind::End) {
    fail("文がありません");
  } else {
    definition(result);
  }
  takeSymbol(";");
  if (here().kind != TokenKind::End) fail("文の終わりの後ろに余分な語があります");
  result.literalCount = slots_.back();
  return result;
}

std::vector<QueryParameter> Parser::parameters() {
  std::vector<QueryParameter> result;
  if (!takeWord("PARAMETERS")) return result;
  do {
    QueryParameter parameter;
    parameter.name = name("パラメータの名前が必要です");
    if (here().kind != TokenKind::Word) fail("パラメータの型が必要です");
    parameter.type = parameterType(here().text);
    if (parameter.type.empty()) fail("パラメータの型ではありません");
    advance();
    if (parameter.type == "double") takeWord("PRECISION");
    if (takeSymbol("(")) {
      if (here().kind != TokenKind::Whole) fail("文字数が必要です");
      advance();
      expectSymbol(")");
    }
    result.push_back(std::move(parameter));
  } while (takeSymbol(","));
  expectSymbol(";");
  return result;
}

std::shared_ptr<SelectStatement> Parser::select() {
  const Level level(*this);
  std::shared_ptr<SelectStatement> result = selectCore();
  while (takeWord("UNION")) {
    const bool all = takeWord("ALL");
    if (!startsSelect()) fail("UNION の後ろに SELECT が必要です");
    std::shared_ptr<SelectStatement> further = selectCore();
    result->height = std::max(result->height, further->height);
    result->unions.push_back({all, std::move(further)});
  }
  if (takeWord("ORDER")) result->orderBy = orderBy();
  for (const OrderItem& item : result->orderBy) result->height = std::max(result->height, item.expression->height + 1);
  return result;
}

std::shared_ptr<SelectStatement> Parser::selectCore() {
  auto result = std::make_shared<SelectStatement>();
  int below = 0;
  const auto measure = [&below](const ExpressionPtr& part) {
    if (part != nullptr) below = std::max(below, part->height);
  };
  expectWord("SELECT");
  if (takeWord("DISTINCT")) {
    result->distinct = Distinct::Values;
  } else if (takeWord("DISTINCTROW")) {
    result->distinct = Distinct::Rows;
  } else {
    takeWord("ALL");
  }
  if (here().isWord("TOP") && ahead(1).kind == TokenKind::Whole) {
    advance();
    result->top = std::get<std::int64_t>(here().value);
    advance();
    if (here().isWord("PERCENT")) fail("TOP の PERCENT には対応していません");
  }
  do {
    result->items.push_back(selectItem());
    measure(result->items.back().expression);
  } while (takeSymbol(","));
  if (here().isWord("INTO")) fail("SELECT … INTO には対応していません");
  if (takeWord("FROM")) {
    result->from = from();
    below = std::max(below, result->from->height);
  }
  if (takeWord("WHERE")) measure(result->where = expression());
  if (takeWord("GROUP")) {
    expectWord("BY");
    do {
      result->groupBy.push_back(expression());
      measure(result->groupBy.back());
    } while (takeSymbol(","));
  }
  if (takeWord("HAVING")) measure(result->having = expression());
  result->height = below + 1;
  checkHeight(result->height);
  return result;
}

SelectItem Parser::selectItem() {
  SelectItem item;
  if (takeSymbol("*")) return item;
  if (startsName() && (ahead(1).isSymbol(".") || ahead(1).isSymbol("!")) && ahead(2).isSymbol("*")) {
    item.starOf = here().text;
    at_ += 3;
    return item;
  }
  item.expression = expression();
  if (takeWord("AS")) item.alias = name("AS の後ろに名前が必要です");
  return item;
}

std::vector<OrderItem> Parser::orderBy() {
  expectWord("BY");
  std::vector<OrderItem> items;
  do {
    OrderItem item;
    item.expression = expression();
    item.descending = !takeWord("ASC") && takeWord("DESC");
    items.push_back(std::move(item));
  } while (takeSymbol(","));
  return items;
}

FromPtr Parser::from() {
  FromPtr result = joins();
  while (takeSymbol(",")) {
    auto both = std::make_unique<FromNode>();
    both->kind = FromNode::Kind::Join;
    both->left = std::move(result);
    both->right = joins();
    both->height = std::max(both->left->height, both->right->height) + 1;
    checkHeight(both->height);
    result = std::move(both);
  }
  return result;
}

FromPtr Parser::joins() {
  const Level level(*this);
  FromPtr result = tableOrBracket();
  while (true) {
    auto both = std::make_unique<FromNode>();
    both->kind = FromNode::Kind::Join;
    if (takeWord("LEFT")) {
      takeWord("OUTER");
      both->join = JoinKind::Left;
    } else if (takeWord("RIGHT")) {
      takeWord("OUTER");
      both->join = JoinKind::Right;
    } else if (!takeWord("INNER") && !here().isWord("JOIN")) {
      return result;
    }
    expectWord("JOIN");
    both->left = std::move(result);
    both->right = tableOrBracket();
    if (!takeWord("ON")) fail("結合条件の ON が必要です");
    both->on = expression();
    both->height = std::max({both->left->height, both->right->height, both->on->height}) + 1;
    checkHeight(both->height);
    result = std::move(both);
  }
}

FromPtr Parser::tableOrBracket() {
  const Level level(*this);
  auto result = std::make_unique<FromNode>();
  if (here().kind == TokenKind::QueryBracket || (here().isSymbol("(") && ahead(1).isWord("SELECT"))) {
    const bool older = here().kind == TokenKind::QueryBracket;
    advance();
    result->kind = FromNode::Kind::Query;
    std::shared_ptr<SelectStatement> query = select();
    // Access keeps the ";" of the text between the brackets.
    takeSymbol(";");
    if (older) {
      if (here().kind != TokenKind::QueryBracketEnd) fail("「].」が必要です");
      advance();
    } else {
      expectSymbol(")");
    }
    result->height = query->height + 1;
    checkHeight(result->height);
    result->query = std::move(query);
  } else if (takeSymbol("(")) {
    result = joins();
    expectSymbol(")");
    return result;
  } else {
    result->table = name("テーブル名が必要です");
    result->alias = result->table;
  }
  if (takeWord("AS")) {
    result->alias = name("AS の後ろに名前が必要です");
  } else if (startsName()) {
    result->alias = name("別名が必要です");
  }
  // A derived table without a name: its columns are reached by theirs alone.
  if (result->alias.empty()) result->alias = "%$##@_Alias" + std::to_string(++unnamed_);
  return result;
}

std::shared_ptr<InsertStatement> Parser::insert() {
  auto result = std::make_shared<InsertStatement>();
  expectWord("INSERT");
  expectWord("INTO");
  result->table = name("テーブル名が必要です");
  if (here().isSymbol("(") && !ahead(1).isWord("SELECT")) result->columns = nameList("項目名が必要です");
  if (takeWord("VALUES")) {
    expectSymbol("(");
    do {
      result->values.push_back(expression());
    } while (takeSymbol(","));
    expectSymbol(")");
  } else if (startsSelect()) {
    result->select = select();
  } else if (here().isSymbol("(") && ahead(1).isWord("SELECT")) {
    advance();
    result->select = select();
    expectSymbol(")");
  } else {
    fail("VALUES または SELECT が必要です");
  }
  return result;
}

std::shared_ptr<UpdateStatement> Parser::update() {
  auto result = std::make_shared<UpdateStatement>();
  expectWord("UPDATE");
  result->from = from();
  expectWord("SET");
  do {
    Assignment assignment;
    assignment.column = name("SET の後ろに項目名が必要です");
    if (takeSymbol(".") || takeSymbol("!")) {
      assignment.qualifier = std::exchange(assignment.column, memberName("「.」の後ろに項目名が必要です"));
    }
    expectSymbol("=");
    assignment.value = expression();
    result->assignments.push_back(std::move(assignment));
  } while (takeSymbol(","));
  if (takeWord("WHERE")) result->where = expression();
  return result;
}

std::shared_ptr<DeleteStatement> Parser::deletion() {
  auto result = std::make_shared<DeleteStatement>();
  expectWord("DELETE");
  takeWord("DISTINCTROW");
  if (!takeSymbol("*") && !here().isWord("FROM")) {
    result->target = name("FROM または削除するテーブルが必要です");
    if (!takeSymbol(".") && !takeSymbol("!")) fail("「.*」が必要です");
    expectSymbol("*");
  }
  expectWord("FROM");
  result->from = from();
  if (takeWord("WHERE")) result->where = expression();
  return result;
}

Statement parseStatement(std::string_view sql) { return Parser(sql).statement(); }

}  // namespace quillmarden
