#include "psd/PackBitsKernel.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "psd/Avx2.h"

namespace morvane {

namespace {

// The end of the run of equal bytes at `from`, cut at 128 bytes. Most runs are short, so that
// comparing eight bytes at once pays only after the first few.
const std::uint8_t* runEnd(const std::uint8_t* from, const std::uint8_t* end) {
  constexpr std::ptrdiff_t kShort = 8;
  const auto left = static_cast<std::size_t>(end - from);
  const std::uint8_t* const limit = from + std::min(left, kPackBitsMaxRun);
  const std::uint8_t* at = from + 1;
  while (at != limit && *at == *from) {
    if (++at - from != kShort) continue;
    const std::uint64_t eight = *from * 0x0101010101010101u;
    while (limit - at >= 8 && std::memcmp(at, &eight, 8) == 0) at += 8;
  }
  return at;
}

std::uint8_t* packRow(const std::uint8_t* row, std::size_t length, std::uint8_t* to) {
  const std::uint8_t* const end = row + length;
  while (row != end) {
    const bool isSingle = end - row > 1 && row[1] != *row;  // told before all else: most are
    const std::uint8_t* const next = isSingle ? row + 1 : runEnd(row, end);
    *to++ = static_cast<std::uint8_t>(1 - (next - row));
    *to++ = *row;
    row = next;
  }
  return to;
}

PackBitsKernel::Place unpack(PackBitsKernel::Place at, const std::uint8_t* packedEnd,
                             std::uint8_t* toEnd) {
  while (at.to != toEnd && packedEnd - at.packed >= 2) {
    const auto header = static_cast<std::int8_t>(*at.packed);
    const std::uint8_t* const data = at.packed + 1;
    if (header == 0) {  // told before all else: most are
      *at.to = *data;
      at = {data + 1, at.to + 1};
      continue;
    }
    const std::ptrdiff_t count = header == -128 ? 0 : 1 + std::abs(header);
    const std::ptrdiff_t dataLength = header >= 0 ? count : header == -128 ? 0 : 1;
    if (count > toEnd - at.to || dataLength > packedEnd - data) break;
    if (header < 0)
      std::memset(at.to, *data, static_cast<std::size_t>(count));
    else
      std::memcpy(at.to, data, static_cast<std::size_t>(count));
    at = {data + dataLength, at.to + count};
  }
  return at;
}

}  // namespace

const PackBitsKernel kPortablePackBits = {packRow, unpack};

#if MORVANE_HAS_AVX2

namespace {

constexpr std::ptrdiff_t kBlock = 32;  // bytes in a vector

// For each set of eight bits: the numbers of those that are set, a byte each, the lowest first.
constexpr std::array<std::uint64_t, 256> makeBitNumbers() {
  std::array<std::uint64_t, 256> numbers{};
  for (unsigned bits = 0; bits < 256; ++bits) {
    unsigned shift = 0;
    for (std::uint64_t bit = 0; bit < 8; ++bit) {
      if ((bits >> bit & 1) == 0) continue;
      numbers[bits] |= bit << shift;
      shift += 8;
    }
  }
  return numbers;
}
constexpr std::array<std::uint64_t, 256> kBitNumbers = makeBitNumbers();

MORVANE_AVX2 inline __m256i loadBlock(const std::uint8_t* from) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

MORVANE_AVX2 inline void storeBlock(std::uint8_t* to, __m256i block) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), block);
}

MORVANE_AVX2 inline __m128i loadEight(const void* from) {
  return _mm_loadl_epi64(static_cast<const __m128i*>(from));
}

// Bit i: byte i of the two differs.
MORVANE_AVX2 inline std::uint32_t differences(__m256i a, __m256i b) {
  return ~static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(a, b)));
}

