// Saves onto targets that are links, that cannot be written, or that somebody else writes too.

#include <unistd.h>

#include <filesystem>

#include "tests/faults/SaveFolder.h"

namespace {

// Every way to write a file. The first reads it before.
const std::string kSaves[] = {"export pebbled.ma", "export pebbled.ma tile1 --to c.psd",
                              "run bare.ma -o a.ma", "goblins g.psd --obj a.obj"};

// Which file it writes.
std::string targetOf(const std::string& save) {
  return save == "export pebbled.ma" ? "a.psd" : save.substr(save.rfind(' ') + 1);
}

// A shell command line about a.psd, about the file that `save` writes instead.
std::string aimed(const std::string& save, std::string line) {
  const std::string target = targetOf(save);
  for (std::size_t at = 0; (at = line.find("a.psd", at)) != line.npos; at += target.size())
    line.replace(at, 5, target);
  return line;
}

struct Case {
  std::string setup;
  std::string reason;
  bool loads = true;  // a.psd, which stands for each save's target, can be read
};

class Targets : public SaveFolder {
 protected:
  Targets() {
    reset(scenesAndTextures());
    EXPECT_EQ(inWork("$morvane export pebbled.ma tile1 --to g.psd").status, 0);
    inWork("cp a.psd a.ma; cp a.psd a.obj");
    old_ = look();
  }

  // Prepares the folder for another user than root, who may write everything.
  std::string asUser(const std::string& setup) const {
    return setup + (isRoot_ ? "; chown -R --no-dereference 65534 ." : "");
  }
  Outcome runAsUser(const std::string& save) {
    return inWork((isRoot_ ? "setpriv --reuid=65534 --regid=65534 --groups=4242 " : "") +
                  std::string("$morvane ") + save);
  }
  bool canRunAsUser() { return runAsUser("--version").status == 0; }

  // What a file is after a shell command line in the folder as it was at first.
  std::string resultOf(const std::string& line, const std::string& target) {
    reset(old_);
    EXPECT_EQ(inWork(line).status, 0) << line;
    return look()[target];
  }

