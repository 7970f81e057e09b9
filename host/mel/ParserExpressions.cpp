#include <charconv>

#include "host/mel/Parser.h"
#include "host/mel/ParserImpl.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host::mel {
namespace {

using Kind = AstNode::Kind;
using TokenKind = Token::Kind;

constexpr int kUnknownOperator = 0;

int precedence(const Token& token) {
  static constexpr struct {
    std::string_view symbol;
    int precedence;
  } kOperators[] = {{"||", 1}, {"&&", 2}, {"==", 3}, {"!=", 3}, {"<", 4}, {">", 4}, {"<=", 4},
                    {">=", 4}, {"+", 5},  {"-", 5},  {"*", 6},  {"/", 6}, {"%", 6}, {"^", 6}};
  if (token.kind == TokenKind::kSymbol) {
    for (const auto& known : kOperators)
      if (token.text == known.symbol) return known.precedence;
  }
  return kUnknownOperator;
}

bool isAssignment(const Token& token) {
  return token.isSymbol("=") || token.isSymbol("+=") || token.isSymbol("-=") ||
         token.isSymbol("*=") || token.isSymbol("/=") || token.isSymbol("%=") ||
         token.isSymbol("^=");
}

bool isVariable(const AstNode& node) {
  return node.kind == Kind::kVariable || node.kind == Kind::kElement;
}

}  // namespace

AstPtr Parser::parseExpression() {
  const Nest nest(*this);
  AstPtr expression = nest ? parseChoice() : nullptr;
  if (expression != nullptr && isAssignment(token_))
    expression = parseAssignment(std::move(expression));
  return expression;
}

AstPtr Parser::parseAssignment(AstPtr target) {
  if (!isVariable(*target)) return fail(target->offset, "only a variable can be assigned to");
  const Token symbol = take();
  const std::size_t offset = target->offset;
  AstPtr value = parseExpression();
  if (value == nullptr) return nullptr;
  AstPtr node = make(Kind::kAssign, offset, std::move(target), std::move(value));
  if (node != nullptr) node->text = std::string(symbol.text.substr(0, symbol.text.size() - 1));
  return node;
}

AstPtr Parser::parseChoice() {
  AstPtr condition = parseBinary(1);
  if (condition == nullptr || !token_.isSymbol("?")) return condition;
  AstPtr node = make(Kind::kChoice, take().offset, std::move(condition));
  const bool complete = node != nullptr && add(*node, parseExpression()) && expect(":") &&
                        add(*node, parseExpression());
  return complete ? std::move(node) : nullptr;
}

AstPtr Parser::parseBinary(int lowest) {
  AstPtr left = parseUnary();
  while (left != nullptr && precedence(token_) >= lowest) {
    const int own = precedence(token_);
    const Token symbol = take();
    AstPtr right = parseBinary(own + 1);
    if (right == nullptr) return nullptr;
    left = make(Kind::kBinary, symbol.offset, std::move(left), std::move(right));
    if (left != nullptr) left->text = std::string(symbol.text);
  }
  return left;
}

AstPtr Parser::parseUnary() {
  const Nest nest(*this);
  if (!nest) return nullptr;
  const bool isSigned = token_.isSymbol("++") || token_.isSymbol("--") || token_.isSymbol("-") ||
                        token_.isSymbol("!") || token_.isSymbol("+");
  return isSigned ? parseSigned() : parsePostfix();
}

AstPtr Parser::parseSigned() {
  const Token symbol = take();
  const bool step = symbol.isSymbol("++") || symbol.isSymbol("--");
  AstPtr operand = parseUnary();
  if (operand == nullptr || symbol.isSymbol("+")) return operand;
  if (step && !isVariable(*operand)) return fail(symbol.offset, "only a variable can be stepped");
  AstPtr node = make(step ? Kind::kStep : Kind::kUnary, symbol.offset, std::move(operand));
  if (node != nullptr) {
    node->text = std::string(symbol.text);
    node->literal = Value(1);
  }
  return node;
}

