#include "host/binary/ValueChunk.h"

#include <utility>
#include <vector>

#include "host/binary/ChunkWalker.h"
#include "host/binary/ReferenceEdits.h"
#include "host/text/Numbers.h"
#include "host/text/Text.h"

namespace host {
namespace {

using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

// Matched with the flags of the same statements in ASCII scenes.
constexpr std::uint8_t kLocked = 0x01;
constexpr std::uint8_t kAltered = 0x02;
constexpr std::uint8_t kKeyable = 0x04;
constexpr std::uint8_t kHasSize = 0x08;
constexpr std::uint8_t kInChannelBox = 0x10;

// Chunks that are one kind of number after another.
struct NumberChunk {
  const char (&letters)[5];
  std::size_t width;  // bytes of a number
  std::size_t group;  // numbers that belong together
  const char* type;
};
constexpr NumberChunk kNumberChunks[] = {{"DBLE", 8, 1, ""},
                                         {"DBL2", 8, 2, "double2"},
                                         {"DBL3", 8, 3, "double3"},
                                         {"FLT2", 4, 2, "float2"},
                                         {"FLT3", 4, 3, "float3"}};

const NumberChunk* findNumberChunk(std::uint32_t tag) {
  for (const NumberChunk& row : kNumberChunks)
    if (tagOf(row.letters) == tag) return &row;
  return nullptr;
}

void appendNumber(KeptWords& kept, double number) {
  kept.words.push_back(mel::formatNumber(number));
}

ValueRead finished(const ByteCursor& in) {
  return in.failed() ? ValueRead::kMalformed : ValueRead::kDone;
}

// --- Times

double takeTime(ByteCursor& in, const TimeUnit& time) {
  if (!time.isLong) return static_cast<std::int32_t>(in.word()) / time.ticksPerFrame;
  const std::uint64_t high = in.word();
  const std::uint64_t ticks = high << 32 | in.word();
  return static_cast<double>(static_cast<std::int64_t>(ticks)) / time.ticksPerFrame;
}

// A chunk DBLE may hold a time as well. A time of four bytes is too short for a double. One of
// eight, with as few ticks as any scene has, would be a subnormal double or not a number.
bool isTime(const ByteCursor& in, const TimeUnit& time) {
  if (!time.isLong) return in.left() == 4;
  ByteCursor peeked = in;
  const std::uint32_t high = peeked.word();
  return in.left() == 8 && (high < 0x00100000 || high >= 0xFFFF0000) &&
         (high != 0 || peeked.word() != 0);
}

ValueRead readNumbers(const NumberChunk& row, ByteCursor& in, BinaryValue& out) {
  const std::size_t size = in.left();
  if (size % (row.width * row.group) != 0) return ValueRead::kMalformed;
  Numbers numbers(size / row.width);
  for (double& number : numbers) number = row.width == 8 ? in.real() : double{in.single()};
  out.type = row.type;
  if (!numbers.empty()) out.value = std::move(numbers);
  return ValueRead::kDone;
}

// A path such as "wl[0:99].w" names one array in every element of another. As in the statement,
// each of these arrays has its number of elements, then their indices and numbers.
bool isNested(const std::string& path) {
  const std::size_t bracket = path.find("].");
  return bracket != path.npos && path.rfind(':', bracket) != path.npos;
}

ValueRead readNestedNumbers(ByteCursor& in, BinaryValue& out) {
  Numbers numbers;
  while (in.left() > 0) {
    const std::uint32_t count = in.word();
    numbers.push_back(count);
    for (std::uint32_t i = 0; i < count && !in.failed(); ++i) {
      numbers.push_back(in.word());
      numbers.push_back(in.real());
    }
  }
  out.value = std::move(numbers);
  return finished(in);
}

// --- Matrices

constexpr std::size_t kMatrixSize = 16 * 8;
constexpr std::size_t kTransformSize = 41 * 8;
constexpr int kTransformNumbers = 36;  // as the statement has them; four more are not in it
constexpr int kRotateOrder = 6;        // of these, a whole number, in half of eight bytes

// The parts of a transform: the numbers that the statement has behind "xform", four more, and eight
// bytes of flags, the first of which is its last word.
ValueRead readTransformParts(ByteCursor& in, BinaryValue& out) {
  KeptWords kept{"matrix", {mel::quoted("xform")}};
  for (int i = 0; i < kTransformNumbers; ++i) {
    appendNumber(kept, i == kRotateOrder ? in.word() : in.real());
    if (i == kRotateOrder) in.take(4);
  }
  in.take(4 * 8);
  kept.words.emplace_back(in.byte() != 0 ? "yes" : "no");
  out.value = std::move(kept);
  return finished(in);
}

ValueRead readMatrix(ByteCursor& in, BinaryValue& out) {
  if (in.left() == kTransformSize) return readTransformParts(in, out);
  if (in.left() != kMatrixSize) return ValueRead::kMalformed;
  Numbers numbers(kMatrixSize / 8);
  for (double& number : numbers) number = in.real();
  out.type = "matrix";
  out.value = std::move(numbers);
  return ValueRead::kDone;
}

// --- Texts and lists

ValueRead readText(ByteCursor& in, BinaryValue& out) {
  out.type = "string";
  out.value = std::string(in.rest());
  return ValueRead::kDone;
}

// False when `count` things of at least `smallest` bytes are more than the bytes left.
bool mayHold(const ByteCursor& in, std::uint32_t count, std::size_t smallest) {
  return !in.failed() && count <= in.left() / smallest;
}

bool takeTexts(ByteCursor& in, Texts& texts) {
  const std::uint32_t count = in.word();
  if (!mayHold(in, count, 1)) return false;
  for (std::uint32_t i = 0; i < count && !in.failed(); ++i) texts.emplace_back(in.text());
  return !in.failed();
}

ValueRead readTexts(ByteCursor& in, BinaryValue& out) {
  Texts texts;
  if (!takeTexts(in, texts)) return ValueRead::kMalformed;
  out.type = "stringArray";
  out.value = std::move(texts);
  return ValueRead::kDone;
}

// Other names of attributes, each followed by the attribute's own.
ValueRead readAliases(ByteCursor& in, BinaryValue& out) {
  Texts texts;
  if (!takeTexts(in, texts)) return ValueRead::kMalformed;
  std::string braced;
  for (const std::string& text : texts) braced += (braced.empty() ? "" : ",") + mel::quoted(text);
  out.value = KeptWords{"attributeAlias", {'{' + braced + '}'}};
  return ValueRead::kDone;
}

ValueRead readIntegers(ByteCursor& in, BinaryValue& out) {
  const std::uint32_t count = in.word();
  if (!mayHold(in, count, 4)) return ValueRead::kMalformed;
  Numbers numbers;
  for (std::uint32_t i = 0; i < count; ++i) numbers.push_back(static_cast<std::int32_t>(in.word()));
  out.type = "Int32Array";
  out.value = std::move(numbers);
  return finished(in);
}

// --- Component lists

const char* componentName(std::uint32_t tag) {
  return tag == tagOf("CMDF")   ? "f"
         : tag == tagOf("CMDE") ? "e"
         : tag == tagOf("CMDV") ? "vtx"
                                : nullptr;
}

std::string componentText(const char* name, std::uint32_t first, std::uint32_t last) {
  constexpr std::uint32_t kAll = 0xFFFFFFFF;
  if (first == kAll) return std::string(name) + "[*]";
  return std::string(name) + '[' + std::to_string(first) +
         (last == first ? "" : ':' + std::to_string(last)) + ']';
}

ValueRead readComponents(ByteCursor& in, BinaryValue& out) {
  const std::uint32_t kinds = in.word();
  Texts texts;
  for (std::uint32_t kind = 0; kind < kinds && !in.failed(); ++kind) {
    const char* const name = componentName(in.word());
    const std::uint32_t ranges = in.word();
    if (!mayHold(in, ranges, 8)) return ValueRead::kMalformed;
    if (name == nullptr) return ValueRead::kUnknown;
    for (std::uint32_t i = 0; i < ranges; ++i) {
      const std::uint32_t first = in.word();
      texts.push_back(componentText(name, first, in.word()));
    }
  }
  out.type = "componentList";
  out.value = std::move(texts);
  return finished(in);
}

// --- Compounds

// Where every key stands, in the file's unit of time if it is one, and its value.
ValueRead readKeys(ByteCursor& in, const TimeUnit& time, BinaryValue& out) {
  Numbers numbers;
  while (in.left() > 0) {
    numbers.push_back(time.isOfKeys ? takeTime(in, time) : in.real());
    numbers.push_back(in.real());
  }
  out.value = std::move(numbers);
  return finished(in);
}

// Compounds other than keys are known to hold doubles only.
ValueRead readCompound(ByteCursor& in, const TimeUnit& time, BinaryValue& out) {
  if (in.left() == 0) return ValueRead::kDone;  // a size alone
  if (out.path.compare(0, 4, "ktv[") == 0) return readKeys(in, time, out);
  const NumberChunk doubles = {"DBLE", 8, 1, ""};
  return in.left() % 8 != 0 ? ValueRead::kUnknown : readNumbers(doubles, in, out);
}

// --- Data that is kept as the words of a statement

bool appendReals(ByteCursor& in, std::size_t count, KeptWords& kept) {
  if (count > in.left() / 8) return false;
  for (std::size_t i = 0; i < count; ++i) appendNumber(kept, in.real());
  return true;
}

// Degree, spans, form, whether it is rational, dimension; then counted knots and counted points.
ValueRead readCurve(ByteCursor& in, BinaryValue& out) {
  KeptWords kept{"nurbsCurve", {}};
  for (int i = 0; i < 3; ++i) appendNumber(kept, in.word());
  const bool isRational = in.byte() != 0;
  const std::uint32_t dimension = in.word();
  kept.words.emplace_back(isRational ? "yes" : "no");
  appendNumber(kept, dimension);
  if (dimension != 2 && dimension != 3)
    return in.failed() ? ValueRead::kMalformed : ValueRead::kUnknown;
  for (const std::size_t width : {1U, dimension + (isRational ? 1U : 0U)}) {
    const std::uint32_t count = in.word();
    appendNumber(kept, count);
    if (!mayHold(in, count, 8 * width) || !appendReals(in, count * width, kept))
      return ValueRead::kMalformed;
  }
  out.value = std::move(kept);
  return finished(in);
}

ValueRead readEdits(ByteCursor& in, BinaryValue& out) {
  KeptWords kept;
  if (!readReferenceEdits(in, kept))
    return in.failed() ? ValueRead::kMalformed : ValueRead::kUnknown;
  out.value = std::move(kept);
  return ValueRead::kDone;
}

}  // namespace

bool readValueHead(ByteCursor& in, BinaryValue& out) {
  out = BinaryValue();
  out.path = std::string(in.text());
  const std::uint8_t flags = in.byte();
  out.hasSize = (flags & kHasSize) != 0;
  if (out.hasSize) in.word();
  out.isLocked = (flags & kLocked) != 0;
  out.isAltered = (flags & kAltered) != 0;
  out.isKeyable = (flags & kKeyable) != 0;
  out.isInChannelBox = (flags & kInChannelBox) != 0;
  return !in.failed() && !out.path.empty();
}

ValueRead readValueChunk(std::uint32_t tag, ByteCursor in, const TimeUnit& time, BinaryValue& out) {
  if (!readValueHead(in, out)) return ValueRead::kMalformed;
  if (tag == tagOf("DBLE") && isNested(out.path)) return readNestedNumbers(in, out);
  if (tag == tagOf("DBLE") && isTime(in, time)) {
    out.value = Numbers{takeTime(in, time)};
    return ValueRead::kDone;
  }
  if (const NumberChunk* const numbers = findNumberChunk(tag))
    return readNumbers(*numbers, in, out);
  switch (tag) {
    case tagOf("FLGS"):
      return ValueRead::kDone;
    case tagOf("MATR"):
      return readMatrix(in, out);
    case tagOf("STR "):
      return readText(in, out);
    case tagOf("STR#"):
      return readTexts(in, out);
    case tagOf("ATAL"):
      return readAliases(in, out);
    case tagOf("I32#"):
      return readIntegers(in, out);
    case tagOf("CMP#"):
      return readComponents(in, out);
    case tagOf("CMPD"):
      return readCompound(in, time, out);
    case tagOf("NRBC"):
      return readCurve(in, out);
    case tagOf("REFE"):
      return readEdits(in, out);
    default:
      return ValueRead::kUnknown;
  }
}

}  // namespace host
