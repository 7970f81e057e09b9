#ifndef MORVANE_PSD_TGAIMPORT_H_
#define MORVANE_PSD_TGAIMPORT_H_

#include <string>

#include "psd/PsdDocument.h"
#include "util/InputFile.h"

namespace morvane {

// Makes a document of an uncompressed TGA file of 24 or 32 bits: a black base layer and over it
// "$diffuse", the image. The file is taken as stored bottom row first; nothing of its header counts
// but the size, the depth and the length of the image id; a run-length image is refused, and
// another first pixel than the lower left one is told of in the document's loadWarning. After a
// failure the document is undefined. The file is read some rows at a time. Importing
// one of n bytes takes at most 20 n of memory (reached by an image one pixel wide; a quarter of it
// by most).
Status importTga(InputFile& file, PsdDocument& document);

}  // namespace morvane

#endif  // MORVANE_PSD_TGAIMPORT_H_
