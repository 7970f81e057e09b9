#include "host/mel/Lexer.h"

#include <algorithm>

#include "host/text/Blank.h"
#include "host/text/Text.h"

namespace host::mel {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
bool isNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool isNameCharacter(char c) {
  return isNameStart(c) || isDigit(c);
}

// What ends an unquoted word of a command.
bool endsWord(char c) {
  return isBlank(c) || std::string_view(";\"`(){}$").find(c) != std::string_view::npos;
}

constexpr std::string_view kLongSymbols[] = {
    "++", "--", "+=", "-=", "*=", "/=", "%=", "^=", "==", "!=", "<=", ">=", "<<", ">>", "&&", "||"};

}  // namespace

std::size_t Lexer::skipBlank(std::size_t at) const {
  while (at < text_.size()) {
    if (isBlank(text_[at])) {
      ++at;
    } else if (text_.compare(at, 2, "//") == 0) {
      at = std::min(text_.find('\n', at), text_.size());
    } else if (text_.compare(at, 2, "/*") == 0) {
      const std::size_t close = text_.find("*/", at + 2);
      at = close == std::string_view::npos ? text_.size() : close + 2;
    } else {
      break;
    }
  }
  return at;
}

Token Lexer::make(Token::Kind kind, std::size_t begin, std::size_t end) const {
  return Token{kind, begin, end, text_.substr(begin, end - begin)};
}

Token Lexer::stringToken(std::size_t at) const {
  const std::size_t close = findClosingQuote(text_, at);
  if (close == std::string_view::npos) return make(Token::Kind::kBad, at, text_.size());
  return Token{Token::Kind::kString, at, close + 1, text_.substr(at + 1, close - at - 1)};
}

Token Lexer::numberToken(std::size_t at) const {
  std::size_t end = at;
  const auto digits = [&] {
    while (end < text_.size() && isDigit(text_[end])) ++end;
  };
  const bool isHex = text_[at] == '0' && at + 2 < text_.size() &&
                     (text_[at + 1] == 'x' || text_[at + 1] == 'X') && isHexDigit(text_[at + 2]);
  if (isHex) {
    end = at + 2;
    while (end < text_.size() && isHexDigit(text_[end])) ++end;
    return make(Token::Kind::kNumber, at, end);
  }
  digits();
  if (end < text_.size() && text_[end] == '.') {
    ++end;
    digits();
  }
  if (end < text_.size() && (text_[end] == 'e' || text_[end] == 'E')) {
    std::size_t exponent = end + 1;
    if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) ++exponent;
    if (exponent < text_.size() && isDigit(text_[exponent])) {
      end = exponent;
      digits();
    }
  }
  return make(Token::Kind::kNumber, at, end);
}

std::size_t Lexer::nameEnd(std::size_t at) const {
  while (at < text_.size() && isNameCharacter(text_[at])) ++at;
  return at;
}

Token Lexer::variableToken(std::size_t at) const {
  const std::size_t end = nameEnd(at + 1);
  if (end == at + 1) return make(Token::Kind::kBad, at, end);
  return Token{Token::Kind::kVariable, at, end, text_.substr(at + 1, end - at - 1)};
}

Token Lexer::symbolToken(std::size_t at) const {
  for (const std::string_view symbol : kLongSymbols)
    if (text_.compare(at, 2, symbol) == 0) return make(Token::Kind::kSymbol, at, at + 2);
  const bool known =
      std::string_view(";,(){}[]`=+-*/%^<>!?:.|@").find(text_[at]) != std::string_view::npos;
  return make(known ? Token::Kind::kSymbol : Token::Kind::kBad, at, at + 1);
}

Token Lexer::expressionToken(std::size_t offset) const {
  const std::size_t at = skipBlank(offset);
  if (at >= text_.size()) return make(Token::Kind::kEnd, text_.size(), text_.size());
  const char c = text_[at];
  if (c == '"') return stringToken(at);
  if (c == '$') return variableToken(at);
  if (isDigit(c) || (c == '.' && at + 1 < text_.size() && isDigit(text_[at + 1])))
    return numberToken(at);
  if (isNameStart(c)) return make(Token::Kind::kName, at, nameEnd(at));
  return symbolToken(at);
}

Token Lexer::wordToken(std::size_t offset) const {
  const std::size_t at = skipBlank(offset);
  if (at >= text_.size()) return make(Token::Kind::kEnd, text_.size(), text_.size());
  if (endsWord(text_[at])) return expressionToken(at);
  std::size_t end = at;
  while (end < text_.size() && !endsWord(text_[end])) ++end;
  return make(Token::Kind::kName, at, end);
}

}  // namespace host::mel