// The end of the run at `start`, cut at 128 bytes. The run reaches at least to `at`. There are at
// least 32 bytes from `start` to `end`, so that the last vector may overlap the one before.
MORVANE_AVX2 inline const std::uint8_t* longRunEnd(const std::uint8_t* start,
                                                   const std::uint8_t* at,
                                                   const std::uint8_t* end) {
  const __m256i value = _mm256_set1_epi8(static_cast<char>(*start));
  const std::uint8_t* const limit =
      start + std::min(static_cast<std::size_t>(end - start), kPackBitsMaxRun);
  for (; limit - at >= kBlock; at += kBlock) {
    const std::uint32_t differing = differences(loadBlock(at), value);
    if (differing != 0) return at + _tzcnt_u32(differing);
  }
  const std::uint32_t differing = differences(loadBlock(limit - kBlock), value);
  return differing != 0 ? limit - kBlock + _tzcnt_u32(differing) : limit;
}

// Writes the packets of the runs of a row, in order.
class PacketWriter {
 public:
  MORVANE_AVX2 explicit PacketWriter(std::uint8_t* to) : to_(to) {}

  MORVANE_AVX2 std::uint8_t* end() const { return to_; }

  MORVANE_AVX2 void run(const std::uint8_t* start, const std::uint8_t* end) {
    *to_++ = static_cast<std::uint8_t>(1 - (end - start));
    *to_++ = *start;
  }

  // Writes the runs that end among 32 bytes. Bit i of `ends` is set when a run ends with at[i]; the
  // first run begins at `start`. Eight bytes at a time, a shuffle gathers the bytes that end runs,
  // and the differences of their positions are the runs' lengths: there is no branch.
  MORVANE_AVX2 void block(const std::uint8_t* at, std::uint32_t ends, const std::uint8_t* start) {
    int lastEnd = static_cast<int>(start - at) - 1;  // of the run before, from the eight bytes
    for (int i = 0; i < 4; ++i, at += 8, ends >>= 8) {
      const std::uint32_t eight = ends & 0xFF;
      const __m128i places = loadEight(&kBitNumbers[eight]);
      const __m128i values = _mm_shuffle_epi8(loadEight(at), places);
      const __m128i before =
          _mm_or_si128(_mm_slli_si128(places, 1), _mm_cvtsi32_si128(lastEnd & 0xFF));
      const __m128i headers =
          _mm_sub_epi8(_mm_add_epi8(before, _mm_set1_epi8(1)), places);  // 1 - run
      _mm_storeu_si128(reinterpret_cast<__m128i*>(to_), _mm_unpacklo_epi8(headers, values));
      to_ += 2 * _mm_popcnt_u32(eight);
      lastEnd = (eight != 0 ? 31 - static_cast<int>(_lzcnt_u32(eight)) : lastEnd) - 8;
    }
  }

 private:
  std::uint8_t* to_;
};

// Runs end where a byte differs from the next one; 32 bytes are compared at a time.
MORVANE_AVX2 std::uint8_t* packRowAvx2(const std::uint8_t* row, std::size_t length,
                                       std::uint8_t* to) {
  if (length < kBlock) return packRow(row, length, to);
  PacketWriter out(to);
  const std::uint8_t* const end = row + length;
  const std::uint8_t* start = row;  // of the run that has not ended before `at`: at most 31 bytes
  const std::uint8_t* at = row;
  while (end - at > kBlock) {
    const std::uint32_t ends = differences(loadBlock(at), loadBlock(at + 1));
    if (ends == 0) {
      at = longRunEnd(start, at, end);
      out.run(start, at);
      start = at;
    } else {
      out.block(at, ends, start);
      start = at + kBlock - _lzcnt_u32(ends);
      at += kBlock;
    }
  }
  if (start == end) return out.end();
  // The last 32 bytes, of which only those from `at` are new.
  const __m256i last = loadBlock(end - kBlock);
  const __m256i next = _mm256_alignr_epi8(_mm256_permute2x128_si256(last, last, 0x81), last, 1);
  const std::uint32_t ends = differences(last, next) | 0x80000000u;
  out.block(end - kBlock, ends & ~0u << (kBlock - (end - at)), start);
  return out.end();
}

