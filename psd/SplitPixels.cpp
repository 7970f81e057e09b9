#include "psd/SplitPixels.h"

#include "psd/Avx2.h"

#ifdef _MSC_VER
#define MORVANE_INLINE __forceinline
#define MORVANE_RESTRICT __restrict
#else
#define MORVANE_INLINE __attribute__((always_inline)) inline
#define MORVANE_RESTRICT __restrict__
#endif

namespace morvane {

namespace {

// Compilers turn this loop into vectors, for the processor that the calling function is compiled
// for.
template <std::size_t kSize>
MORVANE_INLINE void split(const std::uint8_t* MORVANE_RESTRICT pixels, std::size_t count,
                          std::uint8_t* const planes[4]) {
  std::uint8_t* MORVANE_RESTRICT a = planes[0];
  std::uint8_t* MORVANE_RESTRICT b = planes[1];
  std::uint8_t* MORVANE_RESTRICT c = planes[2];
  std::uint8_t* MORVANE_RESTRICT d = planes[3];
  for (std::size_t i = 0; i < count; ++i) {
    a[i] = pixels[kSize * i];
    b[i] = pixels[kSize * i + 1];
    c[i] = pixels[kSize * i + 2];
    if (kSize == 4) d[i] = pixels[kSize * i + 3];
  }
}

MORVANE_INLINE void splitEither(const std::uint8_t* pixels, std::size_t count,
                                std::uint32_t pixelSize, std::uint8_t* const planes[4]) {
  if (pixelSize == 4)
    split<4>(pixels, count, planes);
  else
    split<3>(pixels, count, planes);
}

void splitPortable(const std::uint8_t* pixels, std::size_t count, std::uint32_t pixelSize,
                   std::uint8_t* const planes[4]) {
  splitEither(pixels, count, pixelSize, planes);
}

#if MORVANE_HAS_AVX2
MORVANE_AVX2 void splitAvx2(const std::uint8_t* pixels, std::size_t count, std::uint32_t pixelSize,
                            std::uint8_t* const planes[4]) {
  splitEither(pixels, count, pixelSize, planes);
}
#endif

}  // namespace

void splitPixels(const std::uint8_t* pixels, std::size_t count, std::uint32_t pixelSize,
                 std::uint8_t* const planes[4]) {
#if MORVANE_HAS_AVX2
  static const auto kSplit = hasAvx2() ? splitAvx2 : splitPortable;
  kSplit(pixels, count, pixelSize, planes);
#else
  splitPortable(pixels, count, pixelSize, planes);
#endif
}

}  // namespace morvane
