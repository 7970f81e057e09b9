#ifndef MORVANE_HOST_MEL_MESSAGES_H_
#define MORVANE_HOST_MEL_MESSAGES_H_

#include <string>
#include <string_view>

// The host's own messages, one line each on standard error, and what scripts print on standard
// output.
namespace host::mel {

void showError(std::string_view text);    // "Error: text"
void showWarning(std::string_view text);  // "Warning: text"
void showInfo(std::string_view text);

// Through the C library's stream, so that it keeps its place among what plug-ins print.
void printText(std::string_view text);

}  // namespace host::mel

#endif  // MORVANE_HOST_MEL_MESSAGES_H_
