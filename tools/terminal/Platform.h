#ifndef MORVANE_TOOLS_TERMINAL_PLATFORM_H_
#define MORVANE_TOOLS_TERMINAL_PLATFORM_H_

#include <cstddef>
#include <string>
#include <vector>

// What a platform does differently.
namespace tools {

// The words of the command line, the program's own name first, in UTF-8. On Windows, where no shell
// does it, a word that has '*' or '?' in a file's name, and a period or a slash, becomes the files
// that it fits; words like those for the names of tiles stay.
std::vector<std::string> commandLine(int argc, const char* const* argv);

// Call before anything is read or written. On Windows standard input and output are then bytes as
// they are, and a console takes UTF-8 and the sequences that erase lines until the program ends.
void prepareStreams();

// The absolute folder that holds the running program; empty when the system does not tell.
std::string programFolder();

bool standardErrorIsTerminal();

// For this process, the libraries that it loads included.
void setEnvironment(const char* name, const std::string& value);

// Lets writing to a pipe that nobody reads, or beyond the allowed file size, fail instead of ending
// the process.
void letWritesFail();

// As the signal for Ctrl-C does when nobody handles it, for use in a handler.
[[noreturn]] void endByInterrupt(int signal);

// Writes out what standard output holds, unless another thread is at it.
void flushUnlessBusy();

constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;

// File descriptors. The calls that return bool or a number are false or negative on failure.
bool openPipe(int (&ends)[2]);  // ends[0] reads what ends[1] writes
int duplicate(int file);
bool redirect(int from, int to);  // makes the descriptor `from` another name of what `to` is
std::ptrdiff_t readSome(int file, char* bytes, std::size_t size);  // 0 at the end
bool writeAll(int file, const char* bytes, std::size_t size);
void closeFile(int file);

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_PLATFORM_H_
