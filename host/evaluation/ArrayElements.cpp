#include "host/evaluation/ArrayElements.h"

#include "host/scene/Connections.h"
#include "host/scene/Node.h"
#include "host/scene/Values.h"
#include "host/text/Numbers.h"
#include "host/text/TextScanner.h"

namespace host {
namespace {

// A word may hold many numbers.
void appendNumbers(std::string_view word, std::vector<double>& numbers) {
  TextScanner in(word);
  double number = 0.0;
  while (!in.atEnd()) {
    if (in.number(number)) {
      numbers.push_back(number);
      continue;
    }
    const std::string_view other = in.word();
    const auto truth = mel::parseTruth(other);
    const auto special = mel::parseNumber(other);
    if (truth || special) numbers.push_back(special ? *special : *truth ? 1.0 : 0.0);
  }
}

}  // namespace

std::set<int> elementIndices(const Plug& array) {
  std::set<int> indices;
  const auto add = [&](const std::string& path) {
    const std::size_t end = path.find(']', array.path().size());
    const auto range = end == std::string::npos
                           ? std::nullopt
                           : splitRange(std::string_view(path).substr(0, end + 1));
    if (range && range->stem == array.path()) indices.insert(range->first);
  };
  for (const AttributeState& state : array.node()->values.inWrittenOrder()) add(state.path);
  for (const ConnectionPtr& connection : array.node()->connections.intoAtOrBelow(array.path()))
    add(connection->destination.path());
  for (const ConnectionPtr& connection : array.node()->connections.outOfAtOrBelow(array.path()))
    add(connection->source.path());
  return indices;
}

void readNumbersOf(const AttributeValue& value, std::vector<double>& numbers) {
  numbers.clear();
  if (const auto* number = std::get_if<double>(&value))
    numbers.push_back(*number);
  else if (const auto* list = std::get_if<std::vector<double>>(&value))
    numbers = *list;
  else if (const auto* kept = std::get_if<KeptWords>(&value))
    for (const std::string& word : kept->words) appendNumbers(word, numbers);
}

std::map<int, std::vector<double>> keptElements(const Node& node, std::string_view shortName,
                                                int width) {
  std::map<int, std::vector<double>> elements;
  std::vector<double> numbers;
  for (const AttributeState& state : node.values.inWrittenOrder()) {
    const auto range = headOf(state.path) == shortName ? splitRange(state.path) : std::nullopt;
    if (!range) continue;
    readNumbersOf(state.value, numbers);
    int index = range->first;
    for (auto at = numbers.begin(); numbers.end() - at >= width && index <= range->last;
         at += width)
      elements[index++].assign(at, at + width);
  }
  return elements;
}

void writeKeptElements(const NodePtr& node, std::string_view shortName,
                       const std::map<int, std::vector<double>>& elements) {
  std::vector<std::string> old;
  for (const AttributeState& state : node->values.inWrittenOrder())
    if (headOf(state.path) == shortName) old.push_back(state.path);
  for (const std::string& path : old) node->values.erase(path);
  for (auto at = elements.begin(); at != elements.end();) {
    KeptWords run;
    const int first = at->first;
    int next = first;
    for (; at != elements.end() && at->first == next; ++at, ++next)
      for (const double number : at->second) run.words.push_back(mel::formatNumber(number));
    const std::string range =
        std::to_string(first) + (next - first > 1 ? ":" + std::to_string(next - 1) : "");
    keepAsWritten(node, std::string(shortName) + "[" + range + "]", std::move(run));
  }
}

std::string_view headOf(std::string_view path) {
  return path.substr(0, path.find_first_of(".["));
}

}  // namespace host
