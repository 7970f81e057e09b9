#include "host/binary/ReferenceEdits.h"

#include <cstdint>
#include <string>

#include "host/text/Text.h"

namespace host {
namespace {

constexpr int kConnect = 5;

void takeText(ByteCursor& in, KeptWords& kept) {
  kept.words.push_back(mel::quoted(in.text()));
}

int takeNumber(ByteCursor& in, KeptWords& kept) {
  const auto number = static_cast<std::int32_t>(in.word());
  kept.words.push_back(std::to_string(number));
  return number;
}

bool readEdit(ByteCursor& in, KeptWords& kept) {
  const int kind = takeNumber(in, kept);
  const int ends = kind == kConnect ? takeNumber(in, kept) : 0;
  const int operands = editOperandCount(kind, ends);
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

int editOperandCount(int kind, int ends) {
  switch (kind) {
    case 0:  // parent
    case 2:  // setAttr
    case 3:  // disconnectAttr
      return 3;
    case 1:  // addAttr
      return 4;
    case kConnect:
      return ends == 0 ? 6 : ends == 3 || ends == 4 ? 4 : 0;
    case 8:
    case 9:
      return 2;
    default:
      return 0;
  }
}

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
