#include <cmath>
#include <limits>

#include "host/mel/Evaluator.h"

namespace host::mel {
namespace {

using Kind = AstNode::Kind;

int wrap(long long number) {
  return static_cast<int>(static_cast<unsigned>(number));
}

Value ofNumbers(const std::string& symbol, double left, double right) {
  switch (symbol[0]) {
    case '+':
      return Value(left + right);
    case '-':
      return Value(left - right);
    case '*':
      return Value(left * right);
    case '/':
      return Value(left / right);
    default:
      return Value(std::fmod(left, right));
  }
}

Value ofIntegers(const std::string& symbol, long long left, long long right) {
  switch (symbol[0]) {
    case '+':
      return Value(wrap(left + right));
    case '-':
      return Value(wrap(left - right));
    case '*':
      return Value(wrap(left * right));
    case '/':
      return Value(wrap(left / right));
    default:
      return Value(wrap(left % right));
  }
}

bool isComparison(const std::string& symbol) {
  return symbol == "==" || symbol == "!=" || symbol[0] == '<' || symbol[0] == '>';
}

template <class T>
bool compare(const std::string& symbol, const T& left, const T& right) {
  if (symbol == "==") {
    return left == right;
  }
  if (symbol == "!=") {
    return !(left == right);
  }
  if (symbol == "<") {
    return left < right;
  }
  if (symbol == ">") {
    return right < left;
  }
  return symbol == "<=" ? left <= right : left >= right;
}

}  // namespace

bool Evaluator::evaluate(const AstNode& node, Value& value) {
  // Counts as a statement does; the depth of expressions alone is bounded by the parser.
  ++state_.depth;
  const bool ok = mayEnter(node) && evaluateInside(node, value) && fitsLimits(node, value);
  --state_.depth;
  return ok;
}

bool Evaluator::evaluateInside(const AstNode& node, Value& value) {
  switch (node.kind) {
    case Kind::kLiteral:
      value = node.literal;
      return true;
    case Kind::kWord:
      value = Value(node.text);
      return true;
    case Kind::kVariable:
      return evaluateVariable(node, value);
    case Kind::kElement:
      return evaluateElement(node, value);
    case Kind::kArrayLiteral:
      return evaluateArray(node, value);
    case Kind::kUnary:
      return evaluateUnary(node, value);
    case Kind::kBinary:
      return evaluateBinary(node, value);
    case Kind::kChoice:
      return evaluateChoice(node, value);
    case Kind::kAssign:
      return evaluateAssign(node, value);
    case Kind::kStep:
      return evaluateStep(node, value);
    case Kind::kCommand:
      return evaluateCommand(node, value);
    case Kind::kCast:
      break;
    default:
      return fail(node, "not an expression");
  }
  if (!evaluate(*node.children[0], value)) {
    return false;
  }
  const auto converted = value.convertedTo(node.type);
  if (!converted) {
    return fail(node, std::string("cannot convert ") + typeName(value.type()) + " to " +
                          typeName(node.type));
  }
  value = *converted;
  return true;
}

bool Evaluator::evaluateVariable(const AstNode& node, Value& value) {
  const Variable variable = find(node.text);
  if (variable == nullptr) {
    return fail(node, "$" + node.text + " is an undeclared variable");
  }
  value = *variable;
  return true;
}

bool Evaluator::evaluateIndex(const AstNode& node, std::size_t& index) {
  Value value;
  if (!evaluate(node, value)) {
    return false;
  }
  const int number = value.toInt();
  if (number < 0 || static_cast<std::size_t>(number) >= state_.limits.arraySize) {
    return fail(node, "index " + std::to_string(number) + " is outside any array");
  }
  index = static_cast<std::size_t>(number);
  return true;
}

// An element past the end reads as the initial value, as in the host.
bool Evaluator::evaluateElement(const AstNode& node, Value& value) {
  std::size_t index = 0;
  if (!evaluateIndex(*node.children[1], index)) {
    return false;
  }
  Value held;
  const Value* array = &held;
  const AstNode& source = *node.children[0];
  // A variable's element is read in place: copying the array would make loops over it quadratic.
  const Variable variable = source.kind == Kind::kVariable ? find(source.text) : nullptr;
  if (variable != nullptr) {
    array = variable.get();
  } else if (!evaluate(source, held)) {
    return false;
  }
  if (!array->isArray()) {
    return fail(node, std::string(typeName(array->type())) + " has no elements");
  }
  value = index < array->arraySize() ? array->element(index)
                                     : Value::initial(elementType(array->type()));
  return true;
}

// The elements' common type: text if any is one, else float if any is one.
bool Evaluator::evaluateArray(const AstNode& node, Value& value) {
  std::vector<Value> elements(node.children.size());
  Value::Type type = Value::Type::kInt;
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (!evaluate(*node.children[i], elements[i])) {
      return false;
    }
    if (elements[i].isArray() || elements[i].type() == Value::Type::kNone) {
      return fail(*node.children[i], "an array cannot hold this");
    }
    type = std::max(type, elements[i].type());
  }
  value = Value::initial(arrayType(elements.empty() ? Value::Type::kString : type));
  for (std::size_t i = 0; i < elements.size(); ++i) {
    value.setElement(i, elements[i]);
  }
  return true;
}

