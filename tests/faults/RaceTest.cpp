// Paint programs save into a texture while the program exports into it.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include "psd/PsdDocument.h"
#include "tests/faults/SaveFolder.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

class Race : public SaveFolder {
 protected:
  Race() : files_(scenesAndTextures()), texture_(path("work/a.psd")) { reset(files_); }

  // The texture without goblins, with the number of a version in its last pixels.
  std::string picture(unsigned version) const {
    std::string bytes = files_.at("a.psd");
    for (std::size_t i = 0; i < 4; ++i)
      bytes[bytes.size() - 1 - i] = static_cast<char>(version >> 8 * i);
    return bytes;
  }

  unsigned version() const {
    const std::string bytes = read("work/a.psd");
    unsigned number = 0;
    for (std::size_t i = 0; i < 4 && i < bytes.size(); ++i) {
      number |= static_cast<unsigned>(static_cast<unsigned char>(bytes[bytes.size() - 1 - i]))
                << 8 * i;
    }
    return number;
  }

  bool hasGoblins() const {
    morvane::PsdDocument document(1, 1);
    return document.load(texture_.c_str()) && document.findLayer("GoblinGeometry") >= 0;
  }

  // As a paint program does that knows of no goblins.
  void paint(unsigned version) const {
    write("painting", picture(version));
    fs::rename(path("painting"), texture_);
  }

  // The file "painting" takes a name at one of an export's calls, which is in "hit" afterwards.
  Outcome exportPaintedAt(int call, const std::string& name, const std::string& scene) {
    write("hit", "");
    return inWork("MORVANE_FAULTS=paint@" + std::to_string(call) + " MORVANE_FAULTS_FOLDER=" +
                  shellWord(path("work")) + " MORVANE_FAULTS_REPORT=" + shellWord(path("hit")) +
                  " MORVANE_FAULTS_PAINTED=" + shellWord(path("painting") + ':' + name) +
                  " ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=" MORVANE_FAULTY_CALLS
                  " $morvane export " +
                  scene);
  }

  Files files_;
  std::string texture_;
};

// A save at every one of an export's calls. The export does not end before it has put its goblins
// into what was painted.
TEST_F(Race, APaintersSaveAtAnyCallSurvives) {
  int saves = 0;
  for (bool hit = true; hit && !HasFailure(); ++saves) {
    reset(files_);
    write("painting", picture(7));
    const Outcome outcome = exportPaintedAt(saves + 1, texture_, "pebbled.ma");
    const std::string call = read("hit");
    hit = !call.empty();
    EXPECT_EQ(outcome.status, 0) << call << outcome.err;
    EXPECT_TRUE(!hit || version() == 7) << call;
    const bool isBefore =
        call.find(".tmp\n") != std::string::npos && call.find("unlink") == std::string::npos;
    EXPECT_TRUE(hasGoblins() || !isBefore) << call;
    look();
    EXPECT_EQ(leftovers_, 0) << call;
  }
  EXPECT_GT(saves, 8);
}

// The same beside a TGA texture, where what was painted takes no goblins.
TEST_F(Race, APictureBesideATgaTextureSurvives) {
  write("tga.ma", sceneOfTiles({"tex/b.tga"}));
  files_["tga.ma"] = read("tga.ma");
  morvane::PsdDocument sky(288, 256);
  ASSERT_EQ(sky.addLayer("sky"), 1);
  int saves = 0;
  for (bool hit = true; hit && !HasFailure(); ++saves) {
    reset(files_);
    ASSERT_TRUE(sky.save(path("painting").c_str()));
    const std::string painted = read("painting");
    exportPaintedAt(saves + 1, path("work/tex/b.psd"), "tga.ma");
    hit = !read("hit").empty();
    EXPECT_TRUE(!hit || read("work/tex/b.psd") == painted) << read("hit");
  }
  EXPECT_GT(saves, 8);
}

// Saves at any time: none is lost, and an export that gave up says so. MORVANE_RACES in the
// environment says how often.
TEST_F(Race, NoPaintersSaveIsLost) {
  const auto begin = Clock::now();
  ASSERT_EQ(inWork("$morvane export pebbled.ma").status, 0);
  const std::chrono::duration<double> alone = Clock::now() - begin;
  std::minstd_rand random(11);
  const char* const asked = std::getenv("MORVANE_RACES");
  const int rounds = asked != nullptr ? std::atoi(asked) : 20;
  int lost = 0, gaveUp = 0;
  for (int round = 0; round < rounds; ++round) {
    reset(files_);
    std::uniform_real_distribution<double> pause(0, alone.count() / 2);
    std::thread painter([&] {
      for (const unsigned version : {1, 2, 3}) {
        std::this_thread::sleep_for(std::chrono::duration<double>(pause(random)));
        paint(version);
      }
    });
    const Outcome outcome = inWork("$morvane export pebbled.ma");
    painter.join();
    lost += version() == 3 ? 0 : 1;
    gaveUp += outcome.status == 0 ? 0 : 1;
    EXPECT_TRUE(outcome.status == 0 ||
                outcome.err.find("pebbled.ma: |tile1: couldn't save psd: cannot write "
                                 "a.psd: changed while it was exported") != std::string::npos)
        << outcome.err;
    look();
    EXPECT_EQ(leftovers_, 0);
  }
  EXPECT_EQ(lost, 0);
  std::printf("figures: %d races, %d exports gave up, %d saves lost\n", rounds, gaveUp, lost);
}

}  // namespace
