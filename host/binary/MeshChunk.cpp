#include "host/binary/MeshChunk.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "util/ByteOrder.h"

namespace host {
namespace {

using morvane::loadBe32;
using morvane::loadBeFloat;

constexpr std::uint32_t kHighBit = 0x80000000;  // a hard edge, an edge that runs backwards
constexpr std::uint32_t kLoopEnd = 0x60000000;  // both bits: also the end of the face
constexpr std::uint32_t kEdgeMask = 0x1FFFFFFF;

constexpr std::size_t kWord = 4;  // bytes of every number in these tables
// A block's size is a multiple of those of points, pairs and UVs, and small enough that the tables
// made of it stay in the processor's cache.
constexpr std::size_t kBlockWords = 6 << 11;
constexpr std::size_t kLongestName = 4096;

class MeshChunkReader {
 public:
  MeshChunkReader(ByteWindow& bytes, std::uint64_t start, std::uint64_t length, MeshData& mesh)
      : bytes_(bytes), at_(start), end_(start + length), mesh_(mesh) {}

  ChunkProblem read() {
    const bool ok = readPoints() && readEdges() && readFaces() && readNormals() && readUvSets() &&
                    readColourSets();
    return {ok ? std::string() : problem_, at_};
  }

 private:
  bool fail(std::string problem) {
    problem_ = std::move(problem);
    return false;
  }

  const std::uint8_t* take(std::size_t count) {
    const std::uint8_t* const taken = count > end_ - at_ ? nullptr : bytes_.at(at_, count);
    at_ += taken == nullptr ? 0 : count;
    return taken;
  }

  bool readWord(std::uint32_t& word) {
    const std::uint8_t* const taken = take(kWord);
    word = taken == nullptr ? 0 : loadBe32(taken);
    return taken != nullptr || fail("a mesh ends before its tables do");
  }

  // Reads the count of a table whose entries are `width` words each.
  bool readCount(const char* what, std::size_t width, std::size_t& count) {
    std::uint32_t word = 0;
    if (!readWord(word)) return false;
    count = word;
    if (count > (end_ - at_) / kWord) {
      return fail("a mesh says that it has " + std::to_string(count) + " numbers for its " + what +
                  ", where " + std::to_string(end_ - at_) + " bytes are left");
    }
    return count % width == 0 ||
           fail(std::string("the last of a mesh's ") + what + " is not whole");
  }

  // The same for a table of the mesh itself, in which it reserves room for the elements.
  bool beginTable(MeshData::Table table, const char* what, std::size_t width, std::size_t& count) {
    if (!readCount(what, width, count)) return false;
    mesh_.reserve(table, count / width);
    return true;
  }

  // Calls `use(bytes, words, first)` for each block of a table of `count` words.
  template <class Use>
  bool forBlocks(std::size_t count, Use use) {
    for (std::size_t first = 0; first < count; first += kBlockWords) {
      const std::size_t words = std::min(kBlockWords, count - first);
      const std::uint8_t* const block = take(words * kWord);
      if (block == nullptr) return fail("a mesh cannot be read to its end");
      std::string problem = use(block, words, first);
      if (!problem.empty()) return fail("a mesh has " + std::move(problem));
    }
    return true;
  }

  bool readPoints() {
    std::size_t count = 0;
    std::vector<double> xyz(kBlockWords);
    return beginTable(MeshData::Table::kPoints, "points", 3, count) &&
           forBlocks(count, [&](const std::uint8_t* block, std::size_t words, std::size_t first) {
             for (std::size_t i = 0; i < words; ++i)
               xyz[i] = double{loadBeFloat(block + i * kWord)};
             return mesh_.setPoints(first / 3, xyz.data(), words / 3);
           });
  }

  bool readEdges() {
    std::size_t count = 0;
    std::vector<int> ends(kBlockWords / 2 * 3);
    return beginTable(MeshData::Table::kEdges, "edges", 2, count) &&
           forBlocks(count, [&](const std::uint8_t* block, std::size_t words, std::size_t first) {
             for (std::size_t i = 0; i < words / 2; ++i) {
               const std::uint32_t start = loadBe32(block + 2 * i * kWord);
               const std::uint32_t end = loadBe32(block + (2 * i + 1) * kWord);
               ends[3 * i] = static_cast<int>(start & ~kHighBit);
               ends[3 * i + 1] = static_cast<int>(end & ~kHighBit);
               ends[3 * i + 2] = (start & kHighBit) != 0 ? 0 : 1;
             }
             return mesh_.setEdges(first / 2, ends.data(), words / 2);
           });
  }

  std::string endLoop(const int* edges, std::size_t count, std::uint32_t corner) {
    std::string problem = isHole_ ? mesh_.addHole(edges, count) : mesh_.addFace(edges, count);
    isHole_ = (corner & kLoopEnd) != kLoopEnd;
    return problem;
  }

  // The edges of a block go behind those of the loop that the last one ended in.
  std::string addCorners(const std::uint8_t* block, std::size_t words) {
    std::string problem = mesh_.beginFaces(mesh_.storedFaceStarts().size() - 1);
    std::size_t start = 0;
    std::size_t end = loop_.size();
    loop_.resize(end + words);
    for (std::size_t i = 0; i < words && problem.empty(); ++i) {
      const std::uint32_t corner = loadBe32(block + i * kWord);
      const int edge = static_cast<int>(corner & kEdgeMask);
      loop_[end++] = (corner & kHighBit) != 0 ? -edge - 1 : edge;
      if ((corner & kLoopEnd) == 0) continue;
      problem = endLoop(loop_.data() + start, end - start, corner);
      start = end;
    }
    loop_.erase(loop_.begin(), loop_.begin() + static_cast<std::ptrdiff_t>(start));
    return problem;
  }

