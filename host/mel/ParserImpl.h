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

  AstPtr parseProgram();
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
  AstPtr make(AstNode::Kind kind, std::size_t offset) const;
  AstPtr make(AstNode::Kind kind, std::size_t offset, AstPtr first, AstPtr second = nullptr);
  bool add(AstNode& parent, AstPtr child);  // false when the child is null or the tree too deep
  AstPtr fail(std::size_t offset, const std::string& text);
  AstPtr failAtToken(const std::string& expected);

  // Statements (Parser.cpp).
  AstPtr parseStatement();
  AstPtr parseKeyword(const Token& name);
  AstPtr parseCallOrCommand();
  AstPtr parseBlock();
  AstPtr parseIf();
  AstPtr parseWhile();
  AstPtr parseDoWhile();
  AstPtr parseFor();
  AstPtr parseForIn(std::size_t offset);
  AstPtr parseForPart(std::string_view end);
  AstPtr parseSwitch();
  AstPtr parseCase();
  AstPtr parseReturn();
  AstPtr parseGlobal();
  AstPtr parseDeclaration(bool isGlobal);
  AstPtr parseDeclarator(Value::Type type, bool isGlobal);
  bool parseDimensions(AstNode& declaration);
  AstPtr parseProcedure();
  AstPtr parseParameter();
  AstPtr parseCondition();
  bool atDeclaration() const;
  bool takeType(Value::Type& type);

  // Expressions (ParserExpressions.cpp).
  AstPtr parseExpression();
  AstPtr parseAssignment(AstPtr target);
  AstPtr parseChoice();
  AstPtr parseBinary(int lowestPrecedence);
  AstPtr parseUnary();
  AstPtr parseSigned();
  AstPtr parsePostfix();
  AstPtr parseParts(AstPtr whole);
  bool atComponent() const;
  AstPtr parseVector();
  AstPtr parsePrimary();
  AstPtr parseParenthesised();
  AstPtr parseCast();
  bool atCast() const;
  AstPtr parseName();
  AstPtr parseArrayLiteral();
  AstPtr parseBackQuoted();
  AstPtr parseVariable();
  AstPtr parseNumber();
  AstPtr parseString();

  // Commands (ParserExpressions.cpp).
  AstPtr parseCommand(bool backQuoted);
  AstPtr parseArgument(const Token& word, bool first, AstNode& command);
  bool parseArguments(AstNode& parent, std::string_view close);

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
