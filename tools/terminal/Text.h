#ifndef MORVANE_TOOLS_TERMINAL_TEXT_H_
#define MORVANE_TOOLS_TERMINAL_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "host/text/Printable.h"

// Texts that come from files, made fit for where they go.
namespace tools {

using host::printable;
using host::printableJson;
using host::toUtf8;

// "1 goblin", "2 goblins".
std::string counted(std::size_t count, const std::string& thing);

// Writes "morvane: MESSAGE" as a line of standard error. Names within it must be printable.
void complain(const std::string& message);

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_TEXT_H_
