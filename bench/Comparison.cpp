#include "bench/Comparison.h"

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace bench {
namespace {

struct Round {
  double ours;
  double peer;
};

double now(bool waits) {
  timespec time{};
  clock_gettime(waits ? CLOCK_MONOTONIC : CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Seconds that one call takes.
double timed(const Comparison& it, const std::function<void()>& work, int repetitions) {
  if (it.prepare) it.prepare();
  const double start = now(it.waits);
  for (int i = 0; i < repetitions; ++i) work();
  return (now(it.waits) - start) / repetitions;
}

// How often `work` is called in a row, for a millisecond in all. What is prepared is used up by one
// call.
int repetitionsOf(const Comparison& it, const std::function<void()>& work) {
  constexpr double kLongEnough = 1e-3;
  if (it.prepare || it.waits) return 1;
  int repetitions = 1;
  while (repetitions < 1 << 16 && repetitions * timed(it, work, repetitions) < kLongEnough)
    repetitions *= 2;
  return repetitions;
}

double ratioOf(const Target& target, double ours, double peer) {
  return target.kind == Target::kAtLeast ? peer / ours : ours / peer;
}

Row medianOf(const std::string& name, const Comparison& it, std::vector<Round> rounds) {
  const auto ratio = [&](const Round& round) { return ratioOf(it.target, round.ours, round.peer); };
  const auto middle = rounds.begin() + static_cast<std::ptrdiff_t>(rounds.size() / 2);
  std::nth_element(rounds.begin(), middle, rounds.end(),
                   [&](const Round& a, const Round& b) { return ratio(a) < ratio(b); });
  return {name, it.peerName, "s", middle->ours, middle->peer, it.bytes, ratio(*middle), it.target};
}

void run(benchmark::State& state, const std::string& name,
         const std::function<Comparison()>& make) {
  const Comparison it = make();
  if (!it.problem.empty()) return state.SkipWithError(it.problem.c_str());
  const int ours = repetitionsOf(it, it.ours);
  const int peer = repetitionsOf(it, it.peer);
  std::vector<Round> rounds;
  for (auto _ : state) {
    for (int i = 0; i < it.rounds; ++i) {
      const double first = timed(it, it.peer, peer);
      const double time = timed(it, it.ours, ours);
      rounds.push_back({time, std::min(first, timed(it, it.peer, peer))});
    }
  }
  const Row row = medianOf(name, it, std::move(rounds));
  addRow(row);
  state.SetIterationTime(row.ours);
  state.counters["peer"] = row.peer;
  state.counters["ratio"] = row.ratio;
}

std::vector<Row>& rows() {
  static std::vector<Row> all;
  return all;
}

template <typename... Values>
std::string formatted(const char* format, Values... values) {
  char text[256];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

std::string duration(double seconds) {
  if (seconds >= 1) return formatted("%.2f s", seconds);
  if (seconds >= 1e-3) return formatted("%.3g ms", seconds * 1e3);
  return formatted("%.3g µs", seconds * 1e6);
}

std::string value(const Row& row, double measured) {
  if (row.unit != "s") return formatted("%.1f ", measured) + row.unit;
  if (row.bytes == 0) return duration(measured);
  return duration(measured) + formatted(" (%.3g GB/s)", row.bytes / measured * 1e-9);
}

std::string line(const Row& row) {
  const char* const sign = row.target.kind == Target::kAtLeast ? "≥" : "≤";
  return "| " + row.work + " | " + value(row, row.ours) + " | " + row.peerName + ": " +
         value(row, row.peer) + " | " + formatted("%.3g×", row.ratio) + " | " + sign +
         formatted(" %.3g×", row.target.ratio) + " | " +
         (row.target.isMetBy(row.ratio) ? "met" : "**not met**") + " |\n";
}

}  // namespace

bool declare(const std::string& name, std::function<Comparison()> make) {
  benchmark::RegisterBenchmark(
      name.c_str(),
      [name, make = std::move(make)](benchmark::State& state) { run(state, name, make); })
      ->UseManualTime()
      ->Iterations(1)
      ->Unit(benchmark::kMillisecond);
  return true;
}

double medianTime(const Comparison& it) {
  const int repetitions = repetitionsOf(it, it.ours);
  std::vector<double> times;
  for (int i = 0; i < it.rounds; ++i) times.push_back(timed(it, it.ours, repetitions));
  std::nth_element(times.begin(), times.begin() + it.rounds / 2, times.end());
  return times[static_cast<std::size_t>(it.rounds / 2)];
}

void addRow(const Row& row) {
  const auto same = std::find_if(rows().begin(), rows().end(),
                                 [&](const Row& other) { return other.work == row.work; });
  if (same == rows().end())
    rows().push_back(row);
  else
    *same = row;
}

std::string table() {
  std::string text = "| work | ours | peer | ratio | target | |\n|---|---|---|---|---|---|\n";
  for (const Row& row : rows()) text += line(row);
  return text;
}

}  // namespace bench
