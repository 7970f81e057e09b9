// Any bytes unpacked to any promised size, against a decoder written as the definition reads; any
// plane packed and unpacked again, within the encoder's bound; the portable loops against the
// vector ones.
#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/FuzzTools.h"
#include "psd/PackBits.h"
#include "psd/PackBitsKernel.h"

using namespace morvane;
using namespace morvane::fuzz;

namespace {

using Plane = std::vector<std::uint8_t>;

std::optional<Plane> plainDecode(const std::uint8_t* at, std::size_t left, std::size_t size) {
  Plane plane;
  while (plane.size() < size) {
    if (left < 2) return std::nullopt;
    const int header = *at < 128 ? *at : *at - 256;
    ++at;
    --left;
    if (header == -128) continue;
    const std::size_t room = size - plane.size();
    const std::size_t count = std::min<std::size_t>(room, header < 0 ? 1 - header : 1 + header);
    const std::size_t taken = header < 0 ? 1 : count;
    if (taken > left) return std::nullopt;
    for (std::size_t i = 0; i < count; ++i) plane.push_back(header < 0 ? *at : at[i]);
    at += taken;
    left -= taken;
  }
  return plane;
}

void decode(std::uint32_t width, std::uint32_t height, const std::uint8_t* packed,
            std::size_t length) {
  const std::size_t table = 2 * std::size_t{height};
  const std::size_t size = std::size_t{width} * height;
  const MemoryWatch watch;
  const auto plane = packBitsDecodePlane(width, height, packed, length);
  watch.requireAtMost(2 * kMaxPackBitsExpansion, length, 1024);
  const auto wanted = length < table || size > 128 * length
                          ? std::nullopt
                          : plainDecode(packed + table, length - table, size);
  require((plane != nullptr) == wanted.has_value(), "sound packets refused, or damaged ones taken");
  require(!plane || std::equal(wanted->begin(), wanted->end(), plane.get()),
          "packets unpacked to other bytes");
}

void encode(std::uint32_t width, const Plane& plane) {
  const auto height = static_cast<std::uint32_t>(plane.size() / width);
  const std::size_t size = std::size_t{width} * height;
  std::uint32_t length = 0;
  const auto packed = packBitsEncodePlane(width, height, plane.data(), length);
  require(packed && length <= 2 * std::size_t{height} + 2 * size, "a plane over the bound");
  const auto again = packBitsDecodePlane(width, height, packed.get(), length);
  require(again && std::equal(again.get(), again.get() + size, plane.data()),
          "a plane that was packed unpacks to other bytes");

  Plane scratch(2 * std::size_t{width});
  std::uint32_t rowLength = 0;
  const auto row = packBitsEncodeRow(width, plane.data(), scratch.data(), rowLength);
  require(row && (height == 0 || std::equal(row.get(), row.get() + rowLength,
                                            packed.get() + 2 * std::size_t{height})),
          "a row is packed in another way than in its plane");
}

// Both forms of the loops: the same packed row; and the same bytes unpacked, from the same packets.
void compareKernels(const Plane& bytes, std::size_t size) {
  const PackBitsKernel* const vector = avx2PackBits();
  if (vector == nullptr) return;
  Plane packed[2];
  Plane unpacked[2];
  std::ptrdiff_t taken[2];
  for (int i = 0; i < 2; ++i) {
    const PackBitsKernel& kernel = i == 0 ? kPortablePackBits : *vector;
    packed[i].resize(2 * bytes.size() + PackBitsKernel::kSlack);
    const auto* const end = kernel.packRow(bytes.data(), bytes.size(), packed[i].data());
    packed[i].resize(static_cast<std::size_t>(end - packed[i].data()));
    unpacked[i].resize(size);
    const PackBitsKernel::Place place = kernel.unpack(
        {bytes.data(), unpacked[i].data()}, bytes.data() + bytes.size(), unpacked[i].data() + size);
    taken[i] = place.packed - bytes.data();
    unpacked[i].resize(static_cast<std::size_t>(place.to - unpacked[i].data()));
  }
  require(packed[0] == packed[1], "a row is packed in two ways");
  require(taken[0] == taken[1] && unpacked[0] == unpacked[1], "packets are unpacked in two ways");
}

// A plane whose end is one value, laid out and not.
void encodeFilled(std::uint32_t width, std::uint32_t height, std::uint8_t fill, const Plane& head) {
  Plane plane(std::size_t{width} * height, fill);
  const std::size_t headLength = std::min(head.size(), plane.size());
  std::copy_n(head.begin(), headLength, plane.begin());
  std::uint32_t length = 0;
  std::uint32_t filledLength = 0;
  const auto packed = packBitsEncodePlane(width, height, plane.data(), length);
  const auto filled =
      packBitsEncodeFilledPlane(width, height, head.data(), headLength, fill, filledLength);
  require(packed && filled && length == filledLength &&
              std::equal(packed.get(), packed.get() + length, filled.get()),
          "a filled plane is packed in another way than one that is laid out");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  InputBytes in(data, size);
  const std::uint32_t width = in.takeWord();
  const std::uint32_t height = in.takeWord();
  const std::uint8_t fill = in.takeByte();
  const Plane rest(in.bytes(), in.bytes() + in.left());
  decode(width, height, rest.data(), rest.size());
  if (width != 0 && rest.size() >= width) encode(width, rest);
  compareKernels(rest, std::size_t{width} * height % 100000);
  encodeFilled(width % 1024, height % 64, fill, rest);
  return 0;
}