bool Evaluator::evaluateUnary(const AstNode& node, Value& value) {
  if (!evaluate(*node.children[0], value)) {
    return false;
  }
  if (node.text == "!") {
    value = Value::ofTruth(!value.toTruth());
  } else if (value.type() == Value::Type::kFloat) {
    value = Value(-value.toFloat());
  } else if (value.type() == Value::Type::kInt) {
    value = Value(wrap(-static_cast<long long>(value.toInt())));
  } else {
    return fail(node, std::string("cannot negate ") + typeName(value.type()));
  }
  return true;
}

bool Evaluator::evaluateBinary(const AstNode& node, Value& value) {
  if (!evaluate(*node.children[0], value)) {
    return false;
  }
  if (node.text == "&&" || node.text == "||") {
    bool truth = value.toTruth();
    if (truth == (node.text == "&&") && !condition(*node.children[1], truth)) {
      return false;
    }
    value = Value::ofTruth(truth);
    return true;
  }
  const Value left = std::move(value);
  Value right;
  return evaluate(*node.children[1], right) && combine(node, node.text, left, right, value);
}

bool Evaluator::combine(const AstNode& node, const std::string& symbol, const Value& left,
                        const Value& right, Value& value) {
  const Value::Type type = std::max(left.type(), right.type());
  const bool bothSingle = !left.isArray() && !right.isArray() &&
                          left.type() != Value::Type::kNone && right.type() != Value::Type::kNone;
  if (!bothSingle) {
    const Value& odd = left.isNumber() || left.type() == Value::Type::kString ? right : left;
    return fail(node, "'" + symbol + "' cannot take " + typeName(odd.type()));
  }
  if (type == Value::Type::kString) {
    if (isComparison(symbol)) {
      value = Value::ofTruth(compare(symbol, left.toString(), right.toString()));
    } else if (symbol == "+") {
      value = Value(left.toString() + right.toString());
    } else {
      return fail(node, "'" + symbol + "' cannot take a string");
    }
    return true;
  }
  if (isComparison(symbol)) {
    value = Value::ofTruth(compare(symbol, left.toFloat(), right.toFloat()));
    return true;
  }
  if ((symbol == "/" || symbol == "%") && right.toFloat() == 0) {
    return fail(node, "division by zero");
  }
  value = type == Value::Type::kInt ? ofIntegers(symbol, left.toInt(), right.toInt())
                                    : ofNumbers(symbol, left.toFloat(), right.toFloat());
  return true;
}

bool Evaluator::evaluateChoice(const AstNode& node, Value& value) {
  bool truth = false;
  return condition(*node.children[0], truth) && evaluate(*node.children[truth ? 1 : 2], value);
}

bool Evaluator::evaluateAssign(const AstNode& node, Value& value) {
  const AstNode& target = *node.children[0];
  if (!evaluate(*node.children[1], value)) {
    return false;
  }
  if (!node.text.empty()) {
    Value old;
    const Value right = std::move(value);
    if (!evaluate(target, old) || !combine(node, node.text, old, right, value)) {
      return false;
    }
  }
  return store(target, value);
}

bool Evaluator::evaluateStep(const AstNode& node, Value& value) {
  const AstNode& target = *node.children[0];
  Value stepped;
  if (!evaluate(target, value) ||
      !combine(node, node.text.substr(0, 1), value, Value(1), stepped) || !store(target, stepped)) {
    return false;
  }
  if (node.literal.toInt() != 0) {
    value = std::move(stepped);
  }
  return true;
}

bool Evaluator::store(const AstNode& target, const Value& value) {
  const bool whole = target.kind == Kind::kVariable;
  const AstNode& name = whole ? target : *target.children[0];
  if (name.kind != Kind::kVariable) {
    return fail(target, "only a variable can be assigned to");
  }
  Variable variable = find(name.text);
  if (variable == nullptr) {
    const Value::Type type = whole ? value.type() : arrayType(value.type());
    if (type == Value::Type::kNone) {
      return fail(target, "$" + name.text + " cannot be set to nothing");
    }
    variable = define(name.text, type, false);
  }
  const Value::Type type = whole ? variable->type() : elementType(variable->type());
  if (!whole && !variable->isArray()) {
    return fail(target, "$" + name.text + " is no array");
  }
  const auto converted = value.convertedTo(type);
  if (!converted) {
    return fail(target,
                std::string("cannot convert ") + typeName(value.type()) + " to " + typeName(type));
  }
  if (whole) {
    *variable = *converted;
    return true;
  }
  std::size_t index = 0;
  if (!evaluateIndex(*target.children[1], index)) {
    return false;
  }
  variable->setElement(index, *converted);
  return true;
}

}  // namespace host::mel
