#ifndef MORVANE_GEOMETRY_EXTRACTIONERRORS_H_
#define MORVANE_GEOMETRY_EXTRACTIONERRORS_H_

#include <string>

#include "util/Platform.h"

namespace morvane {

// What went wrong while meshes were extracted, collected for the whole process until it is cleared.

// Formats a message as printf does, cut to 1023 characters, and appends it.
void addExtractionError(const char* format, ...) MORVANE_PRINTF_FORMAT(1, 2);

bool hasExtractionError();
const std::string& extractionErrorText();
void clearExtractionErrors();

}  // namespace morvane

#endif  // MORVANE_GEOMETRY_EXTRACTIONERRORS_H_
