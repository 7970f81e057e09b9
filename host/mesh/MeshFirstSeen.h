#ifndef MORVANE_HOST_MESH_MESHFIRSTSEEN_H_
#define MORVANE_HOST_MESH_MESHFIRSTSEEN_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace host {

// Spreads 64 bits over 64 bits: the finaliser of the SplitMix64 generator (public domain).
inline std::uint64_t mixBits(std::uint64_t x) {
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
  return x ^ (x >> 31);
}

// Finds the number that an equal element got before. The elements are the caller's; this keeps
// their numbers, in a table with open addressing that is at most half full.
class FirstSeen {
 public:
  explicit FirstSeen(std::size_t mostElements) {
    std::size_t size = 16;
    while (size < 2 * mostElements) size *= 2;
    slots_.assign(size, -1);
  }

  // `equals(n)` says whether element number n equals the new one. Gives the number of the equal
  // element. Without one it gives −1, and the new element gets the number `next`.
  template <typename Equals>
  int findOrAdd(std::uint64_t hash, int next, Equals equals) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = static_cast<std::size_t>(mixBits(hash)) & mask;
    for (; slots_[slot] != -1; slot = (slot + 1) & mask)
      if (equals(slots_[slot])) return slots_[slot];
    slots_[slot] = next;
    return -1;
  }

 private:
  std::vector<int> slots_;
};

}  // namespace host

#endif  // MORVANE_HOST_MESH_MESHFIRSTSEEN_H_
