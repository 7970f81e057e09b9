#ifdef _WIN32

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>

#include "tools/terminal/Platform.h"

namespace tools {

std::string programFolder() {
  wchar_t name[32768];
  const DWORD length = GetModuleFileNameW(nullptr, name, static_cast<DWORD>(std::size(name)));
  if (length == 0 || length == std::size(name)) return "";
  return std::filesystem::path(name).parent_path().string();
}

void setEnvironment(const char* name, const std::string& value) {
  ::_putenv_s(name, value.c_str());
}

void letWritesFail() {}

bool standardErrorIsTerminal() {
  return _isatty(2) != 0;
}

bool openPipe(int (&ends)[2]) {
  return _pipe(ends, 65536, _O_BINARY | _O_NOINHERIT) == 0;
}

int duplicate(int file) {
  return _dup(file);
}

bool redirect(int from, int to) {
  return _dup2(to, from) == 0;
}

std::ptrdiff_t readSome(int file, char* bytes, std::size_t size) {
  return _read(file, bytes, static_cast<unsigned>(size));
}

bool writeAll(int file, const char* bytes, std::size_t size) {
  while (size > 0) {
    const auto piece = static_cast<unsigned>(std::min<std::size_t>(size, 1 << 20));
    const int count = _write(file, bytes, piece);
    if (count < 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

void closeFile(int file) {
  _close(file);
}

}  // namespace tools

#endif
