#ifndef MORVANE_PSD_TGAIMPORT_H_
#define MORVANE_PSD_TGAIMPORT_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "psd/PsdDocument.h"

namespace morvane {

// Makes a document of the bytes of an uncompressed TGA file of 24 or 32 bits: a black base layer
// and over it "$diffuse", the image. The file is taken as stored bottom row first; nothing of its
// header counts but the size, the depth and the length of the image id. On failure `error` says why
// and the document is undefined.
bool importTga(const std::uint8_t* bytes, std::size_t size, PsdDocument& document,
               std::string& error);

}  // namespace morvane

#endif  // MORVANE_PSD_TGAIMPORT_H_
