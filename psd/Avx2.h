#ifndef MORVANE_PSD_AVX2_H_
#define MORVANE_PSD_AVX2_H_

// How a function is compiled for x86 processors with AVX2 while the rest of the program is not, and
// whether such a function may be called.

#if defined(__x86_64__) || defined(_M_X64)
#define MORVANE_HAS_AVX2 1
#include <immintrin.h>
#ifdef _MSC_VER
#include <intrin.h>
#define MORVANE_AVX2
#else
#include <cpuid.h>
#define MORVANE_AVX2 __attribute__((target("avx2,popcnt,bmi,lzcnt")))
#endif

namespace morvane {

inline bool hasAvx2() {
  constexpr unsigned kLzcnt = 1u << 5;  // in the third word of leaf 0x80000001
#ifdef _MSC_VER
  constexpr int kOsSavesVectors = 1 << 27, kPopcnt = 1 << 23, kBmi1Avx2 = 1 << 3 | 1 << 5;
  int basic[4], features[4], extended[4];
  __cpuid(basic, 1);
  __cpuidex(features, 7, 0);
  __cpuid(extended, static_cast<int>(0x80000001u));
  return (basic[2] & kOsSavesVectors) != 0 && (basic[2] & kPopcnt) != 0 && (_xgetbv(0) & 6) == 6 &&
         (features[1] & kBmi1Avx2) == kBmi1Avx2 && (extended[2] & kLzcnt) != 0;
#else
  unsigned a = 0, b = 0, c = 0, d = 0;  // clang 14 has no name for lzcnt
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt") &&
         __builtin_cpu_supports("bmi") && __get_cpuid(0x80000001u, &a, &b, &c, &d) != 0 &&
         (c & kLzcnt) != 0;
#endif
}

}  // namespace morvane

#else
#define MORVANE_HAS_AVX2 0
#endif

#endif  // MORVANE_PSD_AVX2_H_
