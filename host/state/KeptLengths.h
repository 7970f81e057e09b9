#ifndef MORVANE_HOST_STATE_KEPTLENGTHS_H_
#define MORVANE_HOST_STATE_KEPTLENGTHS_H_

#include <string_view>

#include "host/attribute/AttributeValue.h"
#include "host/scene/Node.h"

namespace host {

// Whether the numbers that a node keeps as words under this path are lengths: offsets of points.
bool isKeptLength(const Node& node, std::string_view path);

// Turns each number among the words from a unit of `length` centimetres into centimetres, and back.
void turnIntoCentimetres(KeptWords& kept, double length);
void turnFromCentimetres(KeptWords& kept, double length);

}  // namespace host

#endif  // MORVANE_HOST_STATE_KEPTLENGTHS_H_
