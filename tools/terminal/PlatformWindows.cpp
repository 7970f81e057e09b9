#ifdef _WIN32

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>
// In this order: the first has what the second needs.
#include <shellapi.h>

#include <algorithm>
#include <cstdlib>

#include "tools/terminal/Platform.h"
#include "util/Path.h"

namespace tools {
namespace {

constexpr UINT kInterruptedStatus = 0xC000013A;  // STATUS_CONTROL_C_EXIT

// Of the console before this program, to which it goes back; 0 when it was not changed.
UINT consoleCodePage = 0;

void restoreConsole() {
  if (consoleCodePage != 0) SetConsoleOutputCP(consoleCodePage);
}

bool mayBePattern(const std::wstring& word) {
  const std::size_t name = word.find_last_of(L"/\\") + 1;  // 0 without a slash
  return word.find_first_of(L"*?", name) != std::wstring::npos &&
         word.find_first_of(L"./\\") != std::wstring::npos;
}

// The files that fit, by name; the word itself when there are none.
void addFiles(const std::wstring& pattern, std::vector<std::string>& words) {
  const std::wstring folder = pattern.substr(0, pattern.find_last_of(L"/\\:") + 1);
  const std::size_t first = words.size();
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
  for (bool more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found))
    if (found.cFileName[0] != L'.') words.push_back(morvane::toUtf8(folder + found.cFileName));
  if (search != INVALID_HANDLE_VALUE) FindClose(search);
  std::sort(words.begin() + static_cast<std::ptrdiff_t>(first), words.end());
  if (words.size() == first) words.push_back(morvane::toUtf8(pattern));
}

bool isTerminal(DWORD stream, DWORD& mode) {
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

// Another handle of the file that a child may inherit.
HANDLE inheritable(int file) {
  HANDLE copy = INVALID_HANDLE_VALUE;
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file));
  DuplicateHandle(GetCurrentProcess(), handle, GetCurrentProcess(), &copy, 0, TRUE,
                  DUPLICATE_SAME_ACCESS);
  return copy;
}

}  // namespace

std::vector<std::string> commandLine(int argc, const char* const* argv) {
  int count = 0;
  wchar_t** const given = CommandLineToArgvW(GetCommandLineW(), &count);
  if (given == nullptr) return {argv, argv + argc};
  std::vector<std::string> words;
  for (int i = 0; i < count; ++i)
    if (i > 0 && mayBePattern(given[i]))
      addFiles(given[i], words);
    else
      words.push_back(morvane::toUtf8(given[i]));
  LocalFree(given);
  return words;
}

void prepareStreams() {
  for (const int stream : {kStandardInput, kStandardOutput, kStandardError})
    _setmode(stream, _O_BINARY);
  for (const DWORD stream : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    DWORD mode = 0;
    if (!isTerminal(stream, mode)) continue;
    SetConsoleMode(GetStdHandle(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    if (consoleCodePage != 0) continue;
    consoleCodePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    std::atexit(restoreConsole);
  }
}

void endByInterrupt(int) {
  restoreConsole();
  TerminateProcess(GetCurrentProcess(), kInterruptedStatus);
  std::abort();
}

void setEnvironment(const char* name, const std::string& value) {
  ::_wputenv_s(morvane::toWide(name).c_str(), morvane::toWide(value).c_str());
}

void letWritesFail() {}

// There is no asking for the lock here: what a busy thread has not written stays unwritten.
void flushUnlessBusy() {}

// One that does not know the sequences that erase lines gets no bar.
bool standardErrorIsTerminal() {
  DWORD mode = 0;
  return isTerminal(STD_ERROR_HANDLE, mode) && (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
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

int openSpool() {
  wchar_t folder[MAX_PATH + 1];
  wchar_t name[MAX_PATH + 1];
  const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
  if (length == 0 || length > MAX_PATH || GetTempFileNameW(folder, L"mor", 0, name) == 0) return -1;
  return _wopen(name, _O_RDWR | _O_BINARY | _O_TEMPORARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

bool rewindFile(int file, bool emptied) {
  return _lseeki64(file, 0, SEEK_SET) == 0 && (!emptied || _chsize_s(file, 0) == 0);
}

std::int64_t fileSize(int file) {
  return _filelengthi64(file);
}

// Not tried on Windows yet. The arguments are this program's own, without blanks or quotes.
bool startChild(const std::vector<std::string>& arguments, const ChildFiles& files,
                ChildProcess& child, std::string& error) {
  wchar_t program[32768];
  const DWORD length = GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
  HANDLE handles[] = {inheritable(files.input), inheritable(files.output), inheritable(files.error),
                      inheritable(files.extra)};
  std::wstring line = L"morvane";
  for (const std::string& argument : arguments)
    line += L' ' + std::wstring(argument.begin(), argument.end());
  line += L' ' + std::to_wstring(reinterpret_cast<std::uintptr_t>(handles[3]));
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = handles[0];
  start.hStdOutput = handles[1];
  start.hStdError = handles[2];
  PROCESS_INFORMATION process = {};
  const bool started = length != 0 && length < std::size(program) &&
                       CreateProcessW(program, line.data(), nullptr, nullptr, TRUE,
                                      CREATE_NEW_PROCESS_GROUP, nullptr, nullptr, &start, &process);
  if (!started) error = "system error " + std::to_string(GetLastError());
  for (const HANDLE handle : handles) CloseHandle(handle);
  if (started) CloseHandle(process.hThread);
  child.id = started ? reinterpret_cast<std::intptr_t>(process.hProcess) : 0;
  return started;
}

int inheritedFile(const std::string& argument) {
  const auto handle = static_cast<std::intptr_t>(std::strtoull(argument.c_str(), nullptr, 10));
  return _open_osfhandle(handle, _O_BINARY | _O_NOINHERIT);
}

std::string waitForEnd(ChildProcess& child) {
  const auto process = reinterpret_cast<HANDLE>(child.id);
  DWORD status = 0;
  WaitForSingleObject(process, INFINITE);
  GetExitCodeProcess(process, &status);
  CloseHandle(process);
  child.id = 0;
  return "ended with status " + std::to_string(status);
}

}  // namespace tools

#endif
