#include "host/evaluation/GraphEvaluation.h"

#include <cmath>

#include "host/evaluation/Expression.h"
#include "host/evaluation/NodeAccess.h"
#include "host/evaluation/Quantity.h"
#include "host/graph/GraphNode.h"
#include "host/scene/Scene.h"

namespace host {
namespace {

using Kind = Attribute::Kind;

std::string keyOf(const Plug& plug) {
  return std::to_string(plug.node()->serial()) + "." + plug.path();
}

bool isNothing(const AttributeValue& value) {
  return std::holds_alternative<std::monostate>(value);
}

bool isMatrixOfDag(const Plug& plug) {
  return plug.node()->isDag() && plug.attribute()->typeWord() == "matrix" &&
         !plug.attribute()->isDynamic;
}

bool isFinite(const AttributeValue& value) {
  if (const double* number = std::get_if<double>(&value)) return std::isfinite(*number);
  if (const auto* numbers = std::get_if<std::vector<double>>(&value)) {
    for (const double number : *numbers)
      if (!std::isfinite(number)) return false;
  }
  return true;
}

// Whether the plug has a value of its own, be it its default, and not one that is worked out.
bool isGiven(const Plug& plug) {
  if (plug.node()->type().name() == "reference") return false;
  return hasStoredValue(plug) || (plug.attribute()->kind() != Kind::kLoose && !isOutput(plug));
}

AttributeValue defaultOf(const Plug& plug) {
  AttributeValue value = storedValue(plug);
  if (!isNothing(value)) return value;
  if (plug.attribute()->kind() == Kind::kNumber) return 0.0;
  return plug.attribute()->kind() == Kind::kText ? AttributeValue(std::string()) : value;
}

// Converts a value to the kind of the destination; nothing when that is impossible.
AttributeValue suited(AttributeValue value, const Feed& feed, const Plug& destination,
                      double framesPerSecond) {
  if (feed.component) {
    const auto* numbers = std::get_if<std::vector<double>>(&value);
    if (!numbers || *feed.component >= numbers->size()) return {};
    const double component = (*numbers)[*feed.component];
    value = component;
  }
  if (destination.attribute()->kind() != Kind::kNumber) return value;
  const double* number = std::get_if<double>(&value);
  if (!number) return {};
  if (feed.source.attribute()->kind() != Kind::kNumber) return value;
  return converted(*number, quantityOf(*feed.source.attribute()),
                   quantityOf(*destination.attribute()), framesPerSecond);
}

std::string expressionOf(const NodePtr& node) {
  const auto plug = Plug::find(node, "internalExpression");
  return plug ? readText(*plug).value_or("") : "";
}

}  // namespace

void GraphEvaluation::forgetWhatChanged() {
  if (isRunning_ || changeCount_ == scene_.changes.count()) return;
  changeCount_ = scene_.changes.count();
  known_.clear();
}

void GraphEvaluation::note(const TroublePtr& trouble) {
  if (!trouble_) trouble_ = trouble;
}

void GraphEvaluation::note(const NodePtr& node, std::string reason) {
  note(std::make_shared<EvaluationTrouble>(EvaluationTrouble{node, std::move(reason)}));
}

GraphEvaluation::GraphEvaluation(Scene& scene, std::function<SceneRates()> rates)
    : scene_(scene), rates_(std::move(rates)) {
  scene_.flowing = this;
}

GraphEvaluation::~GraphEvaluation() {
  scene_.flowing = nullptr;
}

AttributeValue GraphEvaluation::valueOf(const Plug& plug) {
  forgetWhatChanged();
  if (const auto feed = feedOf(plug)) return arriving(*feed, plug);
  return isOutput(plug) ? handedOut(plug) : AttributeValue();
}

std::optional<EvaluationTrouble> GraphEvaluation::troubleOf(const Plug& plug) {
  forgetWhatChanged();
  trouble_ = nullptr;
  readValue(plug);
  return trouble_ ? std::optional<EvaluationTrouble>(*trouble_) : std::nullopt;
}

AttributeValue GraphEvaluation::arriving(const Feed& feed, const Plug& destination) {
  return suited(handedOut(feed.source), feed, destination, rates_().framesPerSecond);
}

AttributeValue GraphEvaluation::handedOut(const Plug& source) {
  const auto found = known_.find(keyOf(source));
  if (found != known_.end()) {
    note(found->second.trouble);
    return found->second.value;
  }
  if (source.attribute()->kind() == Kind::kCompound) return readValue(source);
  if (!feedOf(source) && !isOutput(source) && !isMatrixOfDag(source)) return given(source);
  if (isRunning_) {
    missing_.push_back(source);
    return {};
  }
  const TroublePtr before = trouble_;
  const Known known = run(source);
  trouble_ = before;
  note(known.trouble);
  return known.value;
}

AttributeValue GraphEvaluation::given(const Plug& source) {
  if (isGiven(source)) {
    AttributeValue computed = computedValue(source);
    return isNothing(computed) ? defaultOf(source) : computed;
  }
  const bool isReference = source.node()->type().name() == "reference";
  note(source.node(), isReference ? "the file that it refers to is not loaded" : "");
  return {};
}

GraphEvaluation::Known GraphEvaluation::run(const Plug& plug) {
  isRunning_ = true;
  std::vector<Plug> waiting = {plug};
  while (!waiting.empty()) {
    const Plug next = waiting.back();
    missing_.clear();
    trouble_ = nullptr;
    if (known_.find(keyOf(next)) == known_.end()) compute(next);
    if (missing_.empty()) {
      underway_.erase(keyOf(next));
      waiting.pop_back();
    } else {
      underway_.insert(keyOf(next));
      putAside(waiting);
    }
  }
  isRunning_ = false;
  return known_[keyOf(plug)];
}

// A plug that is waited for and itself waits for this one closes a cycle.
void GraphEvaluation::putAside(std::vector<Plug>& waiting) {
  for (const Plug& plug : missing_) {
    if (underway_.find(keyOf(plug)) == underway_.end()) {
      waiting.push_back(plug);
      continue;
    }
    trouble_ = nullptr;
    note(plug.node(), "its inputs lead back to it");
    known_[keyOf(plug)] = {AttributeValue(), trouble_};
  }
}

void GraphEvaluation::compute(const Plug& plug) {
  AttributeValue value;
  if (const auto feed = feedOf(plug)) {
    value = arriving(*feed, plug);
    if (isNothing(value)) value = storedValue(plug);
  } else if (isMatrixOfDag(plug)) {
    value = computedValue(plug);
    if (isNothing(value)) value = storedValue(plug);
  } else {
    return computeByNode(plug);
  }
  if (missing_.empty()) known_[keyOf(plug)] = {std::move(value), trouble_};
}

void GraphEvaluation::computeByNode(const Plug& plug) {
  const GraphNodeType* type = findGraphNodeType(plug.node()->type().name());
  if (!type) {
    AttributeValue value = given(plug);
    known_[keyOf(plug)] = {std::move(value), trouble_};
    return;
  }
  NodeAccess node(*this, plug);
  std::string problem =
      type->evaluate ? type->evaluate(node) : evaluateExpression(node, expressionOf(plug.node()));
  if (!missing_.empty()) return;
  const auto& outputs = node.outputs();
  for (const auto& [path, value] : outputs)
    if (!isFinite(value)) problem = "what it works out is not a finite number";
  if (!problem.empty() || outputs.find(plug.path()) == outputs.end()) {
    if (!problem.empty()) trouble_ = nullptr;
    note(plug.node(), problem);
    known_[keyOf(plug)] = {AttributeValue(), trouble_};
    return;
  }
  const std::string start = std::to_string(plug.node()->serial()) + ".";
  for (const auto& [path, value] : outputs) known_[start + path] = {value, trouble_};
}

}  // namespace host
