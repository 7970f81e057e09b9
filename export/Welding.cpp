#include <cstring>

#include "export/TileMesh.h"

namespace morvane {
namespace {

// A bucket that holds more entries than this is searched through its index.
constexpr std::size_t kScanLimit = 16;

using KeyWords = std::array<std::uint32_t, 15>;

KeyWords wordsOf(const VertexKey& key) {
  KeyWords words;
  std::memcpy(words.data(), &key, sizeof key);
  return words;
}

bool sameBits(const VertexKey& a, const VertexKey& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// The sum that chooses the bucket. v (word 7) and all words after the first reserved one stay out
// of it.
std::uint32_t hashOf(const VertexKey& key) {
  const KeyWords words = wordsOf(key);
  std::uint32_t sum = words[8];
  for (std::size_t i = 0; i < 7; ++i) sum += words[i];
  return sum;
}

// Mixes every bit of the key into the high bits, which place it in a bucket's index.
std::uint32_t digestOf(const VertexKey& key) {
  std::array<std::uint64_t, 8> words{};
  std::memcpy(words.data(), &key, sizeof key);
  std::uint64_t state = 0;
  for (const std::uint64_t word : words) {
    state = (state ^ word) * 0x9E3779B97F4A7C15U;
    state ^= state >> 32;
  }
  return static_cast<std::uint32_t>(state);
}

// The slot at which a search starts. It keeps the digests' order, so that an index doubles in one
// pass from front to back instead of with a cache miss for each of its entries.
std::size_t homeSlot(std::uint32_t digest, std::size_t indexSize) {
  return static_cast<std::size_t>(std::uint64_t{digest} * indexSize >> 32);
}

template <typename T>
T elementOrZero(const GrowArray<T>& table, std::int32_t index) {
  return index >= 0 && index < static_cast<std::int32_t>(table.size()) ? table[index] : T{};
}

VertexKey keyOf(const TileMesh& mesh, const TileTriangle& triangle, std::size_t corner) {
  VertexKey key;
  key.position = elementOrZero(mesh.positions, triangle.positions[corner]);
  key.normal = elementOrZero(mesh.normals, triangle.normals[corner]);
  key.uv = elementOrZero(mesh.uvs, triangle.uvs[corner]);
  key.colour = elementOrZero(mesh.colours, triangle.colours[corner]);
  return key;
}

}  // namespace

std::int32_t WeldTable::find(const VertexKey& key, std::uint32_t hash,
                             const std::vector<VertexKey>& vertices) const {
  const Bucket& bucket = buckets_[hash % kBucketCount];
  if (bucket.index.empty()) {
    for (const Entry& entry : bucket.entries) {
      if (entry.hash == hash && sameBits(vertices[entry.vertex], key)) return entry.vertex;
    }
    return -1;
  }
  const std::uint32_t digest = digestOf(key);
  const std::size_t mask = bucket.index.size() - 1;
  for (std::size_t at = homeSlot(digest, mask + 1); bucket.index[at].vertex >= 0;
       at = (at + 1) & mask) {
    const Slot& slot = bucket.index[at];
    if (slot.digest == digest && sameBits(vertices[slot.vertex], key)) return slot.vertex;
  }
  return -1;
}

void WeldTable::add(std::int32_t vertex, std::uint32_t hash,
                    const std::vector<VertexKey>& vertices) {
  Bucket& bucket = buckets_[hash % kBucketCount];
  bucket.entries.push_back({vertex, hash});
  if (bucket.entries.size() <= kScanLimit) return;
  if (bucket.index.empty()) return startIndex(bucket, vertices);
  if (bucket.entries.size() * 2 > bucket.index.size()) growIndex(bucket);
  insert(bucket.index, {vertex, digestOf(vertices[vertex])});
}

void WeldTable::insert(std::vector<Slot>& index, Slot slot) {
  const std::size_t mask = index.size() - 1;
  std::size_t at = homeSlot(slot.digest, index.size());
  while (index[at].vertex >= 0) at = (at + 1) & mask;
  index[at] = slot;
}

void WeldTable::growIndex(Bucket& bucket) {
  std::vector<Slot> index(2 * bucket.index.size(), Slot{-1, 0});
  for (const Slot& slot : bucket.index) {
    if (slot.vertex >= 0) insert(index, slot);
  }
  bucket.index = std::move(index);
}

void WeldTable::startIndex(Bucket& bucket, const std::vector<VertexKey>& vertices) {
  bucket.index.assign(4 * kScanLimit, Slot{-1, 0});
  for (const Entry& entry : bucket.entries) {
    insert(bucket.index, {entry.vertex, digestOf(vertices[entry.vertex])});
  }
}

std::int32_t weldVertex(const VertexKey& key, std::vector<VertexKey>& vertices, WeldTable& table) {
  const std::uint32_t hash = hashOf(key);
  const std::int32_t known = table.find(key, hash, vertices);
  if (known >= 0) return known;
  vertices.push_back(key);
  const auto vertex = static_cast<std::int32_t>(vertices.size() - 1);
  table.add(vertex, hash, vertices);
  return vertex;
}

WeldedMesh weldTileMesh(const TileMesh& mesh) {
  WeldedMesh welded;
  WeldTable table;
  const auto triangles = static_cast<std::int32_t>(mesh.triangles.size());
  welded.triangles.reserve(triangles);
  welded.vertices.reserve(mesh.positions.size());
  for (std::int32_t i = 0; i < triangles; ++i) {
    std::array<std::int32_t, 3> corners{};
    for (std::size_t corner = 0; corner < 3; ++corner) {
      corners[corner] = weldVertex(keyOf(mesh, mesh.triangles[i], corner), welded.vertices, table);
    }
    welded.triangles.push_back(corners);
  }
  return welded;
}

}  // namespace morvane