  Files old_;
  const bool isRoot_ = ::geteuid() == 0;
};

TEST_F(Targets, LinksAreFollowed) {
  const Case cases[] = {
      {"mkdir real; mv a.psd real/x.psd; ln -s real/x.psd a.psd", ""},
      {"mkdir real; mv a.psd real/x.psd; ln -s x.psd real/y; ln -s $PWD/real/y a.psd", ""},
      {"mkdir real; ln -sf real/x.psd a.psd", "", false}};
  for (const std::string& save : kSaves) {
    const std::string expected = resultOf("$morvane " + save, targetOf(save));
    for (const Case& linked : cases) {
      if (!linked.loads && &save == kSaves) continue;
      reset(old_);
      const Outcome outcome = inWork(aimed(save, linked.setup) + "; $morvane " + save);
      EXPECT_EQ(outcome.status, 0) << linked.setup << outcome.err;
      EXPECT_TRUE(look()["real/x.psd"] == expected) << linked.setup << save;
      EXPECT_TRUE(std::filesystem::is_symlink(path("work/" + targetOf(save))))
          << linked.setup << save;
    }
  }
}

TEST_F(Targets, WhatCannotBeWrittenStaysAsItWas) {
  if (!canRunAsUser()) GTEST_SKIP() << "no other user can run the program here";
  const Case cases[] = {
      {"chmod 444 a.psd", "the file is read-only"},
      {"chmod 555 .", "Permission denied"},
      {"ln -sf loop a.psd; ln -s a.psd loop", "Too many levels of symbolic links", false},
      {"ln -sf gone/a.psd a.psd", "No such file or directory", false},
      {"rm a.psd; mkdir a.psd", "Is a directory", false},
      {"rm a.psd; mkfifo a.psd", "not a regular file", false}};
  for (const std::string& save : kSaves) {
    for (const Case& refused : cases) {
      if (!refused.loads && &save == kSaves) continue;
      reset(old_);
      inWork(asUser(aimed(save, refused.setup)));
      const Files before = look();
      const Outcome outcome = runAsUser(save);
      inWork("chmod 755 .");
      EXPECT_EQ(outcome.status, 1) << save << refused.setup;
      EXPECT_NE(outcome.err.find(targetOf(save) + ": " + refused.reason), std::string::npos)
          << save << ": " << refused.setup << '\n'
          << outcome.err;
      EXPECT_TRUE(look() == before && leftovers_ == 0) << save << refused.setup;
    }
  }
}

TEST_F(Targets, OwnersGroupsAndPermissionsAreKept) {
  if (!isRoot_) GTEST_SKIP() << "only root can give files away";
  if (!canRunAsUser()) GTEST_SKIP() << "no other user can run the program here";
  for (const std::string& save : kSaves) {
    const auto kept = [&](const std::string& setup, bool asRoot) {
      reset(old_);
      inWork(asUser("true") + ';' + aimed(save, setup));
      const Outcome outcome = asRoot ? inWork("$morvane " + save) : runAsUser(save);
      return std::to_string(outcome.status) + ' ' +
             inWork("stat -c '%u %g %a' " + targetOf(save)).out;
    };
    EXPECT_EQ(kept("chown 65534:4242 a.psd; chmod 640 a.psd", true), "0 65534 4242 640\n");
    EXPECT_EQ(kept("chown 0:4242 a.psd; chmod 664 a.psd", false), "0 65534 4242 664\n");
    // Others, among whom the old group is now, may do no more than that might.
    EXPECT_EQ(kept("chown 0:0 a.psd; chmod 646 a.psd", false), "0 65534 65534 644\n");
    EXPECT_EQ(kept("chown 0:0 a.psd; chmod 644 a.psd", false), "1 0 0 644\n");
    EXPECT_EQ(kept("chmod 1777 .; chown 0:0 . a.psd; chmod 666 a.psd", false), "1 0 0 666\n");
  }
}

// Access lists, attributes and set-id bits of what takes the file's place.
TEST_F(Targets, AccessRightsOfTheSuccessor) {
  if (!isRoot_ || !canRunAsUser()) GTEST_SKIP() << "only root can give files away";
  if (!hasCommand("setfacl") || inWork("setfacl -m u:1234:rw a.psd").status != 0)
    GTEST_SKIP() << "there are no access lists here";
  const struct {
    const char* setup;
    bool asRoot;
    const char* rights;  // owner, group, then the access list
  } cases[] = {
      {"setfacl -m u:1234:rw a.psd", true,
       "65534 0 user::rw-,user:1234:rw-,group::r--,mask::rw-,other::r--"},
      {"setfacl -m u:1234:rw a.psd", false,
       "65534 65534 user::rw-,user:1234:rw-,group::r--,mask::rw-,other::r--"},
      {"chown 7:4242 a.psd; setfacl -m g:77:rw,u:65534:rw,m:r a.psd; setfacl -m m:rw a.psd", false,
       "65534 4242 user::rw-,user:65534:rw-,group::r--,group:77:rw-,mask::rw-,other::r--"},
      {"chown 7:8 a.psd; chmod 600 a.psd; setfacl -m g::rw,u:65534:rw,o:r a.psd", false,
       "65534 65534 user::rw-,user:65534:rw-,group::r--,mask::rw-,other::r--"},
      {"chown 7:8 a.psd; chmod 600 a.psd; setfacl -m g::-,u:65534:rw,o:r a.psd", false,
       "65534 65534 user::rw-,user:65534:rw-,group::---,mask::rw-,other::---"},
      {"setfacl -d -m u:1234:rwx .; chmod 640 a.psd", true,
       "65534 0 user::rw-,group::r--,other::---"},
      {"chmod 6755 a.psd", true, "65534 0 user::rwx,group::r-x,other::r-x"},
  };
  for (const std::string& save : kSaves) {
    for (const auto& c : cases) {
      reset(old_);
      inWork(asUser("true") + "; " + aimed(save, c.setup));
      const Outcome outcome = c.asRoot ? inWork("$morvane " + save) : runAsUser(save);
      EXPECT_EQ(outcome.status, 0) << outcome.err;
      const std::string found =
          inWork("stat -c '%u %g' " + targetOf(save) + " | tr '\\n' ' '; getfacl -cpnE " +
                 targetOf(save) + " | paste -sd, | sed 's/,*$//'; stat -c %a " + targetOf(save) +
                 " | cut -c4-")
              .out;
      EXPECT_EQ(found, std::string(c.rights) + "\n\n") << save << ": " << c.setup;
    }
    reset(old_);
    if (inWork("setfattr -n user.status -v final " + targetOf(save)).status == 0) {
      EXPECT_EQ(inWork("$morvane " + save).status, 0);
      EXPECT_EQ(inWork("getfattr --only-values -n user.status " + targetOf(save)).out, "final");
    }
  }
}

// What a file-size limit ends, and a reader who goes away, leaves no file behind.
TEST_F(Targets, SignalsLeaveNothing) {
  const Outcome outcome = inWork("ulimit -f 8; $morvane export pebbled.ma");
  EXPECT_EQ(outcome.status, 1) << outcome.err;
  EXPECT_NE(outcome.err.find("a.psd: File too large"), std::string::npos) << outcome.err;
  EXPECT_TRUE(look() == old_ && leftovers_ == 0);
}

TEST_F(Targets, HardLinksAreTold) {
  inWork("ln a.psd other.psd");
  const Outcome outcome = inWork("$morvane export pebbled.ma --json");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("a.psd: 1 more name"), std::string::npos) << outcome.out;
  EXPECT_TRUE(look()["other.psd"] == old_["a.psd"]);
  inWork("ln -f a.psd other.psd");
  EXPECT_EQ(inWork("$morvane export bare.ma --in-place").err.find("hard links"), std::string::npos);
  EXPECT_TRUE(look()["other.psd"] == look()["a.psd"]);
}