AstPtr Parser::parsePostfix() {
  AstPtr operand = parsePrimary();
  operand = parseParts(std::move(operand));
  if (operand != nullptr && isVariable(*operand) &&
      (token_.isSymbol("++") || token_.isSymbol("--"))) {
    const Token symbol = take();
    AstPtr node = make(Kind::kStep, symbol.offset, std::move(operand));
    if (node != nullptr) node->text = std::string(symbol.text);
    return node;
  }
  return operand;
}

// ".x", ".y" or ".z" of a vector.
bool Parser::atComponent() const {
  const Token name = lexer_.expressionToken(token_.end);
  return token_.isSymbol(".") && name.offset == token_.end &&
         (name.isName("x") || name.isName("y") || name.isName("z"));
}

// Elements and components of what was read.
AstPtr Parser::parseParts(AstPtr array) {
  while (array != nullptr && (token_.isSymbol("[") || atComponent())) {
    const std::size_t offset = token_.offset;
    if (take().isSymbol(".")) {
      array = make(Kind::kComponent, offset, std::move(array));
      if (array != nullptr) array->text = std::string(take().text);
      continue;
    }
    AstPtr index = parseExpression();
    if (index == nullptr || !expect("]")) return nullptr;
    array = make(Kind::kElement, offset, std::move(array), std::move(index));
  }
  return array;
}

AstPtr Parser::parsePrimary() {
  switch (token_.kind) {
    case TokenKind::kNumber:
      return parseNumber();
    case TokenKind::kString:
      return parseString();
    case TokenKind::kVariable:
      return parseVariable();
    case TokenKind::kName:
      return parseName();
    default:
      break;
  }
  if (token_.isSymbol("(")) return parseParenthesised();
  if (token_.isSymbol("{")) return parseArrayLiteral();
  if (token_.isSymbol("<<")) return parseVector();
  if (token_.isSymbol("`")) return parseBackQuoted();
  return failAtToken("a value");
}

AstPtr Parser::parseNumber() {
  const Token token = take();
  AstPtr node = make(Kind::kLiteral, token.offset);
  if (token.text.size() > 2 && (token.text[1] == 'x' || token.text[1] == 'X')) {
    unsigned number = 0;
    const char* end = token.text.data() + token.text.size();
    if (std::from_chars(token.text.data() + 2, end, number, 16).ec != std::errc())
      return fail(token.offset, "the number has more than 32 bits");
    node->literal = Value(static_cast<int>(number));
  } else if (const auto integer = parseInteger(token.text)) {
    node->literal = Value(*integer);
  } else {
    node->literal = Value(mel::parseNumber(token.text).value_or(0.0));
  }
  return node;
}

AstPtr Parser::parseString() {
  const Token token = take();
  AstPtr node = make(Kind::kLiteral, token.offset);
  std::string text;
  appendUnescaped(text, token.text);
  node->literal = Value(std::move(text));
  return node;
}

AstPtr Parser::parseVariable() {
  const Token token = take();
  AstPtr node = make(Kind::kVariable, token.offset);
  node->text = std::string(token.text);
  return node;
}

bool Parser::atCast() const {
  const Token type = lexer_.expressionToken(token_.end);
  const bool named =
      type.isName("int") || type.isName("float") || type.isName("string") || type.isName("vector");
  return token_.isSymbol("(") && named && lexer_.expressionToken(type.end).isSymbol(")");
}

AstPtr Parser::parseCast() {
  const std::size_t offset = take().offset;
  Value::Type type = Value::Type::kNone;
  if (!takeType(type) || !expect(")")) return nullptr;
  AstPtr cast = make(Kind::kCast, offset, parseUnary());
  if (cast != nullptr) cast->type = type;
  return cast;
}

AstPtr Parser::parseParenthesised() {
  if (atCast()) return parseCast();
  take();
  AstPtr inner = parseExpression();
  return inner != nullptr && expect(")") ? std::move(inner) : nullptr;
}

