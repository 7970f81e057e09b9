#ifndef MORVANE_HOST_MEL_EVALUATOR_H_
#define MORVANE_HOST_MEL_EVALUATOR_H_

#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/mel/Ast.h"
#include "host/mel/Command.h"
#include "host/mel/Functions.h"
#include "host/mel/Interpreter.h"

namespace host::mel {

// The most levels of evaluation, over procedures and over scripts that scripts run. Each takes some
// hundred bytes of stack, or several thousand with sanitizers.
constexpr int kMaxEvaluationDepth = 1500;

struct Procedure {
  std::shared_ptr<const Script> script;
  const AstNode* node = nullptr;
};

// What outlives one run.
struct Interpreter::State {
  State(CommandTable& table, HostState* runs) : commands(table), host(runs) {}

  CommandTable& commands;
  HostState* host;
  std::unordered_map<std::string, Variable> globals;
  std::unordered_map<std::string, Procedure> procedures;
  std::string callerFolder;
  std::vector<std::string> scriptFolders;
  Limits limits;
  std::mt19937_64 random;
  std::uint64_t steps = 0;
  int depth = 0;  // of evaluation, over all runs that are under way
};

// Walks the tree of one script, and of the procedures that it calls.
class Evaluator {
 public:
  Evaluator(Interpreter& interpreter, std::shared_ptr<const Script> script);
  Outcome run();

 private:
  // What a statement did to the order of things.
  enum class Flow { kNext, kBreak, kContinue, kReturn, kFailed };

  // Variables of the procedure that runs, innermost last; at the top level those of blocks only.
  struct Frame {
    std::vector<std::pair<std::string, Variable>> variables;
    bool isTop = true;
    int blocks = 0;
    Value returned;
  };

  // Statements (Evaluator.cpp).
  Flow execute(const AstNode& node);
  Flow executeInside(const AstNode& node);
  Flow executeList(const AstNode& node, std::size_t first);
  Flow executeBlock(const AstNode& node);
  Flow executeIf(const AstNode& node);
  Flow executeWhile(const AstNode& node);
  Flow executeFor(const AstNode& node);
  Flow executeForIn(const AstNode& node);
  Flow executeSwitch(const AstNode& node);
  Flow executeReturn(const AstNode& node);
  bool declare(const AstNode& node);
  bool condition(const AstNode& node, bool& truth);

  // Expressions (EvaluatorExpressions.cpp): false once something failed.
  bool evaluate(const AstNode& node, Value& value);
  bool evaluateInside(const AstNode& node, Value& value);
  bool evaluateVariable(const AstNode& node, Value& value);
  bool evaluateElement(const AstNode& node, Value& value);
  bool evaluateArray(const AstNode& node, Value& value);
  bool evaluateVector(const AstNode& node, Value& value);
  bool evaluateComponent(const AstNode& node, Value& value);
  bool evaluateUnary(const AstNode& node, Value& value);
  bool evaluateBinary(const AstNode& node, Value& value);
  bool evaluateChoice(const AstNode& node, Value& value);
  bool evaluateAssign(const AstNode& node, Value& value);
  bool evaluateStep(const AstNode& node, Value& value);
  bool combine(const AstNode& node, const std::string& symbol, const Value& left,
               const Value& right, Value& value);
  bool evaluateIndex(const AstNode& node, std::size_t& index);
  Variable matrixOf(const AstNode& element) const;
  bool evaluateMatrixIndex(const AstNode& element, const Matrix& matrix, std::size_t& index);
  bool storeInMatrix(const AstNode& target, Value& matrix, const Value& value);
  bool store(const AstNode& target, const Value& value);

  // Calls (EvaluatorCalls.cpp).
  bool evaluateCommand(const AstNode& node, Value& value);
  bool evaluateArguments(const AstNode& node, std::vector<Argument>& arguments);
  bool callProcedure(const AstNode& node, const Procedure& procedure,
                     std::vector<Argument>& arguments, Value& value);
  bool bindParameters(const AstNode& node, const AstNode& procedure,
                      std::vector<Argument>& arguments, Frame& frame);
  bool callCommand(const AstNode& node, const std::vector<Argument>& arguments, Value& value);
  bool evaluateCatch(const AstNode& node, Value& value);

  // Goes one level of evaluation down. False, with the failure, at the last level and after the
  // last step.
  bool mayEnter(const AstNode& node);
  bool fitsLimits(const AstNode& node, const Value& value);

  Variable find(const std::string& name) const;
  Variable define(const std::string& name, Value::Type type, bool isGlobal);
  bool fail(const AstNode& node, const std::string& text);
  std::string where(const AstNode& node) const;

  Interpreter& interpreter_;
  Interpreter::State& state_;
  std::shared_ptr<const Script> script_;
  Frame frame_;
  Value last_;
  Failure failure_;
};

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_EVALUATOR_H_
