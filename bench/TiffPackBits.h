#ifndef MORVANE_BENCH_TIFFPACKBITS_H_
#define MORVANE_BENCH_TIFFPACKBITS_H_

#include <cstdint>
#include <memory>

#include "bench/Planes.h"

namespace bench {

// A plane of bytes that libtiff packs or unpacks, as the one strip of a TIFF file in memory.
class TiffPlane {
 public:
  // Packed by libtiff.
  static std::shared_ptr<TiffPlane> pack(const Bytes& plane, std::uint32_t side);
  // Packed already: rows without their lengths.
  static std::shared_ptr<TiffPlane> wrap(const Bytes& packedRows, std::uint32_t side);

  virtual ~TiffPlane() = default;

  // The packed rows.
  virtual Bytes packedRows() = 0;
  // Unpacks the plane; false when libtiff cannot.
  virtual bool unpack(Bytes& plane) = 0;
};

}  // namespace bench

#endif  // MORVANE_BENCH_TIFFPACKBITS_H_