  bool readFaces() {
    std::size_t count = 0;
    if (!beginTable(MeshData::Table::kCorners, "faces", 1, count)) return false;
    const bool ok = forBlocks(count, [&](const std::uint8_t* block, std::size_t words,
                                         std::size_t) { return addCorners(block, words); });
    return ok && ((loop_.empty() && !isHole_) || fail("the last face of a mesh has no end"));
  }

  bool readNormals() {
    std::size_t count = 0;
    std::uint32_t ignored = 0;
    return beginTable(MeshData::Table::kNormals, "normals", 3, count) &&
           forBlocks(count,
                     [&](const std::uint8_t* block, std::size_t words, std::size_t first) {
                       loadFloats(block, words);
                       return mesh_.setNormals(first / 3, floats_.data(), words / 3);
                     }) &&
           (count == 0 || readWord(ignored));
  }

  void loadFloats(const std::uint8_t* block, std::size_t words) {
    floats_.resize(kBlockWords);
    for (std::size_t i = 0; i < words; ++i) floats_[i] = loadBeFloat(block + i * kWord);
  }

  bool readName(std::string& name) {
    const auto longest =
        static_cast<std::size_t>(std::min<std::uint64_t>(kLongestName, end_ - at_));
    const std::uint8_t* const bytes = longest == 0 ? nullptr : bytes_.at(at_, longest);
    const void* const end = bytes == nullptr ? nullptr : std::memchr(bytes, 0, longest);
    if (end == nullptr) return fail("the name of a set of a mesh has no end");
    name.assign(bytes, static_cast<const std::uint8_t*>(end));
    at_ += name.size() + 1;
    return true;
  }

  bool readIds(std::vector<int>& ids) {
    std::size_t count = 0;
    if (!readCount("ids", 1, count)) return false;
    if (count > mesh_.storedLoopEdges().size()) {
      return fail("a set of a mesh has " + std::to_string(count) + " ids for " +
                  std::to_string(mesh_.storedLoopEdges().size()) + " corners");
    }
    ids.resize(count);
    return forBlocks(count, [&](const std::uint8_t* block, std::size_t words, std::size_t first) {
      for (std::size_t i = 0; i < words; ++i)
        ids[first + i] = static_cast<int>(loadBe32(block + i * kWord));
      return std::string();
    });
  }

  // Reads how many sets there are, then calls `readOne` for each of them.
  bool readSets(bool (MeshChunkReader::*readOne)(int index)) {
    std::uint32_t sets = 0;
    if (!readWord(sets)) return false;
    for (std::uint32_t i = 0; i < sets; ++i) {
      std::uint32_t index = 0;
      if (!readWord(index)) return false;
      if (index > static_cast<std::uint32_t>(INT32_MAX) ||
          !(this->*readOne)(static_cast<int>(index))) {
        return problem_.empty() ? fail("a set of a mesh has no index") : false;
      }
    }
    return true;
  }

  bool readUvSet(int index) {
    MeshUvSet* const set = mesh_.uvSet(index);
    std::string name;
    if (set == nullptr) return fail("a mesh has too many UV sets");
    std::size_t count = 0;
    if (!readName(name) || !readCount("UVs", 2, count)) return false;
    set->name = name;
    set->uvs.reserve(count / 2);
    return forBlocks(count,
                     [&](const std::uint8_t* block, std::size_t words, std::size_t first) {
                       loadFloats(block, words);
                       return mesh_.setUvs(index, first / 2, floats_.data(), words / 2);
                     }) &&
           readIds(set->ids);
  }

  bool readColourSet(int index) {
    MeshColourSet* const set = mesh_.colourSet(index);
    std::string name;
    std::uint32_t components = 0;
    if (set == nullptr) return fail("a mesh has too many colour sets");
    if (!readName(name) || !readWord(components)) return false;
    if (components != 1 && components != 3 && components != 4)
      return fail("a colour set of a mesh has " + std::to_string(components) + " numbers a colour");
    set->name = name;
    set->components = static_cast<int>(components);
    std::size_t count = 0;
    if (!readCount("colours", components, count)) return false;
    set->colours.reserve(count / components);
    return forBlocks(count,
                     [&](const std::uint8_t* block, std::size_t words, std::size_t first) {
                       loadFloats(block, words);
                       return mesh_.setColours(index, first / components, floats_.data(), words);
                     }) &&
           readIds(set->ids);
  }

  bool readUvSets() { return readSets(&MeshChunkReader::readUvSet); }
  bool readColourSets() { return readSets(&MeshChunkReader::readColourSet); }

  ByteWindow& bytes_;
  std::uint64_t at_;
  const std::uint64_t end_;
  MeshData& mesh_;
  std::vector<float> floats_;
  std::vector<int> loop_;
  bool isHole_ = false;
  std::string problem_;
};

}  // namespace

ChunkProblem readMeshChunk(ByteWindow& bytes, std::uint64_t start, std::uint64_t length,
                           MeshData& mesh) {
  return MeshChunkReader(bytes, start, length, mesh).read();
}

}  // namespace host
