#include "host/mel/Parser.h"

#include <algorithm>
#include <utility>

#include "host/mel/ParserImpl.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host::mel {
namespace {

using Kind = AstNode::Kind;
using TokenKind = Token::Kind;

Value::Type namedType(std::string_view name) {
  if (name == "int") return Value::Type::kInt;
  if (name == "float") return Value::Type::kFloat;
  if (name == "vector") return Value::Type::kVector;
  if (name == "matrix") return Value::Type::kMatrix;
  return name == "string" ? Value::Type::kString : Value::Type::kNone;
}

}  // namespace

std::shared_ptr<const Script> parseScript(std::string_view text, const std::string& origin,
                                          Failure& failure) {
  auto script = std::make_shared<Script>();
  script->origin = origin;
  script->text = std::string(text);
  Parser parser(script->text, origin);
  script->root = parser.parseProgram();
  if (script->root == nullptr) {
    failure = parser.failure();
    return nullptr;
  }
  return script;
}

Token Parser::take() {
  const Token taken = token_;
  moveTo(taken.end);
  return taken;
}

bool Parser::accept(std::string_view symbol) {
  if (!token_.isSymbol(symbol)) return false;
  take();
  return true;
}

bool Parser::expect(std::string_view symbol) {
  if (accept(symbol)) return true;
  failAtToken("'" + std::string(symbol) + "'");
  return false;
}

// The last statement of a text needs no semicolon.
bool Parser::expectEndOfStatement() {
  return token_.kind == TokenKind::kEnd || expect(";");
}

AstPtr Parser::make(Kind kind, std::size_t offset) const {
  auto node = std::make_unique<AstNode>();
  node->kind = kind;
  node->offset = offset;
  return node;
}

AstPtr Parser::make(Kind kind, std::size_t offset, AstPtr first, AstPtr second) {
  AstPtr node = make(kind, offset);
  if (!add(*node, std::move(first)) || (second != nullptr && !add(*node, std::move(second))))
    return nullptr;
  return node;
}

bool Parser::add(AstNode& parent, AstPtr child) {
  if (child == nullptr) return false;
  parent.depth = std::max(parent.depth, child->depth + 1);
  if (parent.depth > kMaxNesting) {
    fail(child->offset, "too deeply nested");
    return false;
  }
  parent.children.push_back(std::move(child));
  return true;
}

AstPtr Parser::fail(std::size_t offset, const std::string& text) {
  if (!failed_) {
    const Position position = positionAt(text_, offset);
    failure_ = Failure{origin_, position.line, position.column, text};
    failed_ = true;
  }
  return nullptr;
}

AstPtr Parser::failAtToken(const std::string& expected) {
  if (token_.kind == TokenKind::kBad && !token_.text.empty() && token_.text.front() == '"')
    return fail(token_.offset, "text without a closing quote");
  const std::string found = token_.kind == TokenKind::kEnd
                                ? "the end"
                                : "'" + std::string(token_.text.substr(0, 40)) + "'";
  return fail(token_.offset, "expected " + expected + " before " + found);
}

AstPtr Parser::parseProgram() {
  AstPtr root = make(Kind::kSequence, 0);
  while (token_.kind != TokenKind::kEnd) {
    AstPtr statement = parseStatement();
    if (statement == nullptr || !add(*root, std::move(statement))) return nullptr;
  }
  return root;
}

Parser::Nest::Nest(Parser& parser) : parser_(parser), ok_(++parser.nesting_ <= kMaxNesting) {
  if (!ok_) parser_.fail(parser_.token_.offset, "too deeply nested");
}

AstPtr Parser::parseStatement() {
  const Nest nest(*this);
  if (!nest) return nullptr;
  if (token_.isSymbol("{")) return parseBlock();
  const std::size_t offset = token_.offset;
  if (accept(";")) return make(Kind::kSequence, offset);
  if (atDeclaration()) {
    AstPtr declaration = parseDeclaration(false);
    return declaration != nullptr && expectEndOfStatement() ? std::move(declaration) : nullptr;
  }
  if (token_.kind == TokenKind::kName) return parseKeyword(token_);
  AstPtr expression = parseExpression();
  return expression != nullptr && expectEndOfStatement() ? std::move(expression) : nullptr;
}

// A statement that begins with a name: one of the language's own words, else a command.
AstPtr Parser::parseKeyword(const Token& name) {
  static constexpr struct {
    std::string_view word;
    AstPtr (Parser::*parse)();
  } kStatements[] = {
      {"if", &Parser::parseIf},         {"while", &Parser::parseWhile},
      {"do", &Parser::parseDoWhile},    {"for", &Parser::parseFor},
      {"switch", &Parser::parseSwitch}, {"return", &Parser::parseReturn},
      {"global", &Parser::parseGlobal}, {"proc", &Parser::parseProcedure},
  };
  for (const auto& statement : kStatements)
    if (name.text == statement.word) return (this->*statement.parse)();
  const std::size_t offset = name.offset;
  AstPtr node;
  if (name.isName("break") || name.isName("continue")) {
    node = make(name.isName("break") ? Kind::kBreak : Kind::kContinue, offset);
    take();
  } else {
    node = parseCallOrCommand();
  }
  return node != nullptr && expectEndOfStatement() ? std::move(node) : nullptr;
}