TEST_F(Targets, AFullDiskKeepsTheOldFile) {
  const std::string apart = isRoot_ ? "unshare -m " : "unshare -rm ";
  const std::string mount = "mount -t tmpfs none ../full -o size=";
  inWork("mkdir ../full");
  if (inWork(apart + mount + "1m").status != 0) GTEST_SKIP() << "cannot mount a file system here";
  std::size_t pages = 0;
  for (const auto& [name, bytes] : old_) pages += (bytes.size() + 4095) / 4096;
  for (const std::string& save : kSaves) {
    const std::string expected = resultOf("$morvane " + save, targetOf(save));
    int saved = 0;
    for (const std::size_t room : {0, 1, 2, 20, 40, 80}) {
      reset(old_);
      const std::string size = std::to_string(4 * (pages + room)) + "k";
      const Outcome outcome = inWork("export morvane\n" + apart + "sh -c '" + mount + size +
                                     " && cp -r . ../full && cd ../full && \"$morvane\" " + save +
                                     "; status=$?; ls -A >../listing; cp " + targetOf(save) +
                                     " ../work; exit $status'");
      const std::string full = ": No space left on device";
      const bool fits = outcome.err.find(targetOf(save) + full) == std::string::npos;
      saved += fits ? 1 : 0;
      EXPECT_TRUE(look()[targetOf(save)] == (fits ? expected : old_[targetOf(save)]))
          << save << outcome.err;
      EXPECT_EQ(read("listing").find(".tmp"), std::string::npos) << save;
      EXPECT_EQ(outcome.status == 0, outcome.err.find(full) == std::string::npos)
          << save << outcome.err;
    }
    EXPECT_TRUE(saved > 0 && saved < 6) << save << ' ' << saved;
  }
}

TEST_F(Targets, TwoProcessesAtOnceEachWriteAWholeFile) {
  const std::string pairs[][2] = {
      {"export pebbled.ma", "export bare.ma"},
      {"export pebbled.ma tile1 --to c.psd", "export bare.ma tile1 --to c.psd"},
      {"run pebbled.ma -o a.ma", "run bare.ma -o a.ma"}};
  for (const auto& [first, second] : pairs) {
    const std::string one = "$morvane " + first;
    const std::string other = "$morvane " + second;
    const std::string target = targetOf(first);
    const std::string whole[] = {resultOf(one, target), resultOf(other, target),
                                 resultOf(one + " && " + other, target),
                                 resultOf(other + " && " + one, target)};
    for (int round = 0; round < 10; ++round) {
      const std::string found =
          resultOf(one + " & " + other + " && wait $! && test -z \"$(ls -A | grep tmp)\"", target);
      EXPECT_NE(std::find(std::begin(whole), std::end(whole), found), std::end(whole)) << first;
    }
  }
}

// From where the program cannot even be loaded to where it has enough.
TEST_F(Targets, LittleMemoryKeepsTheOldFile) {
#ifdef MORVANE_SANITIZED
  GTEST_SKIP() << "the sanitizers need more memory than can be limited";
#endif
  const std::string expected = resultOf("$morvane " + kSaves[0], "a.psd");
  int saved = 0;
  for (int megabytes = 20; saved < 3 && megabytes < 500; ++megabytes) {
    reset(old_);
    const std::string limit = "ulimit -v " + std::to_string(1024 * megabytes) + "; $morvane ";
    if (inWork(limit + "--version").status != 0) continue;  // not even its libraries start
    const Outcome outcome = inWork(limit + kSaves[0]);
    saved = outcome.status == 0 ? saved + 1 : 0;
    EXPECT_TRUE(look()["a.psd"] == (saved ? expected : old_["a.psd"])) << megabytes << outcome.err;
    EXPECT_EQ(leftovers_, 0) << megabytes;
    EXPECT_TRUE(saved || !outcome.err.empty()) << megabytes;
    EXPECT_LE(outcome.status, 127) << megabytes << outcome.err;
  }
  EXPECT_EQ(saved, 3);
}

}  // namespace
