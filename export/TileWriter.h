#ifndef MORVANE_EXPORT_TILEWRITER_H_
#define MORVANE_EXPORT_TILEWRITER_H_

#include <maya/MFileObject.h>
#include <maya/MPxFileTranslator.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

namespace morvane {

// What the translator's reader and writer print in their banners.
inline constexpr const char* kTranslatorVersion = "1.00";

// Writes the goblins below the one selected tile, in the named layout, to a PSD file: `file`, with
// ".psd" appended when its name does not end so. The document is blank, 256 x 256, or that of
// `sourceFileName` when this is not empty. Anything but an export of the selection is refused.
// After a failure, of which a line on standard output tells, there is no new file.
MStatus writeTile(const MFileObject& file, MPxFileTranslator::FileAccessMode mode,
                  const MString& sourceFileName);

}  // namespace morvane

#endif  // MORVANE_EXPORT_TILEWRITER_H_
