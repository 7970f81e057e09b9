#ifndef MORVANE_BENCH_COMPARISON_H_
#define MORVANE_BENCH_COMPARISON_H_

#include <cstdint>
#include <functional>
#include <string>

// Measures work of ours against a peer that does the same work, or against the part of it that
// nobody can avoid (a copy, a read), and holds the ratio against a target.
//
//   const bool declared = bench::declare("reverse a page", [] {
//     bench::Comparison it;
//     it.peerName = "byte loop";
//     it.target = bench::atLeast(2);  // twice as fast as the peer
//     it.bytes = kPage;
//     it.ours = [page = randomPage()] { reverse(page); };
//     it.peer = ...;
//     return it;
//   });
//
// The name is the first column of the table and what --benchmark_filter searches.
namespace bench {

struct Target {
  enum Kind { kAtLeast, kAtMost };
  Kind kind = kAtLeast;
  double ratio = 1;

  bool isMetBy(double measured) const {
    return kind == kAtLeast ? measured >= ratio : measured <= ratio;
  }
};

// The ratio is the peer's time over ours: how many times as fast we are.
inline Target atLeast(double ratio) {
  return {Target::kAtLeast, ratio};
}
// The ratio is our time over the peer's: what we cost beside it.
inline Target atMost(double ratio) {
  return {Target::kAtMost, ratio};
}

struct Comparison {
  std::string peerName;
  Target target;
  double bytes = 0;  // that one call works on, for the rates in the table; 0: none are given
  // Time on the clock instead of the processor's: for work that waits for a disk or a process.
  bool waits = false;
  int rounds = 15;  // each gives one ratio
  std::function<void()> ours;
  std::function<void()> peer;
  std::function<void()> prepare;  // not timed; called before every call of the two, where given
  std::string problem;            // why the two cannot be compared; empty when they can
};

// Declares a comparison, at namespace scope. `make` is called when it is run, and brings the inputs
// with the functions that it returns. Always true.
//
// A round times the peer, ours and the peer again, and takes our time against the better of the
// peer's, so that a first touch of fresh memory is not held against the peer. The ratio is the
// median over the rounds, the times are those of the round that has it. Work of less than a
// millisecond is repeated within a round.
bool declare(const std::string& name, std::function<Comparison()> make);

// The median of our time alone, in seconds, over the rounds; for work without a peer.
double medianTime(const Comparison& it);

// A line of the table that is measured in another way, or in another unit than seconds.
struct Row {
  std::string work;
  std::string peerName;
  std::string unit = "s";  // of ours and peer: "s" or "MiB"
  double ours = 0;
  double peer = 0;
  double bytes = 0;
  double ratio = 0;
  Target target;
};

// Adds a row, or replaces the one of the same work.
void addRow(const Row& row);

// The rows in a Markdown table, in the order in which they came.
std::string table();

}  // namespace bench

#endif  // MORVANE_BENCH_COMPARISON_H_
