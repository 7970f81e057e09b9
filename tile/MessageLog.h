#ifndef MORVANE_TILE_MESSAGELOG_H_
#define MORVANE_TILE_MESSAGELOG_H_

#include "util/Platform.h"

// The channel through which the export side reports progress, warnings and errors. Messages go to
// the process's standard output as they are, without a line feed of their own, and are flushed one
// by one.
namespace morvane {

// Levels are 0 to 3; a message of any other level is dropped.
void logText(int level, const char* text);

// Formats as printf does, cut to 255 characters.
void logf(int level, const char* format, ...) MORVANE_PRINTF_FORMAT(2, 3);

}  // namespace morvane

#endif  // MORVANE_TILE_MESSAGELOG_H_
