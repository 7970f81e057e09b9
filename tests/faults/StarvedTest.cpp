// Lets one allocation after another of the program fail, wherever it is.

#include <cstdlib>
#include <random>
#include <set>

#include "tests/faults/SaveFolder.h"

namespace {

struct Use {
  const char* name;
  const char* line;
};

const Use kUses[] = {
    {"export", "$morvane export scene.ma"},
    {"exportTo", "$morvane export pebbled.ma tile1 --to new.psd"},
    {"import", "$morvane import bare.ma tile1 goblins.psd -o new.ma"},
    {"infoOfScene", "$morvane info scene.ma"},
    {"infoOfImages", "$morvane info a.psd goblins.psd --json"},
    {"goblins", "$morvane goblins goblins.psd --glb a.glb"},
    {"view", "$morvane view a.psd goblins.psd -o page.html"},
    {"run", "$morvane run scene.ma -c 'polyCube; setAttr tile1.tx 1' -o scene.ma"},
};

void PrintTo(const Use& use, std::ostream* out) {
  *out << use.line;
}

// All of them with MORVANE_STARVE_STEP=1 in the environment, every other with 2; else the first,
// and some between.
std::set<long> chosen(long allocations) {
  constexpr int kSampled = 16;
  std::set<long> numbers;
  if (const char* const step = std::getenv("MORVANE_STARVE_STEP")) {
    for (long n = 1; n <= allocations; n += std::max(1L, std::atol(step))) numbers.insert(n);
    return numbers;
  }
  std::minstd_rand random(5);
  for (long part = 0; part < kSampled; ++part) {
    std::uniform_int_distribution<long> inPart(1 + part * allocations / kSampled,
                                               (part + 1) * allocations / kSampled);
    numbers.insert(inPart(random));
  }
  numbers.insert(1);
  return numbers;
}

class Starved : public SaveFolder, public testing::WithParamInterface<Use> {
 protected:
  Starved() {
    reset(scenesAndTextures());
    EXPECT_EQ(inWork("$morvane export pebbled.ma tile1 --to goblins.psd").status, 0);
    old_ = look();
  }

  Outcome starve(const std::string& which) {
    reset(old_);
    return inWork("MORVANE_STARVE=" + which + " MORVANE_STARVE_REPORT=" + shellWord(path("count")) +
                  " LD_PRELOAD=" MORVANE_FAULTY_ALLOCATIONS " " + GetParam().line);
  }

  // Textures and scenes are the old ones or the new ones, and the program says which.
  void check(const Outcome& outcome, const std::string& which) {
    const Files found = look();
    for (const auto& [name, bytes] : new_) {
      const auto before = old_.find(name);
      const auto file = found.find(name);
      const bool isOld = before == old_.end()
                             ? file == found.end()
                             : file != found.end() && file->second == before->second;
      const bool isNew = file != found.end() && file->second == bytes;
      EXPECT_TRUE(isNew || (isOld && outcome.status != 0)) << name << " after " << which;
    }
    for (const auto& [name, bytes] : found) EXPECT_EQ(new_.count(name), 1u) << name;
    EXPECT_EQ(leftovers_, 0) << which;
    EXPECT_TRUE(outcome.status == 0 || outcome.status == 1 || outcome.status == 3)
        << which << ": " << outcome.status << outcome.err;
    EXPECT_TRUE(outcome.status == 0 || outcome.err.find("memory") != outcome.err.npos)
        << which << ": " << outcome.err;
    told_ += outcome.err.find("out of memory while ") != outcome.err.npos ? 1 : 0;
    failed_ += outcome.status == 0 ? 0 : 1;
  }

  Files old_, new_;
  int told_ = 0, failed_ = 0;
};

TEST_P(Starved, LosesNothingAndSaysSo) {
#ifdef MORVANE_SANITIZED
  GTEST_SKIP() << "the sanitizers have an allocator of their own";
#endif
  ASSERT_EQ(starve("0").status, 0);
  new_ = look();
  const long allocations = std::atol(read("count").c_str());
  ASSERT_GT(allocations, 500);
  int runs = 0;
  for (const long number : chosen(allocations)) {
    const bool andOn = ++runs % 4 == 0;
    const std::string which = std::to_string(number) + (andOn ? "+" : "");
    check(starve(which), which);
    if (HasFailure()) break;
  }
  EXPECT_GT(told_, 0);
  std::printf(
      "figures: %-12s %6ld allocations, %5d runs without one, of which %5d failed and %5d said "
      "what "
      "was being done\n",
      GetParam().name, allocations, runs, failed_, told_);
}

INSTANTIATE_TEST_SUITE_P(Of, Starved, testing::ValuesIn(kUses),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
