#ifndef MORVANE_PSD_PSDREADER_H_
#define MORVANE_PSD_PSDREADER_H_

#include <cstdint>
#include <memory>
#include <string>

#include "psd/PsdDocument.h"
#include "psd/PsdInput.h"

// The steps of reading a PSD file that more than one source file takes part in.

namespace morvane {

// A copy of `size` bytes at the input's position; null for size 0 and on failure,
// which is the input's status.
std::unique_ptr<std::uint8_t[]> readOwned(PsdInput& in, std::size_t size);

// A name padded to a multiple of `alignment` bytes. The whole field is kept too when the name alone
// does not give it back.
void readName(PsdInput& in, std::uint32_t alignment, std::unique_ptr<char[]>& name,
              PsdOpaque& field);

// Makes a document of the bytes of a PSD file, which it then owns. After a failure (kDamaged,
// kUnsupported, kOutOfMemory) the document is undefined. Neither the signature nor the version is a
// reason to refuse a file that can be read: it is kept whole, and takes no layers.
Status parsePsd(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size, PsdDocument& document);

void readLayerRecord(PsdInput& in, PsdLayer& layer);

// Layer and mask information: everything after the section's length.
void readLayerSection(PsdInput& in, PsdDocument& document);

}  // namespace morvane

#endif  // MORVANE_PSD_PSDREADER_H_
