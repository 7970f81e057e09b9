#ifndef MORVANE_HOST_MEL_LEXER_H_
#define MORVANE_HOST_MEL_LEXER_H_

#include <string>
#include <string_view>

namespace host::mel {

struct Token {
  enum class Kind { kEnd, kNumber, kString, kVariable, kName, kSymbol, kBad };
  Kind kind = Kind::kEnd;
  std::size_t offset = 0;
  std::size_t end = 0;  // offset behind the token
  std::string_view
      text;  // as written; of a string what stands between the quotes, of a variable without '$'

  bool isSymbol(std::string_view symbol) const { return kind == Kind::kSymbol && text == symbol; }
  bool isName(std::string_view name) const { return kind == Kind::kName && text == name; }
};

// Cuts text into tokens. What a character means depends on where it stands: among the arguments of
// a command
// `|a|b.f[0:3]` is one word, in an expression it is not, so the parser says which of the two it
// expects.
class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  // The first token at or behind `offset`, read as part of an expression. kBad: text with which no
  // token begins, or a literal without an end.
  Token expressionToken(std::size_t offset) const;

  // The same, read as an argument of a command: an unquoted run of characters is one kName. ";",
  // brackets of expressions, back quotes, "$" and quotes are as in an expression.
  Token wordToken(std::size_t offset) const;

 private:
  std::size_t skipBlank(std::size_t offset) const;
  Token make(Token::Kind kind, std::size_t begin, std::size_t end) const;
  Token stringToken(std::size_t offset) const;
  Token numberToken(std::size_t offset) const;
  Token variableToken(std::size_t offset) const;
  Token symbolToken(std::size_t offset) const;
  std::size_t nameEnd(std::size_t offset) const;

  std::string_view text_;
};

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_LEXER_H_
