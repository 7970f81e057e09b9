#include "host/mel/Evaluator.h"
#include "host/mel/Parser.h"
#include "host/text/Messages.h"

namespace host::mel {
namespace {

using Kind = AstNode::Kind;

bool isArrayVariable(const AstNode& node, const Variable& variable) {
  return node.kind == Kind::kVariable && variable != nullptr && variable->isArray();
}

}  // namespace

bool Evaluator::evaluateArguments(const AstNode& node, std::vector<Argument>& arguments) {
  for (const AstPtr& child : node.children) {
    Argument argument;
    const Variable variable = child->kind == Kind::kVariable ? find(child->text) : nullptr;
    if (isArrayVariable(*child, variable))
      argument.variable = variable;
    else if (!evaluate(*child, argument.value))
      return false;
    argument.isWord = child->kind == Kind::kWord;
    arguments.push_back(std::move(argument));
  }
  return true;
}

bool Evaluator::evaluateCommand(const AstNode& node, Value& value) {
  if (node.text == "catch" || node.text == "catchQuiet") return evaluateCatch(node, value);
  std::vector<Argument> arguments;
  if (!evaluateArguments(node, arguments)) return false;
  const auto procedure = state_.procedures.find(node.text);
  if (procedure != state_.procedures.end()) {
    const Procedure called = procedure->second;
    return callProcedure(node, called, arguments, value);
  }
  const FunctionSpec* function = findFunction(node.text);
  if (function == nullptr) return callCommand(node, arguments, value);
  if (arguments.size() < function->fewest || arguments.size() > function->most)
    return fail(node, node.text + ": wrong number of arguments");
  CommandResult result = function->function({interpreter_, arguments});
  value = std::move(result.value);
  if (result.inner) failure_ = *result.inner;
  return result.ok || (!result.inner && fail(node, node.text + ": " + result.error));
}

bool Evaluator::bindParameters(const AstNode& node, const AstNode& procedure,
                               std::vector<Argument>& arguments, Frame& frame) {
  const std::size_t count = procedure.children.size() - 1;
  if (arguments.size() != count) {
    return fail(node, procedure.text + ": needs " + std::to_string(count) + " arguments, not " +
                          std::to_string(arguments.size()));
  }
  for (std::size_t i = 0; i < count; ++i) {
    const AstNode& parameter = *procedure.children[i];
    Argument& argument = arguments[i];
    // Arrays are passed by reference, all else by value.
    if (argument.variable != nullptr && argument.variable->type() == parameter.type) {
      frame.variables.emplace_back(parameter.text, argument.variable);
      continue;
    }
    const Value& given = argument.variable != nullptr ? *argument.variable : argument.value;
    const auto converted = given.convertedTo(parameter.type);
    if (!converted) {
      return fail(node, procedure.text + ": cannot convert " + typeName(given.type()) + " to " +
                            typeName(parameter.type));
    }
    frame.variables.emplace_back(parameter.text, std::make_shared<Value>(*converted));
  }
  return true;
}

bool Evaluator::callProcedure(const AstNode& node, const Procedure& procedure,
                              std::vector<Argument>& arguments, Value& value) {
  Frame frame;
  frame.isTop = false;
  if (!bindParameters(node, *procedure.node, arguments, frame)) return false;
  std::shared_ptr<const Script> caller = procedure.script;
  std::swap(frame_, frame);
  std::swap(script_, caller);
  const Flow flow = execute(*procedure.node->children.back());
  Value returned = std::move(frame_.returned);
  std::swap(script_, caller);
  std::swap(frame_, frame);
  if (flow == Flow::kFailed) return false;
  value = Value();
  const Value::Type type = procedure.node->type;
  if (type == Value::Type::kNone) return true;
  const auto converted = flow == Flow::kReturn ? returned.convertedTo(type) : Value::initial(type);
  if (!converted) {
    return fail(node, node.text + ": returned " + typeName(returned.type()) + " instead of " +
                          typeName(type));
  }
  value = *converted;
  return true;
}

bool Evaluator::callCommand(const AstNode& node, const std::vector<Argument>& arguments,
                            Value& value) {
  Words words;
  for (const Argument& argument : arguments) {
    const Value& given = argument.variable != nullptr ? *argument.variable : argument.value;
    for (std::string& text : given.toWords())
      words.push_back(Word{std::move(text), !argument.isWord});
  }
  CommandContext context(interpreter_);
  context.folder = state_.callerFolder;
  context.onWarning = [this, &node](const std::string& text) { showWarning(where(node) + text); };
  CommandResult result = runCommand(node.text, words, context);
  value = std::move(result.value);
  if (result.ok) return true;
  if (result.inner) {
    failure_ = *result.inner;
    return false;
  }
  return fail(node, result.error);
}

// 1 when the command failed. Its error is shown, as there is no other trace of it, unless quiet.
bool Evaluator::evaluateCatch(const AstNode& node, Value& value) {
  bool failed = false;
  for (const AstPtr& child : node.children) {
    Value ignored;
    failed = !evaluate(*child, ignored) || failed;
  }
  if (failed && node.text == "catch") showError(failure_.describe());
  failure_ = Failure();
  value = Value::ofTruth(failed);
  return true;
}

}  // namespace host::mel
