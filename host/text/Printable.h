#ifndef MORVANE_HOST_TEXT_PRINTABLE_H_
#define MORVANE_HOST_TEXT_PRINTABLE_H_

#include <string>
#include <string_view>

// Texts that come from files, made fit to be shown.
namespace host {

// Valid UTF-8: `bytes` where they are that already, else each byte as the character of its number.
std::string toUtf8(std::string_view bytes);

// As shown to a person: control characters, those that reverse the line's direction included,
// become \xNN or \u{NNNN}, so that no name can move the cursor or forge a line. Takes any bytes.
std::string printable(std::string_view bytes);

// A JSON text as a JSON library writes it, made printable: what it leaves of control characters is
// escaped. It says the same.
std::string printableJson(std::string_view json);

}  // namespace host

#endif  // MORVANE_HOST_TEXT_PRINTABLE_H_
