#ifndef MORVANE_HOST_BINARY_ATTRIBUTECHUNK_H_
#define MORVANE_HOST_BINARY_ATTRIBUTECHUNK_H_

#include <cstdint>
#include <optional>
#include <string>

#include "host/binary/ByteCursor.h"

namespace host {

// An attribute that a file adds to a node. No bit of the chunk is known to say that it is an array:
// see `BinaryValue::hasSize`.
struct AttributeDeclaration {
  std::string longName;
  std::string shortName;
  std::string niceName;   // or empty
  std::string parent;     // the compound that it is part of, or empty
  std::string enumNames;  // "red:green", or empty
  // The type as addAttr names it: "double", "float3", "string"; empty for one that is not known.
  std::string type;
  std::string typeTag;      // the letters of the file for it
  bool isData = false;      // -dataType instead of -attributeType
  bool isInternal = false;  // -internalSet
  bool isHidden = false;
  bool isKeyable = false;
  bool isColour = false;
  std::uint32_t children = 0;
  std::optional<double> min, max, softMin, softMax, defaultValue;
};

// Reads a chunk ATTR; `isWide` is the file's kind, whose flags differ in size. False when the chunk
// ends too early.
bool readAttributeChunk(ByteCursor in, bool isWide, AttributeDeclaration& out);

}  // namespace host

#endif  // MORVANE_HOST_BINARY_ATTRIBUTECHUNK_H_
