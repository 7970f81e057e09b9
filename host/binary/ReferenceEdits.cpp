#include "host/binary/ReferenceEdits.h"

#include <cstdint>
#include <string>

#include "host/text/Text.h"

namespace host {
namespace {

constexpr std::uint32_t kConnect = 5;

// How many texts an edit has; 0 for a kind that is not known. Those of a connection depend on where
// its ends are.
int operandsOf(std::uint32_t kind, std::uint32_t ends) {
  switch (kind) {
    case 0:  // parent
    case 1:  // addAttr
    case 2:  // setAttr
    case 3:  // disconnectAttr
      return 3;
    case kConnect:
      return ends == 0 ? 6 : ends == 3 || ends == 4 ? 4 : 0;
    case 8:
    case 9:
      return 2;
    default:
      return 0;
  }
}

void takeText(ByteCursor& in, KeptWords& kept) {
  kept.words.push_back(mel::quoted(in.text()));
}

bool readEdit(ByteCursor& in, KeptWords& kept) {
  const std::uint32_t kind = in.word();
  kept.words.push_back(std::to_string(kind));
  std::uint32_t ends = 0;
  if (kind == kConnect) {
    ends = in.word();
    kept.words.push_back(std::to_string(ends));
  }
  const int operands = operandsOf(kind, ends);
  for (int i = 0; i < operands; ++i) takeText(in, kept);
  return operands > 0 && !in.failed();
}

bool readFile(ByteCursor& in, KeptWords& kept) {
  takeText(in, kept);
  const std::uint32_t edits = in.word();
  kept.words.push_back(std::to_string(edits));
  for (std::uint32_t i = 0; i < edits; ++i)
    if (!readEdit(in, kept)) return false;
  return !in.failed();
}

}  // namespace

bool readReferenceEdits(ByteCursor& in, KeptWords& kept) {
  kept = KeptWords{kReferenceEditsType, {}};
  takeText(in, kept);
  while (in.left() > 0) {
    const std::uint32_t files = in.word();
    for (std::uint32_t i = 0; i < files; ++i)
      if (!readFile(in, kept)) return false;
  }
  return !in.failed();
}

}  // namespace host
