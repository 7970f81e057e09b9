#ifndef MORVANE_HOST_SCENE_VALUES_H_
#define MORVANE_HOST_SCENE_VALUES_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/attribute/AttributeValue.h"
#include "host/scene/Connections.h"
#include "host/scene/Plug.h"

namespace host {

// Reading a plug gives, in this order: what arrives through a connection or what its node works out
// (host/evaluation), as far as that is evaluated; what was computed from the scene (matrices,
// bounding boxes); what was set; the attribute's default; 0 or the empty text.

// A number attribute. Null for any other kind.
std::optional<double> readNumber(const Plug& plug);
// A text attribute. Null for any other kind.
std::optional<std::string> readText(const Plug& plug);
// A numeric compound's numbers ("translate" gives three), or a data attribute that holds numbers.
std::optional<std::vector<double>> readNumbers(const Plug& plug);
// Whatever the plug holds, as AttributeValue; numeric compounds as numbers, other compounds as
// nothing.
AttributeValue readValue(const Plug& plug);

// The source connected into a plug, or into the compound that the plug is part of.
struct Feed {
  Plug source;
  // The index of the source's number, when the source is one value and the compound has children.
  std::optional<std::size_t> component;
};
std::optional<Feed> feedOf(const Plug& plug);

// Whether the plug is what its node hands out by its type, rather than what it is set to.
bool isOutput(const Plug& plug);
// Whether a value was set on the plug itself.
bool hasStoredValue(const Plug& plug);
// What was set, or the attribute's default, whatever is connected.
AttributeValue storedValue(const Plug& plug);

double numberOf(const NodePtr& node, std::string_view pathText, double otherwise = 0.0);
bool truthOf(const NodePtr& node, std::string_view pathText);

// Stores, whatever the locks. A number attribute takes a number (clamped by nothing), a numeric
// compound as many numbers as it has children, a text attribute a text, a data attribute anything.
// False when the value does not suit the attribute.
bool writeValue(const Plug& plug, AttributeValue value);

// Keeps a statement's words, and of `flags` what is set there, under a path that need not be
// canonical ("tgi[0].ni[0:3].x"), for attributes that the host does not interpret. The node gets a
// loose attribute by the path's first name.
void keepAsWritten(const NodePtr& node, std::string_view pathText, KeptWords value,
                   const AttributeState& flags = {});

// Removes connections. A destination keeps the value that it read through its connection.
void disconnectKeepingValue(const ConnectionPtr& connection);

// Forgets values and flags that were set on the plug, its elements and its children.
void forgetValues(const Plug& plug);

// Flags of a plug. A compound is locked when it or every child is; a child also when a compound
// above is.
bool isLocked(const Plug& plug);
void setLocked(const Plug& plug, bool locked);
bool isKeyable(const Plug& plug);
void setKeyable(const Plug& plug, bool keyable);
bool isInChannelBox(const Plug& plug);
void setInChannelBox(const Plug& plug, bool shown);
// Whether any flag is set.
bool saysAnything(const AttributeState& flags);
// Sets the flags that are set in `flags`, whatever the locks.
void setFlags(const Plug& plug, const AttributeState& flags);

}  // namespace host

#endif  // MORVANE_HOST_SCENE_VALUES_H_
