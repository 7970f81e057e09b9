#ifndef MORVANE_HOST_EVALUATION_ARRAYELEMENTS_H_
#define MORVANE_HOST_EVALUATION_ARRAYELEMENTS_H_

#include <map>
#include <set>
#include <string_view>
#include <vector>

#include "host/attribute/AttributeValue.h"
#include "host/scene/Plug.h"

namespace host {

// The indices of an array's elements that are set or connected.
std::set<int> elementIndices(const Plug& array);

// The numbers of a value, even of one that is kept as written; truth values are numbers too.
// `numbers` is cleared first.
void readNumbersOf(const AttributeValue& value, std::vector<double>& numbers);

// The elements of an array that the node keeps as written, by index: `width` numbers each.
std::map<int, std::vector<double>> keptElements(const Node& node, std::string_view shortName,
                                                int width);

// Keeps these elements in the place of all that the array had.
void writeKeptElements(const NodePtr& node, std::string_view shortName,
                       const std::map<int, std::vector<double>>& elements);

// "ktv" of "ktv[0:9].x".
std::string_view headOf(std::string_view path);

}  // namespace host

#endif  // MORVANE_HOST_EVALUATION_ARRAYELEMENTS_H_
