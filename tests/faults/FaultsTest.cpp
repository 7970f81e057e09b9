// Lets the program's system calls fail, one after the other, while it saves, and kills it at them.

#include <cstdlib>
#include <filesystem>

#include "tests/faults/SaveFolder.h"

namespace {

// Which kinds of faults are tried: fewer under the sanitizers, where they take ten times as long,
// and more when MORVANE_ALL_FAULTS is in the environment.
enum class When { kAlways, kUnsanitized, kAsked };

bool isTried(When when) {
  if (when == When::kAsked) return std::getenv("MORVANE_ALL_FAULTS") != nullptr;
#ifdef MORVANE_SANITIZED
  return when == When::kAlways;
#else
  return true;
#endif
}

struct Save {
  const char* name;
  const char* line;
  const char* complaint;  // what standard output has for a save that failed
  const char* prepare = "true";
};

const Save kSaves[] = {
    {"export", "$morvane export scene.ma", "*** Error : couldn't save psd\n"},
    {"exportToNew", "$morvane export pebbled.ma tile1 --to new.psd", "Error: couldn't save "},
    {"exportToExisting", "$morvane export pebbled.ma tile1 --to c.psd", "Error: couldn't save "},
    {"importToNew", "$morvane import bare.ma tile1 c.psd -o new.ma", "",
     "$morvane export pebbled.ma tile1 --to c.psd"},
    {"importToItself", "$morvane import bare.ma tile1 c.psd -o bare.ma", "",
     "$morvane export pebbled.ma tile1 --to c.psd"},
    {"runSave", "$morvane run scene.ma -c 'setAttr pebble1.translateX 1' -o scene.ma", ""},
    {"fileSave", "$morvane run scene.ma -c 'setAttr pebble1.translateX 1; file -save'", ""},
    {"goblinsObj", "$morvane goblins a.psd --obj a.obj", "", "$morvane export pebbled.ma"},
    {"goblinsGlb", "$morvane goblins a.psd --glb a.glb", "", "$morvane export pebbled.ma"},
};

const struct Kind {
  std::string name;
  std::string more =
      "";  // "+" for all calls from there on, or what befalls the call after the next
  When when = When::kAlways;
} kKinds[] = {{"ENOSPC"},
              {"ENOSPC", "+"},
              {"ENOSPC", ",kill@", When::kUnsanitized},
              {"EIO", "", When::kUnsanitized},
              {"EACCES", "", When::kUnsanitized},
              {"EDQUOT", "", When::kUnsanitized},
              {"EXDEV", "", When::kUnsanitized},
              {"EINTR"},
              {"short"},
              {"read"},
              {"kill"},
              {"kill-half"},
              {"EIO", "+", When::kAsked},
              {"EDQUOT", ",kill@", When::kAsked},
              {"EXDEV", "+", When::kAsked}};

void PrintTo(const Save& save, std::ostream* out) {
  *out << save.line;
}

std::string contentOf(const Files& files, const std::string& name) {
  const auto file = files.find(name);
  return file == files.end() ? "no file" : file->second;
}

class Faults : public SaveFolder, public testing::WithParamInterface<Save> {
 protected:
  Faults() {
    reset(scenesAndTextures());
    EXPECT_EQ(inWork(GetParam().prepare).status, 0);
    old_ = look();
    undisturbed_ = inWork(GetParam().line);
    EXPECT_EQ(undisturbed_.status, 0) << undisturbed_.err;
    new_ = look();
    EXPECT_EQ(inWork(GetParam().line).status, 0);
    newer_ = look();
  }

  // Runs the save with faults. False when they were not reached.
  bool disturb(const std::string& faults) {
    reset(old_);
    write("hit", "");
    outcome_ =
        inWork("MORVANE_FAULTS=" + faults + " MORVANE_FAULTS_FOLDER=" + shellWord(path("work")) +
               " MORVANE_FAULTS_REPORT=" + shellWord(path("hit")) +
               " ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=" MORVANE_FAULTY_CALLS " " +
               GetParam().line);
    hit_ = read("hit");
    ++runs_;
    for (const char c : hit_) faults_ += c == '\n' ? 1 : 0;
    found_ = look();
    return !hit_.empty();
  }

  void checkNothingIsLost() {
    for (const auto& [name, bytes] : new_) {
      const std::string found = contentOf(found_, name);
      const bool whole = found == bytes || found == contentOf(old_, name);
      lost_ += whole ? 0 : 1;
      EXPECT_TRUE(whole) << name << " is lost after " << hit_;
    }
    for (const auto& [name, bytes] : found_) EXPECT_EQ(new_.count(name), 1u) << name;
  }