// Unpacks 16 packets when each is a single byte; false when one is not.
MORVANE_AVX2 inline bool unpackSingles(PackBitsKernel::Place& at) {
  const __m256i packets = loadBlock(at.packed);
  const __m256i headers = _mm256_and_si256(packets, _mm256_set1_epi16(0xFF));
  if (!_mm256_testz_si256(headers, headers)) return false;
  const __m256i values = _mm256_srli_epi16(packets, 8);
  _mm_storeu_si128(
      reinterpret_cast<__m128i*>(at.to),
      _mm_packus_epi16(_mm256_castsi256_si128(values), _mm256_extracti128_si256(values, 1)));
  at.packed += 32;
  at.to += 16;
  return true;
}

// Unpacks eight packets when each is of two bytes and gives at most 16; false when one is not.
MORVANE_AVX2 inline bool unpackShortRuns(PackBitsKernel::Place& at) {
  constexpr int kHeaders = 0x5555;
  const __m128i packets = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at.packed));
  const __m128i repeats = _mm_sub_epi8(_mm_setzero_si128(), packets);  // in the headers' places
  const __m128i few = _mm_cmpeq_epi8(_mm_min_epu8(repeats, _mm_set1_epi8(15)), repeats);
  if ((_mm_movemask_epi8(few) & kHeaders) != kHeaders) return false;
  for (int i = 0; i < 16; i += 2) {
    const __m128i value = _mm_set1_epi8(static_cast<char>(at.packed[i + 1]));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(at.to), value);
    at.to += 1 - static_cast<std::int8_t>(at.packed[i]);
  }
  at.packed += 16;
  return true;
}

// Unpacks a packet, be it a run or literal bytes. Both results are made and one is chosen, so that
// there is no branch. The step to the next packet is computed first, because the next packet waits
// for it.
MORVANE_AVX2 inline void unpackOne(PackBitsKernel::Place& at) {
  // The format's header byte is signed. NOLINTNEXTLINE(bugprone-signed-char-misuse)
  const std::ptrdiff_t header = static_cast<std::int8_t>(*at.packed);
  const std::uint8_t* const data = at.packed + 1;
  at.packed = data;
  if (header == -128) return;
  at.packed = data + 1 + std::max<std::ptrdiff_t>(header, 0);
  const std::ptrdiff_t count = 1 + std::abs(header);
  const __m256i isRun = _mm256_set1_epi8(static_cast<char>(header));  // by its sign
  const __m256i run = _mm256_set1_epi8(static_cast<char>(*data));
  storeBlock(at.to, _mm256_blendv_epi8(loadBlock(data), run, isRun));
  storeBlock(at.to + 32, _mm256_blendv_epi8(loadBlock(data + 32), run, isRun));
  if (count > 2 * kBlock) {
    storeBlock(at.to + 64, _mm256_blendv_epi8(loadBlock(data + 64), run, isRun));
    storeBlock(at.to + 96, _mm256_blendv_epi8(loadBlock(data + 96), run, isRun));
  }
  at.to += count;
}

// Far from both ends a packet may read and write more bytes than it has.
MORVANE_AVX2 PackBitsKernel::Place unpackAvx2(PackBitsKernel::Place at,
                                              const std::uint8_t* packedEnd, std::uint8_t* toEnd) {
  constexpr int kPackets = 4;
  constexpr std::ptrdiff_t kFar = kPackets * (1 + 128) + kBlock;
  while (packedEnd - at.packed >= kFar && toEnd - at.to >= kFar) {
    if (unpackSingles(at) || unpackShortRuns(at)) continue;
    for (int i = 0; i < kPackets; ++i) unpackOne(at);
  }
  return unpack(at, packedEnd, toEnd);
}

constexpr PackBitsKernel kAvx2PackBits = {packRowAvx2, unpackAvx2};

}  // namespace

const PackBitsKernel* avx2PackBits() {
  static const bool works = hasAvx2();
  return works ? &kAvx2PackBits : nullptr;
}

#else

const PackBitsKernel* avx2PackBits() {
  return nullptr;
}

#endif  // MORVANE_HAS_AVX2

const PackBitsKernel& packBitsKernel() {
  const PackBitsKernel* const avx2 = avx2PackBits();
  return avx2 ? *avx2 : kPortablePackBits;
}

}  // namespace morvane
