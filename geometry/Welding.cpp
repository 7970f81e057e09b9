#include <algorithm>
#include <cstring>

#include "geometry/TileMesh.h"
#include "util/LargePages.h"
#include "util/Prefetch.h"

namespace morvane {
namespace {

constexpr std::size_t kFirstSlots = 64;

bool sameBits(const VertexKey& a, const VertexKey& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// The key as eight words. Each word holds fields that were written together: a processor that joins
// two fresh halves into a word waits until both have reached its cache.
std::array<std::uint64_t, 8> wordsOf(const VertexKey& key) {
  const auto word = [](const void* from) {
    std::uint64_t value;
    std::memcpy(&value, from, sizeof value);
    return value;
  };
  const auto half = [](const void* from) {
    std::uint32_t value;
    std::memcpy(&value, from, sizeof value);
    return std::uint64_t{value};
  };
  return {word(&key.position.x),
          word(&key.normal.x),
          half(&key.position.z) << 32 | half(&key.normal.z),
          word(&key.uv),
          word(&key.reserved[0]),
          word(&key.reserved[2]),
          word(&key.reserved[4]),
          key.colour};
}

// Mixes every bit of the key into the high bits, which choose its slot in the table. Two states
// take turns at the words, so that the processor works on both at once.
std::uint32_t hashOf(const VertexKey& key) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  const std::array<std::uint64_t, 8> words = wordsOf(key);
  std::uint64_t even = 0;
  std::uint64_t odd = 0;
  for (std::size_t i = 0; i < words.size(); i += 2) {
    even = (even ^ words[i]) * kFactor;
    odd = (odd ^ words[i + 1]) * kFactor;
    even ^= even >> 32;
    odd ^= odd >> 32;
  }
  return static_cast<std::uint32_t>((even * kFactor ^ odd) * kFactor >> 32);
}

// The slot at which a search starts. Slots are in the order of the hashes, so that a table doubles
// in one pass from front to back, without a cache miss for each entry.
std::size_t homeSlot(std::uint32_t hash, std::size_t slots) {
  return static_cast<std::size_t>(std::uint64_t{hash} * slots >> 32);
}

template <typename T>
T elementOrZero(const GrowArray<T>& table, std::int32_t index) {
  return index >= 0 && index < table.size() ? table[index] : T{};
}

VertexKey keyOf(const TileMesh& mesh, const TileTriangle& triangle, std::size_t corner) {
  VertexKey key;
  key.position = elementOrZero(mesh.positions, triangle.positions[corner]);
  key.normal = elementOrZero(mesh.normals, triangle.normals[corner]);
  key.uv = elementOrZero(mesh.uvs, triangle.uvs[corner]);
  key.colour = elementOrZero(mesh.colours, triangle.colours[corner]);
  return key;
}

// Welds corner after corner, in blocks of triangles. Most corners around a point name the same
// entries of the tables: they get the vertex of the last corner there, and their keys are not
// compared. The other corners of a block are looked up together, so that the processor waits for
// the table's memory once.
class Welder {
 public:
  static constexpr std::int32_t kBlock = 32;

  explicit Welder(const TileMesh& mesh);

  void weldBlock(std::int32_t first, std::int32_t end);

  WeldedMesh welded;

 private:
  // What a corner names beside its position, and its vertex. While a corner of this block waits to
  // be looked up, its vertex is -2 - i, where i is its index in waiting_.
  struct Corner {
    std::int32_t normal = 0;
    std::int32_t uv = 0;
    std::int32_t colour = 0;
    std::int32_t vertex = -1;  // none yet
  };
  struct Waiting {
    VertexKey key;
    std::uint32_t hash;
    std::int32_t place;
    std::int32_t vertex;
  };

  // All positions outside the table are the same point.
  std::int32_t placeOf(std::int32_t position) const {
    return position >= 0 && position < mesh_.positions.size() ? position : mesh_.positions.size();
  }
  std::int32_t numberOf(const TileTriangle& triangle, std::size_t corner);
  void lookUpWaiting();

