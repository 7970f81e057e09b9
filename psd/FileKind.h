#ifndef MORVANE_PSD_FILEKIND_H_
#define MORVANE_PSD_FILEKIND_H_

#include <cstddef>
#include <string>

namespace morvane {

// For messages about files that bear another kind's extension.
constexpr std::size_t kKindSize = 4;  // first bytes of a file that tell its kind

// "a JPEG image" and the like; null when the kKindSize bytes tell nothing.
const char* knownKind(const void* first);

bool isPsd(const void* first);

// "begins with FF D8 FF E0, a JPEG image"; without the kind when that is not known.
std::string describeBeginning(const void* first);

}  // namespace morvane

#endif  // MORVANE_PSD_FILEKIND_H_
