#include "host/mel/Evaluator.h"

#include "host/mel/Parser.h"
#include "host/text/Text.h"

namespace host::mel {
namespace {

using Kind = AstNode::Kind;

}  // namespace

Evaluator::Evaluator(Interpreter& interpreter, std::shared_ptr<const Script> script)
    : interpreter_(interpreter), state_(*interpreter.state_), script_(std::move(script)) {}

Outcome Evaluator::run() {
  Outcome outcome;
  const Flow flow = execute(*script_->root);
  outcome.ok = flow != Flow::kFailed;
  outcome.value = std::move(flow == Flow::kReturn ? frame_.returned : last_);
  outcome.failure = std::move(failure_);
  return outcome;
}

bool Evaluator::fail(const AstNode& node, const std::string& text) {
  const Position position = positionAt(script_->text, node.offset);
  failure_ = Failure{script_->origin, position.line, position.column, text};
  return false;
}

std::string Evaluator::where(const AstNode& node) const {
  const Position position = positionAt(script_->text, node.offset);
  return Failure{script_->origin, position.line, position.column, ""}.describe();
}

Variable Evaluator::find(const std::string& name) const {
  for (auto entry = frame_.variables.rbegin(); entry != frame_.variables.rend(); ++entry)
    if (entry->first == name) return entry->second;
  if (!frame_.isTop) return nullptr;
  const auto global = state_.globals.find(name);
  return global == state_.globals.end() ? nullptr : global->second;
}

Variable Evaluator::define(const std::string& name, Value::Type type, bool isGlobal) {
  const bool atTop = frame_.isTop && frame_.blocks == 0;
  if (isGlobal || atTop) {
    Variable& variable = state_.globals[name];
    if (variable == nullptr || (variable->type() != type && !isGlobal))
      variable = std::make_shared<Value>(Value::initial(type));
    if (!atTop) frame_.variables.emplace_back(name, variable);
    return variable;
  }
  frame_.variables.emplace_back(name, std::make_shared<Value>(Value::initial(type)));
  return frame_.variables.back().second;
}

bool Evaluator::mayEnter(const AstNode& node) {
  if (state_.depth > kMaxEvaluationDepth) return fail(node, "too many calls inside each other");
  return ++state_.steps <= state_.limits.steps || fail(node, "the script takes too many steps");
}

bool Evaluator::fitsLimits(const AstNode& node, const Value& value) {
  if (value.textSize() > state_.limits.textSize) return fail(node, "a text becomes too long");
  return value.arraySize() <= state_.limits.arraySize || fail(node, "an array becomes too large");
}

Evaluator::Flow Evaluator::execute(const AstNode& node) {
  ++state_.depth;
  const Flow flow = mayEnter(node) ? executeInside(node) : Flow::kFailed;
  --state_.depth;
  return flow;
}

Evaluator::Flow Evaluator::executeInside(const AstNode& node) {
  switch (node.kind) {
    case Kind::kSequence:
      return executeList(node, 0);
    case Kind::kBlock:
      return executeBlock(node);
    case Kind::kIf:
      return executeIf(node);
    case Kind::kWhile:
    case Kind::kDoWhile:
      return executeWhile(node);
    case Kind::kFor:
      return executeFor(node);
    case Kind::kForIn:
      return executeForIn(node);
    case Kind::kSwitch:
      return executeSwitch(node);
    case Kind::kBreak:
      return Flow::kBreak;
    case Kind::kContinue:
      return Flow::kContinue;
    case Kind::kReturn:
      return executeReturn(node);
    case Kind::kDeclare:
      return declare(node) ? Flow::kNext : Flow::kFailed;
    case Kind::kCase:
      return Flow::kNext;
    case Kind::kProcedure:
      if (interpreter_.commands().find(node.text) != nullptr ||
          findFunction(node.text) != nullptr) {
        fail(node, "'" + node.text + "' is a command; a procedure cannot replace it");
        return Flow::kFailed;
      }
      state_.procedures[node.text] = Procedure{script_, &node};
      return Flow::kNext;
    default:
      return evaluateInside(node, last_) ? Flow::kNext : Flow::kFailed;
  }
}

Evaluator::Flow Evaluator::executeList(const AstNode& node, std::size_t first) {
  for (std::size_t i = first; i < node.children.size(); ++i) {
    const Flow flow = execute(*node.children[i]);
    if (flow != Flow::kNext) return flow;
  }
  return Flow::kNext;
}

Evaluator::Flow Evaluator::executeBlock(const AstNode& node) {
  const std::size_t outside = frame_.variables.size();
  ++frame_.blocks;
  const Flow flow = executeList(node, 0);
  --frame_.blocks;
  frame_.variables.resize(outside);
  return flow;
}

bool Evaluator::condition(const AstNode& node, bool& truth) {
  Value value;
  if (!evaluate(node, value)) return false;
  truth = value.toTruth();
  return true;
}

Evaluator::Flow Evaluator::executeIf(const AstNode& node) {
  bool truth = false;
  if (!condition(*node.children[0], truth)) return Flow::kFailed;
  if (truth) return execute(*node.children[1]);
  return node.children.size() > 2 ? execute(*node.children[2]) : Flow::kNext;
}

Evaluator::Flow Evaluator::executeWhile(const AstNode& node) {
  bool again = node.kind == Kind::kDoWhile;
  while (true) {
    if (!again && !condition(*node.children[0], again)) return Flow::kFailed;
    if (!again) return Flow::kNext;
    const Flow flow = execute(*node.children[1]);
    if (flow == Flow::kBreak) return Flow::kNext;
    if (flow == Flow::kReturn || flow == Flow::kFailed) return flow;
    again = false;
  }
}

Evaluator::Flow Evaluator::executeFor(const AstNode& node) {
  Flow flow = execute(*node.children[0]);
  bool truth = true;
  while (flow == Flow::kNext) {
    if (node.children[1] != nullptr && !condition(*node.children[1], truth)) return Flow::kFailed;
    if (!truth) return Flow::kNext;
    flow = execute(*node.children[3]);
    if (flow == Flow::kBreak) return Flow::kNext;
    if (flow == Flow::kNext || flow == Flow::kContinue) flow = execute(*node.children[2]);
  }
  return flow;
}

Evaluator::Flow Evaluator::executeForIn(const AstNode& node) {
  Value array;
  if (!evaluate(*node.children[0], array)) return Flow::kFailed;
  const std::size_t outside = frame_.variables.size();
  ++frame_.blocks;
  const Variable variable = define(node.text, elementType(array.type()), false);
  Flow flow = Flow::kNext;
  const std::size_t count = array.isArray() ? array.arraySize() : 0;
  for (std::size_t i = 0; i < count && (flow == Flow::kNext || flow == Flow::kContinue); ++i) {
    *variable = array.element(i);
    flow = execute(*node.children[1]);
  }
  --frame_.blocks;
  frame_.variables.resize(outside);
  return flow == Flow::kBreak || flow == Flow::kContinue ? Flow::kNext : flow;
}

Evaluator::Flow Evaluator::executeSwitch(const AstNode& node) {
  Value value;
  if (!evaluate(*node.children[0], value)) return Flow::kFailed;
  std::size_t start = node.children.size();
  for (std::size_t i = 1; i < node.children.size(); ++i) {
    const AstNode& child = *node.children[i];
    if (child.kind != Kind::kCase) continue;
    if (child.children.empty()) {
      start = i;
      continue;
    }
    Value label;
    if (!evaluate(*child.children[0], label)) return Flow::kFailed;
    if (label.toString() == value.toString()) {
      start = i;
      break;
    }
  }
  const Flow flow = executeList(node, start);
  return flow == Flow::kBreak ? Flow::kNext : flow;
}

Evaluator::Flow Evaluator::executeReturn(const AstNode& node) {
  Value value;
  if (!node.children.empty() && !evaluate(*node.children[0], value)) return Flow::kFailed;
  frame_.returned = std::move(value);
  return Flow::kReturn;
}

namespace {

// A variable of a matrix has a size; any other begins as its type does.
Value initialOf(const AstNode& declaration) {
  const Value::Ints* sizes = declaration.literal.ints();
  if (sizes == nullptr) return Value::initial(declaration.type);
  const auto rows = static_cast<std::size_t>((*sizes)[0]);
  const auto columns = static_cast<std::size_t>((*sizes)[1]);
  return Value(Matrix{rows, columns, std::vector<double>(rows * columns, 0.0)});
}

bool hasSizeOf(const Value& value, const Value& wanted) {
  return wanted.matrix() == nullptr || wanted.matrix()->rows == 0 ||
         (value.matrix()->rows == wanted.matrix()->rows &&
          value.matrix()->columns == wanted.matrix()->columns);
}

}  // namespace

bool Evaluator::declare(const AstNode& node) {
  Value value;
  if (!node.children.empty() && !evaluate(*node.children[0], value)) return false;
  const Variable variable = define(node.text, node.type, node.isGlobal);
  if (variable->type() != node.type) {
    return fail(node,
                "$" + node.text + " is a global variable of type " + typeName(variable->type()));
  }
  if (node.children.empty()) {
    // At the top level a second declaration starts afresh; in a procedure `global` only makes a
    // variable visible.
    if (!node.isGlobal || (variable->matrix() != nullptr && variable->matrix()->rows == 0))
      *variable = initialOf(node);
    return true;
  }
  const auto converted = value.convertedTo(node.type);
  if (!converted) {
    return fail(node, std::string("cannot convert ") + typeName(value.type()) + " to " +
                          typeName(node.type));
  }
  if (!hasSizeOf(*converted, initialOf(node))) return fail(node, "the matrix has another size");
  *variable = *converted;
  return true;
}

}  // namespace host::mel
