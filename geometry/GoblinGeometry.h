#ifndef MORVANE_GEOMETRY_GOBLINGEOMETRY_H_
#define MORVANE_GEOMETRY_GOBLINGEOMETRY_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "geometry/GoblinFormat.h"
#include "geometry/TileMesh.h"
#include "util/Matrix44.h"

namespace morvane {

struct GoblinFace {
  std::int32_t cornerCount = 0;
  std::unique_ptr<std::int32_t[]> indices;  // cornerCount pool indices; may be null for none
};

// Texts end with a zero. A null text and an empty one are the same in the blob.
struct GoblinRecord {
  std::unique_ptr<char[]> name;
  std::unique_ptr<char[]> textureFileName;
  std::int32_t faceCount = 0;
  std::unique_ptr<GoblinFace[]> faces;  // faceCount of them
};

struct GoblinGeometryBuilder {
  std::vector<GoblinPoolVertex> pool;
  std::vector<std::unique_ptr<GoblinRecord>> records;
};

// Appends a goblin: its vertices mapped by `toTile` from the mesh's object space into tile space,
// and its triangles. The tagged layout mirrors z and keeps the corner order; the named one reverses
// the corners. The texts are copied; null leaves the record's text unset. Returns how many of the
// vertices lie more than 0.01 outside [0, 1] in tile-space x or z.
std::size_t appendGoblin(const WeldedMesh& mesh, const Matrix44& toTile, GoblinLayout layout,
                         const char* name, const char* textureFileName,
                         GoblinGeometryBuilder& builder);

// A copy of `text`, of its length + 1 bytes.
std::unique_ptr<char[]> copyText(const char* text);

// Stores `value` at `offset` and returns the offset behind it.
std::ptrdiff_t writeU32At(std::uint8_t* bytes, std::ptrdiff_t offset, std::uint32_t value);

// Fetches the word at `offset` and returns the offset behind it; -1, reading nothing, without a
// destination.
std::ptrdiff_t readU32At(const std::uint8_t* bytes, std::ptrdiff_t offset,
                         std::uint32_t* destination);

// The exact number of bytes that encodeGoblinGeometry writes.
std::uint64_t encodedGoblinGeometrySize(const GoblinGeometryBuilder& builder, GoblinLayout layout);

// Writes the blob and returns its size; 0, writing nothing, when `capacity` bytes do not hold it.
std::uint32_t encodeGoblinGeometry(const GoblinGeometryBuilder& builder, GoblinLayout layout,
                                   std::uint8_t* bytes, std::uint64_t capacity);

// Where the parts of one goblin lie in a blob, in bytes from its beginning.
struct GoblinExtent {
  std::size_t name = 0;  // both texts are empty in the tagged layout
  std::size_t nameLength = 0;
  std::size_t texture = 0;
  std::size_t textureLength = 0;
  std::size_t faces = 0;  // of the first face's corner count
  std::size_t facesLength = 0;
  std::uint32_t faceCount = 0;
};

// Reads a blob step by step: the pool, the goblin count, then one record after the other. It stops
// for good at the first value that does not fit: a count or length that reaches past the blob's
// end, a count with its top bit set, an index outside the pool. Reading a blob of n bytes and
// keeping all of it takes at most 16 n of memory. Goblins without faces take the most.
class GoblinGeometryReader {
 public:
  // `bytes` must outlive the reader.
  GoblinGeometryReader(const std::uint8_t* bytes, std::size_t size, GoblinLayout layout);

  bool readPool(std::vector<GoblinPoolVertex>& pool);
  bool readGoblinCount(std::uint32_t& count);
  bool readGoblin(GoblinRecord& record);

  // As readPool() and readGoblin(), without a copy: they check the bytes and step over them. The
  // pool is `count` vertices from byte `start` on.
  bool locatePool(std::size_t& start, std::uint32_t& count);
  bool locateGoblin(GoblinExtent& extent);

  // How many bytes were read, without the value at which reading stopped.
  std::size_t consumed() const { return offset_; }
  // Whether the last call failed for want of memory, and not for what the bytes are.
  bool lacksMemory() const { return lacksMemory_; }

 private:
  friend bool fitsLayout(const std::uint8_t* bytes, std::size_t size, GoblinLayout layout);

  std::size_t left() const { return size_ - offset_; }
  bool peekWord(std::uint32_t& word) const;
  bool readCount(std::size_t bytesEach, std::uint32_t& count);
  bool readPoolSize();
  bool locateText(std::size_t& start, std::size_t& length);
  bool readText(std::unique_ptr<char[]>& text);
  bool readCorners(std::uint32_t corners, std::int32_t* indices);
  bool readFace(GoblinFace& face);
  bool skipBlob();

  const std::uint8_t* bytes_;
  std::size_t size_;
  std::size_t offset_ = 0;
  std::uint32_t poolSize_ = 0;
  GoblinLayout layout_;
  bool lacksMemory_ = false;
};

// Whether the blob reads in `layout` from its first to exactly its last byte. Allocates nothing.
bool fitsLayout(const std::uint8_t* bytes, std::size_t size, GoblinLayout layout);

enum class GoblinBlobKind { kNamed, kTagged, kDamaged };

// The layout that fits; the named one where both do.
GoblinBlobKind classifyGoblinBlob(const std::uint8_t* bytes, std::size_t size);

}  // namespace morvane

#endif  // MORVANE_GEOMETRY_GOBLINGEOMETRY_H_
