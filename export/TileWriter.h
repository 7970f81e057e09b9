#ifndef MORVANE_EXPORT_TILEWRITER_H_
#define MORVANE_EXPORT_TILEWRITER_H_

#include <maya/MFileObject.h>
#include <maya/MPxFileTranslator.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

namespace morvane {

// What the translator's reader and writer print in their banners.
inline constexpr const char* kTranslatorVersion = "1.00";

// Writes the goblins below the one selected tile, in the named layout, to the PSD file `file`;
// ".psd" is appended when the name does not end with it. The document is blank, 256 x 256, or that
// of `sourceFileName` when that is not empty. Anything but an export of the selection is refused. A
// failure is reported on standard output and leaves no new file.
MStatus writeTile(const MFileObject& file, MPxFileTranslator::FileAccessMode mode,
                  const MString& sourceFileName);

}  // namespace morvane

#endif  // MORVANE_EXPORT_TILEWRITER_H_
