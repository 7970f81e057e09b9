#include "tools/jobs/JobChild.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace tools {
namespace {

void closeAll(std::initializer_list<int*> files) {
  for (int* file : files)
    if (*file >= 0) closeFile(std::exchange(*file, -1));
}

// Gives `take` all that is in the file, piece by piece, and empties it.
template <class Take>
void drain(int file, Take take) {
  if (file < 0) return;
  char bytes[1 << 16];
  rewindFile(file, false);
  for (std::ptrdiff_t count; (count = readSome(file, bytes, sizeof bytes)) > 0;)
    take(bytes, static_cast<std::size_t>(count));
  rewindFile(file, true);
}

std::string textOf(int file) {
  std::string text;
  drain(file, [&](const char* bytes, std::size_t size) { text.append(bytes, size); });
  return text;
}

bool passOnTo(int target, int file) {
  bool ok = true;
  drain(file,
        [&](const char* bytes, std::size_t size) { ok = writeAll(target, bytes, size) && ok; });
  return ok;
}

}  // namespace

bool Printed::passOn() const {
  const bool isErr = writeAll(kStandardError, err.data(), err.size());
  return writeAll(kStandardOutput, out.data(), out.size()) && isErr;
}

JobChild::~JobChild() {
  end();
  closeAll({&out_, &err_});
}

bool JobChild::openFiles() {
  if (out_ < 0) out_ = openSpool();
  if (err_ < 0) err_ = openSpool();
  return out_ >= 0 && err_ >= 0;
}

bool JobChild::start(std::string& why) {
  int orders[2] = {-1, -1};
  int answers[2] = {-1, -1};
  bool ok = openFiles();
  if (!ok) why = "its output has no room in the folder for temporary files";
  ok = ok && openPipe(orders) && openPipe(answers);
  if (!ok && why.empty()) why = "too many files are open";
  ok = ok && startChild(arguments_, {orders[0], out_, err_, answers[1]}, process_, why);
  closeAll({&orders[0], &answers[1]});
  if (!ok) {
    closeAll({&orders[1], &answers[0]});
    return false;
  }
  orders_ = orders[1];
  answers_ = answers[0];
  return true;
}

std::string JobChild::end() {
  closeAll({&orders_});
  const std::string how = isRunning() ? waitForEnd(process_) : "";
  closeAll({&answers_});
  return how;
}

std::size_t JobChild::printedBytes() const {
  std::int64_t bytes = 0;
  for (const int file : {out_, err_})
    if (file >= 0) bytes += std::max<std::int64_t>(fileSize(file), 0);
  return static_cast<std::size_t>(bytes);
}

Printed JobChild::takePrinted() {
  std::string out = textOf(out_);
  return {std::move(out), textOf(err_)};
}

bool JobChild::passOn() {
  const bool isErr = passOnTo(kStandardError, err_);
  return passOnTo(kStandardOutput, out_) && isErr;
}

}  // namespace tools
