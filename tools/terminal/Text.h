#ifndef MORVANE_TOOLS_TERMINAL_TEXT_H_
#define MORVANE_TOOLS_TERMINAL_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

// Texts that come from files, made fit for where they go.
namespace tools {

// Valid UTF-8: `bytes` where they are that already, else each byte as the character of its number.
std::string toUtf8(std::string_view bytes);

// As shown to a person: control characters, those that reverse the line's direction included,
// become \xNN or \u{NNNN}, so that no name can move the cursor or forge a line. Takes any bytes.
std::string printable(std::string_view bytes);

// A JSON text as nlohmann-json writes it, made printable: what it leaves of control characters is
// escaped. It says the same.
std::string printableJson(std::string_view json);

// "1 goblin", "2 goblins".
std::string counted(std::size_t count, const std::string& thing);

// Writes "morvane: MESSAGE" as a line of standard error. Names within it must be printable.
void complain(const std::string& message);

}  // namespace tools

#endif  // MORVANE_TOOLS_TERMINAL_TEXT_H_
