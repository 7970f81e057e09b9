#ifndef MORVANE_HOST_MEL_PARSERIMPL_H_
#define MORVANE_HOST_MEL_PARSERIMPL_H_

#include <string>
#include <string_view>
#include <utility>

#include "host/mel/Ast.h"
#include "host/mel/Interpreter.h"
#include "host/mel/Lexer.h"

namespace host::mel {

// Recursive descent. Every parse function gives null once something failed; the first failure is
// kept.
class Parser {
 public:
  Parser(std::string_view text, std::string origin)
      : text_(text), origin_(std::move(origin)), lexer_(text), token_(lexer_.expressionToken(0)) {}

  NodePtr parseProgram();
  const Failure& failure() const { return failure_; }

 private:
  // Counts one level of nesting for as long as it lives; false when there are too many.
  class Nest {
   public:
    explicit Nest(Parser& parser);
    ~Nest() { --parser_.nesting_; }
    explicit operator bool() const { return ok_; }

   private:
    Parser& parser_;
    bool ok_;
  };

  // Tokens. `token_` is the next one, not yet taken, as an expression sees it.
  Token take();
  void moveTo(std::size_t offset) { token_ = lexer_.expressionToken(offset); }
  bool accept(std::string_view symbol);
  bool expect(std::string_view symbol);
  bool expectEndOfStatement();

  // Nodes.
  NodePtr make(Node::Kind kind, std::size_t offset) const;
  NodePtr make(Node::Kind kind, std::size_t offset, NodePtr first, NodePtr second = nullptr);
  bool add(Node& parent, NodePtr child);  // false when the child is null or the tree too deep
  NodePtr fail(std::size_t offset, const std::string& text);
  NodePtr failAtToken(const std::string& expected);

  // Statements (Parser.cpp).
  NodePtr parseStatement();
  NodePtr parseKeyword(const Token& name);
  NodePtr parseBlock();
  NodePtr parseIf();
  NodePtr parseWhile();
  NodePtr parseDoWhile();
  NodePtr parseFor();
  NodePtr parseForIn(std::size_t offset);
  NodePtr parseForPart(std::string_view end);
  NodePtr parseSwitch();
  NodePtr parseCase();
  NodePtr parseReturn();
  NodePtr parseGlobal();
  NodePtr parseDeclaration(bool isGlobal);
  NodePtr parseDeclarator(Value::Type type, bool isGlobal);
  NodePtr parseProcedure();
  NodePtr parseParameter();
  NodePtr parseCondition();
  bool atDeclaration() const;
  bool takeType(Value::Type& type);

  // Expressions (ParserExpressions.cpp).
  NodePtr parseExpression();
  NodePtr parseAssignment(NodePtr target);
  NodePtr parseChoice();
  NodePtr parseBinary(int lowestPrecedence);
  NodePtr parseUnary();
  NodePtr parseSigned();
  NodePtr parsePostfix();
  NodePtr parseElements(NodePtr array);
  NodePtr parsePrimary();
  NodePtr parseParenthesised();
  NodePtr parseCast();
  bool atCast() const;
  NodePtr parseName();
  NodePtr parseArrayLiteral();
  NodePtr parseBackQuoted();
  NodePtr parseVariable();
  NodePtr parseNumber();
  NodePtr parseString();

  // Commands (ParserExpressions.cpp).
  NodePtr parseCommand(bool backQuoted);
  NodePtr parseArgument(const Token& word, bool first, Node& command);
  bool parseArguments(Node& parent, std::string_view close);

  std::string_view text_;
  std::string origin_;
  Lexer lexer_;
  Token token_;
  int nesting_ = 0;
  bool failed_ = false;
  Failure failure_;
};

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_PARSERIMPL_H_
