#ifndef MORVANE_TOOLS_TERMINAL_PLATFORM_H_
#define MORVANE_TOOLS_TERMINAL_PLATFORM_H_

#include <cstddef>
#include <cstdint>
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

constexpr int kStandardInput = 0;
constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;

// File descriptors. The calls that return bool or a number are false or negative on failure.
bool openPipe(int (&ends)[2]);  // ends[0] reads what ends[1] writes
int duplicate(int file);
bool redirect(int from, int to);  // makes the descriptor `from` another name of what `to` is
std::ptrdiff_t readSome(int file, char* bytes, std::size_t size);  // 0 at the end
bool writeAll(int file, const char* bytes, std::size_t size);
void closeFile(int file);

// A file without a name that is gone with its last descriptor; negative on failure.
int openSpool();
// The next byte read or written is the first; with `emptied`, of a file without any.
bool rewindFile(int file, bool emptied);
std::int64_t fileSize(int file);  // negative on failure

// Another process that runs this program.
struct ChildProcess {
  std::intptr_t id = 0;  // 0: none
};

// What a child gets for its standard input, output and error, and one descriptor beyond.
struct ChildFiles {
  int input = -1;
  int output = -1;
  int error = -1;
  int extra = -1;
};

// Starts this program with these arguments and one more, of which inheritedFile() makes the extra
// descriptor. Ctrl-C does not end the child: it is to end when its input does. False, with the
// reason in `error`, when that failed. Calls must not overlap: a child might keep what another is
// given.
bool startChild(const std::vector<std::string>& arguments, const ChildFiles& files,
                ChildProcess& child, std::string& error);
int inheritedFile(const std::string& argument);
// Waits until the child has ended, and says how: "ended with status 1".
std::string waitForEnd(ChildProcess& child);

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_PLATFORM_H_
