#ifndef MORVANE_HOST_COMMANDS_ATTRIBUTENAMES_H_
#define MORVANE_HOST_COMMANDS_ATTRIBUTENAMES_H_

#include <string>

#include "host/attribute/Attribute.h"

namespace host::mel {

// The type of an attribute as scripts see it: numbers of built-in types that are lengths and angles
// are named as such ("doubleLinear").
std::string shownType(const Attribute& attribute);

// "translateX" as the interface shows it: "Translate X".
std::string niceNameOf(const Attribute& attribute);

// The names of an enumeration with colons between, as addAttr took them.
std::string joinedEnum(const Attribute& attribute);

}  // namespace host::mel

#endif  // MORVANE_HOST_COMMANDS_ATTRIBUTENAMES_H_