// `f(1) + 2;` is an expression and `setAttr("a" + ".b") 2;` a command, but they begin alike. A
// statement that reads as an expression to its end is one.
AstPtr Parser::parseCallOrCommand() {
  const Token name = token_;
  if (lexer_.expressionToken(name.end).offset != name.end || name.end >= text_.size() ||
      text_[name.end] != '(') {
    return parseCommand(false);
  }
  AstPtr expression = parseExpression();
  if (expression != nullptr && (token_.isSymbol(";") || token_.kind == TokenKind::kEnd))
    return expression;
  const Failure asExpression = failure_;
  const bool expressionFailed = std::exchange(failed_, false);
  moveTo(name.offset);
  AstPtr command = parseCommand(false);
  const auto place = [](const Failure& failure) { return std::pair(failure.line, failure.column); };
  if (command == nullptr && expressionFailed && place(asExpression) > place(failure_))
    failure_ = asExpression;
  return command;
}

AstPtr Parser::parseBlock() {
  AstPtr block = make(Kind::kBlock, take().offset);
  while (!token_.isSymbol("}")) {
    if (token_.kind == TokenKind::kEnd) return failAtToken("'}'");
    if (!add(*block, parseStatement())) return nullptr;
  }
  take();
  return block;
}

AstPtr Parser::parseCondition() {
  if (!expect("(")) return nullptr;
  AstPtr condition = parseExpression();
  return condition != nullptr && expect(")") ? std::move(condition) : nullptr;
}

AstPtr Parser::parseIf() {
  AstPtr node = make(Kind::kIf, take().offset);
  if (!add(*node, parseCondition()) || !add(*node, parseStatement())) return nullptr;
  if (token_.isName("else")) {
    take();
    if (!add(*node, parseStatement())) return nullptr;
  }
  return node;
}

AstPtr Parser::parseWhile() {
  AstPtr node = make(Kind::kWhile, take().offset);
  const bool complete = add(*node, parseCondition()) && add(*node, parseStatement());
  return complete ? std::move(node) : nullptr;
}

AstPtr Parser::parseDoWhile() {
  const std::size_t offset = take().offset;
  AstPtr body = parseStatement();
  if (body == nullptr) return nullptr;
  if (!token_.isName("while")) return failAtToken("'while'");
  take();
  AstPtr condition = parseCondition();
  if (condition == nullptr || !expectEndOfStatement()) return nullptr;
  return make(Kind::kDoWhile, offset, std::move(condition), std::move(body));
}

AstPtr Parser::parseFor() {
  const std::size_t offset = take().offset;
  if (!expect("(")) return nullptr;
  if (token_.kind == TokenKind::kName &&
      lexer_.expressionToken(token_.end).kind == TokenKind::kVariable) {
    const Token variable = lexer_.expressionToken(token_.end);
    if (lexer_.expressionToken(variable.end).isName("in")) take();
  }
  if (token_.kind == TokenKind::kVariable && lexer_.expressionToken(token_.end).isName("in"))
    return parseForIn(offset);
  AstPtr node = make(Kind::kFor, offset);
  if (!add(*node, parseForPart(";"))) return nullptr;
  if (token_.isSymbol(";")) {
    take();
    node->children.push_back(nullptr);
  } else if (!add(*node, parseExpression()) || !expect(";")) {
    return nullptr;
  }
  const bool complete = add(*node, parseForPart(")")) && add(*node, parseStatement());
  return complete ? std::move(node) : nullptr;
}

// A list of expressions or declarations, up to and including `end`.
AstPtr Parser::parseForPart(std::string_view end) {
  AstPtr part = make(Kind::kSequence, token_.offset);
  while (!accept(end)) {
    AstPtr child = atDeclaration() ? parseDeclaration(false) : parseExpression();
    if (!add(*part, std::move(child)) || (!token_.isSymbol(end) && !expect(","))) return nullptr;
  }
  return part;
}

AstPtr Parser::parseForIn(std::size_t offset) {
  AstPtr node = make(Kind::kForIn, offset);
  node->text = std::string(take().text);
  take();
  if (!add(*node, parseExpression()) || !expect(")") || !add(*node, parseStatement()))
    return nullptr;
  return node;
}

AstPtr Parser::parseSwitch() {
  AstPtr node = make(Kind::kSwitch, take().offset);
  if (!add(*node, parseCondition()) || !expect("{")) return nullptr;
  while (!accept("}")) {
    const bool label = token_.isName("case") || token_.isName("default");
    if (!add(*node, label ? parseCase() : parseStatement())) return nullptr;
  }
  return node;
}