// true and false in their spellings, a call such as size($x), or a cast such as int($x).
AstPtr Parser::parseName() {
  const Token name = token_;
  if (!lexer_.expressionToken(name.end).isSymbol("(")) {
    const auto truth = parseTruth(name.text);
    if (!truth) return failAtToken("a value");
    take();
    AstPtr node = make(Kind::kLiteral, name.offset);
    node->literal = Value::ofTruth(*truth);
    return node;
  }
  take();
  take();
  AstPtr call = make(Kind::kCommand, name.offset);
  call->text = std::string(name.text);
  return parseArguments(*call, ")") ? std::move(call) : nullptr;
}

// Expressions with commas between them, up to and including `close`.
bool Parser::parseArguments(AstNode& parent, std::string_view close) {
  while (!accept(close))
    if (!add(parent, parseExpression()) || (!token_.isSymbol(close) && !expect(","))) return false;
  return true;
}

AstPtr Parser::parseArrayLiteral() {
  AstPtr array = make(Kind::kArrayLiteral, take().offset);
  return parseArguments(*array, "}") ? std::move(array) : nullptr;
}

// "<<1, 2, 3>>", or a matrix with semicolons between its rows.
AstPtr Parser::parseVector() {
  AstPtr node = make(Kind::kVector, take().offset);
  std::size_t columns = 0;
  std::size_t rowStart = 0;
  int rows = 0;
  for (bool inside = true; inside;) {
    if (!add(*node, parseChoice())) return nullptr;
    if (node->children.size() > kMaxMatrixSize)
      return fail(node->offset, "the matrix is too large");
    if (accept(",")) continue;
    const std::size_t inRow = node->children.size() - rowStart;
    columns = rows == 0 ? inRow : columns;
    if (inRow != columns) return fail(node->offset, "the matrix has rows of different lengths");
    rowStart = node->children.size();
    ++rows;
    inside = accept(";");
  }
  node->literal = Value(rows);
  return expect(">>") ? std::move(node) : nullptr;
}

AstPtr Parser::parseBackQuoted() {
  take();
  if (token_.kind != TokenKind::kName) return failAtToken("a command");
  AstPtr command = parseCommand(true);
  return command != nullptr && expect("`") ? std::move(command) : nullptr;
}

AstPtr Parser::parseCommand(bool backQuoted) {
  const Token name = take();
  AstPtr command = make(Kind::kCommand, name.offset);
  command->text = std::string(name.text);
  for (bool first = true;; first = false) {
    const Token word = lexer_.wordToken(first ? name.end : token_.offset);
    const bool ends = word.kind == TokenKind::kEnd || word.isSymbol(";") || word.isSymbol(")") ||
                      word.isSymbol("}") || (backQuoted && word.isSymbol("`"));
    if (ends) {
      moveTo(word.offset);
      return command;
    }
    AstPtr argument = parseArgument(word, first, *command);
    if (failed_ || (argument != nullptr && !add(*command, std::move(argument)))) return nullptr;
  }
}

// Null without a failure when the argument was a list in parentheses: its items have been added.
AstPtr Parser::parseArgument(const Token& word, bool first, AstNode& command) {
  const bool signOnly = word.kind == TokenKind::kName && word.text == "-";
  const bool isVector = word.kind == TokenKind::kName && word.text.substr(0, 2) == "<<";
  if (word.kind == TokenKind::kName && !signOnly && !isVector) {
    moveTo(word.end);
    AstPtr node = make(Kind::kWord, word.offset);
    node->text = std::string(word.text);
    return node;
  }
  moveTo(word.offset);
  if (signOnly) return parseUnary();
  if (first && word.isSymbol("(") && !atCast()) {
    take();
    parseArguments(command, ")");
    return nullptr;
  }
  AstPtr argument = parsePrimary();
  const bool hasParts = argument != nullptr && argument->kind == Kind::kVariable;
  return hasParts ? parseParts(std::move(argument)) : std::move(argument);
}

}  // namespace host::mel
