#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>

#include "bench/Comparison.h"
#include "bench/Planes.h"
#include "bench/TiffPackBits.h"
#include "psd/PackBits.h"

// Packing into runs only, and unpacking such streams and those of another program.
namespace bench {
namespace {

// Everything in one place of memory that the closures of a comparison share.
struct Work {
  std::uint32_t side;
  Bytes plane;
  Bytes packed;    // what is unpacked: rows without their lengths
  Bytes unpacked;  // room for the plane

  std::size_t tableSize() const { return 2 * std::size_t{side}; }
};

std::shared_ptr<Work> makeWork(Content content, std::uint32_t side) {
  auto work = std::make_shared<Work>();
  work->side = side;
  work->plane = makePlane(content, side);
  work->packed.resize(2 * work->plane.size());
  const std::uint8_t* const end =
      packByteByByte(work->plane.data(), side, side, work->packed.data());
  work->packed.resize(static_cast<std::size_t>(end - work->packed.data()));
  work->unpacked.resize(work->plane.size());
  return work;
}

// Both give a new array each time.
Comparison encode(Content content, std::uint32_t side, double target) {
  const auto work = makeWork(content, side);
  Comparison it;
  it.peerName = "byte loop";
  it.target = atLeast(target);
  it.bytes = static_cast<double>(work->plane.size());
  std::uint32_t length = 0;
  const auto packed = morvane::packBitsEncodePlane(side, side, work->plane.data(), length);
  if (length != work->packed.size() + work->tableSize() ||
      !std::equal(work->packed.begin(), work->packed.end(), packed.get() + work->tableSize())) {
    it.problem = "not what the byte loop packs";
  }
  it.ours = [work] {
    std::uint32_t packedLength = 0;
    benchmark::DoNotOptimize(
        morvane::packBitsEncodePlane(work->side, work->side, work->plane.data(), packedLength));
  };
  it.peer = [work] {
    const std::unique_ptr<std::uint8_t[]> room(new std::uint8_t[2 * work->plane.size()]);
    packByteByByte(work->plane.data(), work->side, work->side, room.get());
    benchmark::DoNotOptimize(room.get());
  };
  return it;
}

// All unpack into memory that is kept.
Comparison decode(const std::shared_ptr<Work>& work, const char* peerName, double target) {
  Comparison it;
  it.peerName = peerName;
  it.target = atLeast(target);
  it.bytes = static_cast<double>(work->plane.size());
  const auto unpack = [work] {
    return morvane::packBitsDecode(work->packed.data(), work->packed.size(), work->unpacked.data(),
                                   work->unpacked.size());
  };
  if (!unpack() || work->unpacked != work->plane) it.problem = "not the plane that was packed";
  it.ours = [unpack] { benchmark::DoNotOptimize(unpack()); };
  return it;
}

Comparison decodeRuns(Content content, std::uint32_t side, double target) {
  const auto work = makeWork(content, side);
  Comparison it = decode(work, "byte loop", target);
  it.peer = [work] {
    unpackByteByByte(work->packed.data(), work->unpacked.data(), work->unpacked.size());
    benchmark::ClobberMemory();
  };
  return it;
}

Comparison decodeBesideTiff(const std::shared_ptr<Work>& work,
                            const std::shared_ptr<TiffPlane>& tiff, double target) {
  Comparison it = decode(work, "libtiff", target);
  if (!tiff->unpack(work->unpacked) || work->unpacked != work->plane)
    it.problem = "libtiff unpacks another plane";
  it.peer = [work, tiff] { tiff->unpack(work->unpacked); };
  return it;
}

Comparison decodeConstantBesideTiff(std::uint32_t side) {
  const auto work = makeWork(Content::kConstant, side);
  return decodeBesideTiff(work, TiffPlane::wrap(work->packed, side), 1.5);
}

Comparison decodeOrdinary(Content content, std::uint32_t side, double target) {
  const auto work = makeWork(content, side);
  const auto tiff = TiffPlane::pack(work->plane, side);
  work->packed = tiff->packedRows();
  return decodeBesideTiff(work, tiff, target);
}

bool declareAll(std::uint32_t side) {
  using Make = Comparison (*)(Content, std::uint32_t, double);
  const auto each = [=](const std::string& name, Make make, Content content, double target) {
    declare("PackBits " + name + ", " + nameOf(content) + " " + squareOf(side),
            [=] { return make(content, side, target); });
  };
  each("encode", encode, Content::kConstant, 8);
  each("encode", encode, Content::kFlatArt, 3);
  each("encode", encode, Content::kPhoto, 3);
  each("encode", encode, Content::kNoise, 3.5);
  declare("PackBits decode of runs, constant " + squareOf(side),
          [=] { return decodeConstantBesideTiff(side); });
  each("decode of runs", decodeRuns, Content::kPhoto, 4);
  each("decode of runs", decodeRuns, Content::kNoise, 6);
  each("decode of ordinary packets", decodeOrdinary, Content::kPhoto, 2);
  return true;
}

const bool kDeclared = declareAll(1024) && declareAll(4096);

}  // namespace
}  // namespace bench