AstPtr Parser::parseCase() {
  const Token label = take();
  AstPtr node = make(Kind::kCase, label.offset);
  if (label.isName("case") && !add(*node, parseChoice())) return nullptr;
  return expect(":") ? std::move(node) : nullptr;
}

AstPtr Parser::parseReturn() {
  AstPtr node = make(Kind::kReturn, take().offset);
  const bool empty = token_.isSymbol(";") || token_.kind == TokenKind::kEnd;
  if (!empty && !add(*node, parseExpression())) return nullptr;
  return expectEndOfStatement() ? std::move(node) : nullptr;
}

AstPtr Parser::parseGlobal() {
  take();
  if (token_.isName("proc")) return parseProcedure();
  if (!atDeclaration()) return failAtToken("'proc' or a type");
  AstPtr declaration = parseDeclaration(true);
  return declaration != nullptr && expectEndOfStatement() ? std::move(declaration) : nullptr;
}

bool Parser::atDeclaration() const {
  const bool type = token_.isName("int") || token_.isName("float") || token_.isName("string") ||
                    token_.isName("vector") || token_.isName("matrix");
  return type && lexer_.expressionToken(token_.end).kind == TokenKind::kVariable;
}

// A type's name, with the brackets that a procedure's result type may have.
bool Parser::takeType(Value::Type& type) {
  type = token_.kind == TokenKind::kName ? namedType(token_.text) : Value::Type::kNone;
  if (type == Value::Type::kNone) {
    failAtToken("a type");
    return false;
  }
  take();
  if (accept("[")) {
    type = arrayType(type);
    return expect("]");
  }
  return true;
}

AstPtr Parser::parseDeclaration(bool isGlobal) {
  Value::Type type = Value::Type::kNone;
  AstPtr list = make(Kind::kSequence, token_.offset);
  if (!takeType(type)) return nullptr;
  do {
    if (!add(*list, parseDeclarator(type, isGlobal))) return nullptr;
  } while (token_.isSymbol(",") &&
           lexer_.expressionToken(token_.end).kind == TokenKind::kVariable && accept(","));
  return list;
}

AstPtr Parser::parseDeclarator(Value::Type type, bool isGlobal) {
  if (token_.kind != TokenKind::kVariable) return failAtToken("a variable");
  AstPtr node = make(Kind::kDeclare, token_.offset);
  node->text = std::string(take().text);
  node->type = type;
  node->isGlobal = isGlobal;
  if (type == Value::Type::kMatrix && token_.isSymbol("[")) {
    if (!parseDimensions(*node)) return nullptr;
  } else if (accept("[")) {
    node->type = arrayType(type);
    // The language takes a size as a hint only: the array grows anyway.
    if (!token_.isSymbol("]") && parseExpression() == nullptr) return nullptr;
    if (!expect("]")) return nullptr;
  }
  if (accept("=") && !add(*node, parseExpression())) return nullptr;
  return node;
}

// "[3][4]" behind a matrix's name.
bool Parser::parseDimensions(AstNode& declaration) {
  Value::Ints sizes;
  for (int i = 0; i < 2; ++i) {
    if (!expect("[")) return false;
    const auto size =
        token_.kind == Token::Kind::kNumber ? parseInteger(token_.text) : std::nullopt;
    if (!size || *size < 1 || *size > static_cast<int>(kMaxMatrixSize)) {
      failAtToken("a size of the matrix");
      return false;
    }
    take();
    sizes.push_back(*size);
    if (!expect("]")) return false;
  }
  if (static_cast<std::size_t>(sizes[0]) * static_cast<std::size_t>(sizes[1]) > kMaxMatrixSize) {
    fail(declaration.offset, "the matrix is too large");
    return false;
  }
  declaration.literal = Value(std::move(sizes));
  return true;
}

AstPtr Parser::parseProcedure() {
  AstPtr node = make(Kind::kProcedure, take().offset);
  const bool hasType =
      token_.kind == TokenKind::kName && !lexer_.expressionToken(token_.end).isSymbol("(");
  if (hasType && !takeType(node->type)) return nullptr;
  if (token_.kind != TokenKind::kName) return failAtToken("the procedure's name");
  node->text = std::string(take().text);
  if (!expect("(")) return nullptr;
  while (!accept(")"))
    if (!add(*node, parseParameter()) || (!token_.isSymbol(")") && !expect(","))) return nullptr;
  if (!token_.isSymbol("{")) return failAtToken("'{'");
  return add(*node, parseBlock()) ? std::move(node) : nullptr;
}

AstPtr Parser::parseParameter() {
  Value::Type type = Value::Type::kNone;
  return takeType(type) ? parseDeclarator(type, false) : nullptr;
}

}  // namespace host::mel