  // The reason that standard error gives for not having saved a file; empty where it gives none.
  std::string reasonFor(const std::string& name) const {
    const std::string last = std::filesystem::path(name).filename().string() + ": ";
    for (std::size_t at = 0; (at = outcome_.err.find("cannot write ", at)) != std::string::npos;) {
      const std::string line = outcome_.err.substr(at, outcome_.err.find('\n', at) - at);
      const std::size_t found = line.find(last);
      if (found != std::string::npos) return line.substr(found + last.size());
      at += line.size();
    }
    return std::string();
  }

  // Whoever reads the status and the messages knows which files are new.
  void checkWritesTellTheTruth(bool mustSave) {
    bool failed = false;
    for (const auto& [name, bytes] : new_) {
      const std::string reason = reasonFor(name);
      const bool isNew = reason.empty() || reason.find("the new file is there") == 0;
      EXPECT_TRUE(contentOf(found_, name) == contentOf(isNew ? new_ : old_, name))
          << name << " after " << hit_ << outcome_.err;
      failed = failed || !reason.empty();
    }
    EXPECT_EQ(outcome_.status, failed ? 1 : 0) << hit_ << outcome_.err;
    const bool cleansUp = hit_.find(" unlinkat ") != std::string::npos;
    const bool mustFail = (hit_.find(".tmp\n") != std::string::npos && !cleansUp) ||
                          hit_.find(" fsync ") != std::string::npos;
    EXPECT_TRUE(mustSave ? !failed : failed || !mustFail) << hit_ << outcome_.err;
    EXPECT_NE(outcome_.out.find(failed ? GetParam().complaint : undisturbed_.out),
              std::string::npos)
        << hit_ << outcome_.out;
  }

  // Data that could not be read is not taken for the end of the data.
  void checkReadsTellTheTruth() {
    EXPECT_EQ(outcome_.status == 0, found_ == new_) << hit_ << outcome_.err;
    EXPECT_EQ(outcome_.status == 0, outcome_.err == undisturbed_.err) << hit_ << outcome_.err;
    EXPECT_LE(outcome_.status, 3) << hit_ << outcome_.err;
  }

  // What a kill leaves does not hinder the next run.
  void checkNextRun() {
    ++kills_;
    EXPECT_EQ(outcome_.status, 128 + 9) << hit_;
    EXPECT_LE(leftovers_, 1) << hit_;
    const Outcome next = inWork(GetParam().line);
    EXPECT_EQ(next.status, 0) << hit_ << next.err;
    for (const auto& [name, bytes] : look()) {
      const bool wasNew = contentOf(found_, name) == contentOf(new_, name);
      EXPECT_TRUE(bytes == contentOf(wasNew ? newer_ : new_, name)) << name << " after " << hit_;
    }
  }

  void sweep(const Kind& kind) {
    int calls = 0;
    for (;; ++calls) {
      std::string faults = kind.name + '@' + std::to_string(calls + 1) + kind.more;
      if (faults.back() == '@') faults += std::to_string(calls + 3);
      if (HasFailure() || !disturb(faults)) break;
      checkNothingIsLost();
      if (hit_.find("kill") != std::string::npos) {
        checkNextRun();
        continue;
      }
      // What was replaced cannot always be removed.
      EXPECT_LE(leftovers_, hit_.find(" unlinkat ") != std::string::npos ? 1 : 0) << hit_;
      if (kind.name == "read")
        checkReadsTellTheTruth();
      else
        checkWritesTellTheTruth(kind.name == "EINTR" || kind.name == "short");
    }
    EXPECT_TRUE(calls > 0 || HasFailure()) << kind.name << ": the program's calls are not seen";
  }

  Files old_, new_, newer_, found_;  // before the save, after it, after another; after the faults
  Outcome undisturbed_, outcome_;
  std::string hit_;  // the calls that the faults befell
  int runs_ = 0, faults_ = 0, kills_ = 0, lost_ = 0;
};

TEST_P(Faults, LeaveTheOldFileOrTheNewOne) {
  for (const Kind& kind : kKinds)
    if (isTried(kind.when)) sweep(kind);
  std::printf("figures: %-16s %4d runs, %4d faults, %3d kills, %d files lost\n", GetParam().name,
              runs_, faults_, kills_, lost_);
}

INSTANTIATE_TEST_SUITE_P(Of, Faults, testing::ValuesIn(kSaves),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
