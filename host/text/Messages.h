#ifndef MORVANE_HOST_TEXT_MESSAGES_H_
#define MORVANE_HOST_TEXT_MESSAGES_H_

#include <functional>
#include <string>
#include <string_view>

// The host's own messages, one line each on standard error, and what scripts print on standard
// output.
namespace host::mel {

// Called with each of these lines, without its line feed, before it is written.
std::function<void(std::string_view)>& beforeMessage();

void showError(std::string_view text);    // "Error: text"
void showWarning(std::string_view text);  // "Warning: text"
void showInfo(std::string_view text);

// Through the C library's stream, so that it keeps its place among what plug-ins print.
void printText(std::string_view text);

}  // namespace host::mel

#endif  // MORVANE_HOST_TEXT_MESSAGES_H_
