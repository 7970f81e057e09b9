#ifndef MORVANE_HOST_BINARY_VALUECHUNK_H_
#define MORVANE_HOST_BINARY_VALUECHUNK_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/attribute/AttributeValue.h"
#include "host/binary/ByteCursor.h"

namespace host {

// What a chunk says of one attribute of a node.
struct BinaryValue {
  std::string path;  // as a statement would name it: "t", "pt[0:19]", "iog[0].og[1].gcl"
  bool isLocked = false;
  bool isAltered = false;  // set although something is connected into it
  bool isKeyable = false;
  bool isInChannelBox = false;  // without being keyable
  bool hasSize = false;         // of an array, which only arrays have
  // The word after -type in a statement; empty when the statement has none.
  std::string type;
  // Numbers (centimetres and radians), a text, texts, or the words of a statement; nothing where
  // there are only flags or a size.
  AttributeValue value;
};

// A MESH chunk is none of these: see readMeshChunk.
enum class ValueRead {
  kDone,
  kUnknown,    // no chunk of a value that is known, or data whose layout is not
  kMalformed,  // too short for what it says
};

// How a file states times: as whole numbers of ticks.
struct TimeUnit {
  double ticksPerFrame = 1.0;
  bool isLong = true;    // in eight bytes, else in four
  bool isOfKeys = true;  // keys of animation stand at times, else at plain numbers
};

ValueRead readValueChunk(std::uint32_t tag, ByteCursor in, const TimeUnit& time, BinaryValue& out);

// Every chunk of a value begins with its name and flags. The size that may follow is not needed.
// False when they are not all there.
bool readValueHead(ByteCursor& in, BinaryValue& out);

}  // namespace host

#endif  // MORVANE_HOST_BINARY_VALUECHUNK_H_
