#include "host/evaluation/Expression.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "host/mel/Command.h"
#include "host/mel/FunctionArguments.h"
#include "host/mel/Interpreter.h"
#include "host/mel/Lexer.h"
#include "host/text/Numbers.h"

namespace host {
namespace {

using mel::Token;

constexpr int kMostIndex = 100000;
// Limits of an expression: enough for loops over a scene's values, and a moment at most.
constexpr mel::Limits kLimits = {200'000, std::size_t{1} << 20, std::size_t{1} << 16};

constexpr std::string_view kKeywords[] = {
    "break", "case",   "continue", "default", "do",     "else",  "false",
    "float", "for",    "if",       "in",      "int",    "no",    "off",
    "on",    "string", "switch",   "true",    "vector", "while", "yes"};

// Random numbers would differ from the host's, so an expression with them is not evaluated.
bool isMathematical(std::string_view name) {
  const mel::FunctionTable functions = mel::mathFunctions();
  return name != "rand" && name != "seed" &&
         std::any_of(functions.first, functions.end,
                     [name](const mel::FunctionSpec& each) { return each.name == name; });
}

bool isKeyword(std::string_view name) {
  return std::find(std::begin(kKeywords), std::end(kKeywords), name) != std::end(kKeywords);
}

std::string inputName(int index) {
  return "$expressionInput" + std::to_string(index);
}
std::string outputName(int index) {
  return "$expressionOutput" + std::to_string(index);
}
constexpr char kTime[] = "$expressionTime";
constexpr char kFrame[] = "$expressionFrame";

// An expression's text with variables in place of plugs.
class Translation {
 public:
  explicit Translation(std::string_view text) : text_(text), lexer_(text) {}

  // Gives what is wrong.
  std::string run() {
    std::size_t at = 0;
    for (;;) {
      const Token token = lexer_.expressionToken(at);
      result_ += text_.substr(at, token.offset - at);
      if (token.kind == Token::Kind::kEnd) return "";
      std::string problem;
      at = take(token, problem);
      if (!problem.empty()) return problem;
    }
  }

  const std::string& result() const { return result_; }
  const std::set<int>& inputs() const { return inputs_; }
  const std::set<int>& outputs() const { return outputs_; }

 private:
  // Gives where the next token is looked for.
  std::size_t take(const Token& token, std::string& problem) {
    if (token.kind == Token::Kind::kBad || token.isSymbol("`")) {
      problem = "its expression cannot be read";
      return token.end;
    }
    if (token.isSymbol(".")) {
      const std::size_t end = takePlug(token.end);
      if (end > 0) return end;
    }
    if (token.kind == Token::Kind::kName)
      takeName(token.text, problem);
    else
      result_ += text_.substr(token.offset, token.end - token.offset);
    return token.end;
  }

  // "I[3]" or "O[0]" behind a dot; 0 for anything else.
  std::size_t takePlug(std::size_t at) {
    const Token name = lexer_.expressionToken(at);
    if (name.offset != at || (!name.isName("I") && !name.isName("O"))) return 0;
    const Token bracket = lexer_.expressionToken(name.end);
    const Token number = lexer_.expressionToken(bracket.end);
    const Token end = lexer_.expressionToken(number.end);
    const auto index = mel::parseInteger(std::string(number.text));
    if (!bracket.isSymbol("[") || !end.isSymbol("]") || !index || *index < 0 || *index > kMostIndex)
      return 0;
    (name.isName("I") ? inputs_ : outputs_).insert(*index);
    result_ += name.isName("I") ? inputName(*index) : outputName(*index);
    return end.end;
  }

  void takeName(std::string_view name, std::string& problem) {
    if (name == "time")
      result_ += kTime;
    else if (name == "frame")
      result_ += kFrame;
    else if (isKeyword(name) || isMathematical(name))
      result_ += name;
    else
      problem = "its expression uses " + std::string(name) + ", which is not evaluated";
  }

  std::string_view text_;
  mel::Lexer lexer_;
  std::string result_;
  std::set<int> inputs_;
  std::set<int> outputs_;
};

std::string declared(const std::string& name, double value) {
  return "float " + name + " = " + mel::formatNumber(value) + ";\n";
}

}  // namespace

std::string evaluateExpression(GraphNode& node, const std::string& text) {
  Translation translation(text);
  std::string problem = translation.run();
  if (!problem.empty()) return problem;
  const double frame = node.isConnected("time") ? node.number("time") : node.time();
  std::string program = declared(kFrame, frame) + declared(kTime, frame / node.framesPerSecond());
  for (const int i : translation.inputs()) {
    const double input = node.number("input[" + std::to_string(i) + "]");
    if (!std::isfinite(input)) return "one of its inputs is not a finite number";
    program += declared(inputName(i), input);
  }
  if (!node.isReady() || translation.outputs().empty()) return "";
  std::string results;
  for (const int i : translation.outputs()) {
    program += declared(outputName(i), 0.0);
    results += (results.empty() ? "" : ", ") + outputName(i);
  }
  program += translation.result() + "\n;float $expressionResults[] = {" + results +
             "};\n$expressionResults;";
  mel::CommandTable noCommands;
  mel::Interpreter interpreter(noCommands);
  interpreter.reset(kLimits);
  const mel::Outcome outcome = interpreter.execute(program, "");
  const auto* numbers = outcome.ok ? outcome.value.floats() : nullptr;
  if (!numbers || numbers->size() != translation.outputs().size())
    return "its expression fails: " + outcome.failure.text;
  auto number = numbers->begin();
  for (const int i : translation.outputs())
    node.give("output[" + std::to_string(i) + "]", *number++);
  return "";
}

}  // namespace host
