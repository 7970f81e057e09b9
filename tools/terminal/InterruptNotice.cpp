#include "tools/terminal/InterruptNotice.h"

#include <csignal>

#include "tools/terminal/Platform.h"

namespace tools {
namespace {

// A handler may touch nothing else.
volatile std::sig_atomic_t scenesDone = 0;
volatile std::sig_atomic_t scenesInAll = 0;

char* append(char* end, const char* text) {
  while (*text != '\0') *end++ = *text++;
  return end;
}

char* append(char* end, std::sig_atomic_t number) {
  char digits[24];
  int count = 0;
  do {
    digits[count++] = static_cast<char>('0' + number % 10);
    number /= 10;
  } while (number != 0);
  while (count > 0) *end++ = digits[--count];
  return end;
}

extern "C" void reportInterrupt(int signal) {
  char text[160];
  char* end = append(text, "\nmorvane: interrupted: ");
  end = append(append(append(end, scenesDone), " of "), scenesInAll);
  end = append(end, " scenes are done; the textures of the others are as they were or whole\n");
  writeAll(kStandardError, text, static_cast<std::size_t>(end - text));
  endByInterrupt(signal);
}

}  // namespace

InterruptNotice::InterruptNotice(std::size_t scenes) {
  scenesDone = 0;
  scenesInAll = static_cast<std::sig_atomic_t>(scenes);
  // A signal that was ignored, as in a job in the background, stays ignored.
  wasIgnored_ = std::signal(SIGINT, reportInterrupt) == SIG_IGN;
  if (wasIgnored_) std::signal(SIGINT, SIG_IGN);
}

InterruptNotice::~InterruptNotice() {
  std::signal(SIGINT, wasIgnored_ ? SIG_IGN : SIG_DFL);
}

void InterruptNotice::finishScene() {
  scenesDone = scenesDone + 1;
}

}  // namespace tools
