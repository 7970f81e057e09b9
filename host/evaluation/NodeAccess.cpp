#include "host/evaluation/NodeAccess.h"

#include <algorithm>
#include <set>

#include "host/evaluation/ArrayElements.h"
#include "host/scene/Node.h"

namespace host {

double NodeAccess::number(std::string_view path) const {
  return numberOf(output_.node(), path);
}

MMatrix NodeAccess::matrix(std::string_view path) const {
  MMatrix m;
  const auto plug = Plug::find(output_.node(), path);
  const auto numbers = plug ? readNumbers(*plug) : std::nullopt;
  if (numbers && numbers->size() == 16)
    std::copy(numbers->begin(), numbers->end(), &m.matrix[0][0]);
  return m;
}

std::vector<int> NodeAccess::elements(std::string_view array) const {
  const auto plug = Plug::find(output_.node(), array);
  if (!plug) return {};
  const std::set<int> indices = elementIndices(*plug);
  return {indices.begin(), indices.end()};
}

std::map<int, std::vector<double>> NodeAccess::kept(std::string_view shortName, int width) const {
  return keptElements(*output_.node(), shortName, width);
}

bool NodeAccess::isConnected(std::string_view path) const {
  const auto plug = Plug::find(output_.node(), path);
  return plug && sourceOf(*plug).has_value();
}

void NodeAccess::give(std::string_view path, double value) {
  outputs_[std::string(path)] = value;
}

void NodeAccess::give(std::string_view path, const MMatrix& value) {
  outputs_[std::string(path)] = std::vector<double>(&value.matrix[0][0], &value.matrix[0][0] + 16);
}

void NodeAccess::handOn(std::string_view input) {
  const auto plug = Plug::find(output_.node(), input);
  AttributeValue value = plug ? readValue(*plug) : AttributeValue();
  if (!std::holds_alternative<std::monostate>(value)) outputs_[output_.path()] = std::move(value);
}

}  // namespace host
