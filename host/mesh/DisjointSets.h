#ifndef MORVANE_HOST_MESH_DISJOINTSETS_H_
#define MORVANE_HOST_MESH_DISJOINTSETS_H_

#include <algorithm>
#include <numeric>
#include <vector>

namespace host {

// Sets of the numbers from 0 on. Each number starts as a set of its own, and sets are joined.
class DisjointSets {
 public:
  explicit DisjointSets(std::size_t count) : above_(count) {
    std::iota(above_.begin(), above_.end(), 0);
  }

  // The least number of the set that holds `number`.
  int leastOf(int number) {
    while (at(number) != number) number = at(number) = at(at(number));
    return number;
  }
  void join(int a, int b) {
    const int one = leastOf(a);
    const int other = leastOf(b);
    at(std::max(one, other)) = std::min(one, other);
  }

 private:
  int& at(int number) { return above_[static_cast<std::size_t>(number)]; }

  std::vector<int> above_;
};

}  // namespace host

#endif  // MORVANE_HOST_MESH_DISJOINTSETS_H_
