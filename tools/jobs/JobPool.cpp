#include "tools/jobs/JobPool.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

#include "tools/jobs/JobChild.h"

namespace tools {
namespace {

// What waits for its turn to be printed; beyond it, children wait.
constexpr std::size_t kMostHeld = std::size_t{64} << 20;

class Pool {
 public:
  Pool(const std::vector<std::string>& arguments, const PoolSize& size, const JobCalls& calls)
      : arguments_(arguments), size_(size), calls_(calls) {}

  bool run() {
    std::vector<std::thread> threads;
    try {
      for (unsigned i = 1; i < size_.jobs; ++i) threads.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      // Fewer do it, too.
    }
    work();
    for (std::thread& thread : threads) thread.join();
    if (failure_) std::rethrow_exception(failure_);
    return printed_;
  }

 private:
  struct Held {
    Message result;
    Printed printed;
  };

  // What one child does.
  void work() {
    try {
      JobChild child(arguments_);
      while (const auto unit = nextUnit()) finish(*unit, doUnit(child, *unit), child);
    } catch (...) {
      // Nobody above catches what a thread throws.
      const std::lock_guard<std::mutex> lock(mutex_);
      failure_ = std::current_exception();
      next_ = size_.units;
      finished_.notify_all();
    }
  }

  std::optional<std::size_t> nextUnit() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (next_ == size_.units) return std::nullopt;
    return next_++;
  }

  Message doUnit(JobChild& child, std::size_t unit) {
    const struct Leaving {
      const JobCalls& calls;
      std::size_t unit;
      ~Leaving() { calls.leave(unit); }
    } leaving{calls_, unit};
    std::string why;
    if (!start(child, why)) return calls_.lose(unit, "could not be started: " + why);
    bool alive = child.channel().send(calls_.order(unit));
    while (alive) {
      std::optional<Message> message = child.channel().receive();
      if (!message) break;
      if (message->contains("result")) return std::move((*message)["result"]);
      if (message->contains("question")) {
        alive = child.channel().send(calls_.answer(unit, (*message)["question"]));
      } else {
        const std::lock_guard<std::mutex> lock(mutex_);
        calls_.hear(unit, (*message)["news"]);
      }
    }
    return calls_.lose(unit, child.end());
  }

  bool start(JobChild& child, std::string& why) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return child.isRunning() || child.start(why);
  }

  void finish(std::size_t unit, Message result, JobChild& child) {
    std::unique_lock<std::mutex> lock(mutex_);
    const std::size_t size = child.printedBytes();
    const auto mustWait = [&] {
      return size_.ordered && unit != ended_ && heldBytes_ + size > kMostHeld && !failure_;
    };
    finished_.wait(lock, [&] { return !mustWait(); });
    if (size_.ordered && unit != ended_) {
      held_[unit] = {std::move(result), child.takePrinted()};
      heldBytes_ += size;
      return;
    }
    print([&] { return child.passOn(); });
    calls_.finish(unit, result);
    ++ended_;
    finishHeld();
    finished_.notify_all();
  }

  void finishHeld() {
    for (auto first = held_.begin(); first != held_.end() && first->first == ended_;
         first = held_.erase(first)) {
      const Printed& printed = first->second.printed;
      print([&] { return printed.passOn(); });
      heldBytes_ -= printed.out.size() + printed.err.size();
      calls_.finish(first->first, first->second.result);
      ++ended_;
    }
  }

  void print(const std::function<bool()>& passOn) {
    calls_.makeRoom([&] { printed_ = passOn() && printed_; });
  }

  const std::vector<std::string>& arguments_;
  const PoolSize& size_;
  const JobCalls& calls_;
  std::mutex mutex_;
  std::condition_variable finished_;
  std::size_t next_ = 0;   // unit to be begun
  std::size_t ended_ = 0;  // units; where they are ordered, those before it have all ended
  std::map<std::size_t, Held> held_;
  std::size_t heldBytes_ = 0;
  bool printed_ = true;
  std::exception_ptr failure_;
};

}  // namespace

unsigned jobsFor(unsigned asked, std::size_t units) {
  const unsigned wanted = asked != 0 ? asked : std::max(1u, std::thread::hardware_concurrency());
  return static_cast<unsigned>(std::min<std::size_t>({wanted, units, kMostJobs}));
}

bool runJobs(const std::vector<std::string>& arguments, const PoolSize& size,
             const JobCalls& calls) {
  return Pool(arguments, size, calls).run();
}

}  // namespace tools
