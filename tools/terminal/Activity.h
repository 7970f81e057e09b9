#ifndef MORVANE_TOOLS_TERMINAL_ACTIVITY_H_
#define MORVANE_TOOLS_TERMINAL_ACTIVITY_H_

#include <string>

// What the program is doing: for the message when memory runs out, wherever that is.
namespace tools {

// `what` is a verb in its -ing form, `on` the name of a file, or a description of something else.
// One thread calls it.
void nowDoing(const char* what, const std::string& on);

// "exporting meadow.ma", printable; empty before the first. Takes no memory.
const char* currentActivity();

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_ACTIVITY_H_