  const TileMesh& mesh_;
  std::vector<Corner> corners_;  // the last one at each place
  std::array<Waiting, 3 * kBlock> waiting_;
  std::int32_t waitingCount_ = 0;
  WeldTable table_;
};

Welder::Welder(const TileMesh& mesh) : mesh_(mesh) {
  const std::size_t places = mesh.positions.size() + 1;
  reserveInLargePages(corners_, places);
  corners_.resize(places);
  reserveInLargePages(welded.triangles, mesh.triangles.size());
  reserveInLargePages(welded.vertices, places);
  table_.reserve(places);
}

std::int32_t Welder::numberOf(const TileTriangle& triangle, std::size_t corner) {
  const std::int32_t place = placeOf(triangle.positions[corner]);
  Corner& known = corners_[place];
  if (known.vertex == -1 || known.normal != triangle.normals[corner] ||
      known.uv != triangle.uvs[corner] || known.colour != triangle.colours[corner]) {
    Waiting& waiting = waiting_[waitingCount_];
    waiting.key = keyOf(mesh_, triangle, corner);
    waiting.hash = hashOf(waiting.key);
    waiting.place = place;
    table_.prefetch(waiting.hash);
    known = {triangle.normals[corner], triangle.uvs[corner], triangle.colours[corner],
             -2 - waitingCount_++};
  }
  return known.vertex;
}

void Welder::weldBlock(std::int32_t first, std::int32_t end) {
  waitingCount_ = 0;
  for (std::int32_t i = first; i < end; ++i) {
    const TileTriangle& triangle = mesh_.triangles[i];
    welded.triangles.push_back(
        {numberOf(triangle, 0), numberOf(triangle, 1), numberOf(triangle, 2)});
  }
  lookUpWaiting();
  for (std::int32_t i = first; i < end; ++i) {
    for (std::int32_t& number : welded.triangles[i])
      if (number < 0) number = waiting_[-2 - number].vertex;
  }
}

void Welder::lookUpWaiting() {
  for (std::int32_t i = 0; i < waitingCount_; ++i) {
    Waiting& waiting = waiting_[i];
    waiting.vertex = table_.findOrAdd(waiting.key, waiting.hash, welded.vertices);
    Corner& corner = corners_[waiting.place];
    if (corner.vertex == -2 - i) corner.vertex = waiting.vertex;
  }
}

}  // namespace

void WeldTable::reserve(std::size_t vertices) {
  std::size_t slots = kFirstSlots;
  while (slots < 2 * vertices) slots *= 2;
  if (slots > slots_.size()) resize(slots);
}

void WeldTable::prefetch(std::uint32_t hash) const {
  morvane::prefetch(&slots_[homeSlot(hash, slots_.size())]);
}

std::int32_t WeldTable::findOrAdd(const VertexKey& key, std::uint32_t hash,
                                  std::vector<VertexKey>& vertices) {
  if ((vertices.size() + 1) * 2 > slots_.size()) resize(std::max(kFirstSlots, 2 * slots_.size()));
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = homeSlot(hash, slots_.size());
  for (; slots_[at].number > 0; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.hash == hash && sameBits(vertices[slot.number - 1], key)) return slot.number - 1;
  }
  vertices.push_back(key);
  slots_[at] = {static_cast<std::int32_t>(vertices.size()), hash};
  return slots_[at].number - 1;
}

void WeldTable::resize(std::size_t count) {
  std::vector<Slot> slots;
  reserveInLargePages(slots, count);
  slots.resize(count);
  const std::size_t mask = count - 1;
  for (const Slot& slot : slots_) {
    if (slot.number == 0) continue;
    std::size_t at = homeSlot(slot.hash, count);
    while (slots[at].number > 0) at = (at + 1) & mask;
    slots[at] = slot;
  }
  slots_ = std::move(slots);
}

std::int32_t weldVertex(const VertexKey& key, std::vector<VertexKey>& vertices, WeldTable& table) {
  return table.findOrAdd(key, hashOf(key), vertices);
}

WeldedMesh weldTileMesh(const TileMesh& mesh) {
  Welder welder(mesh);
  const std::int32_t count = mesh.triangles.size();
  for (std::int32_t first = 0; first < count; first += Welder::kBlock)
    welder.weldBlock(first, std::min(count, first + Welder::kBlock));
  return std::move(welder.welded);
}

}  // namespace morvane
