#ifndef MORVANE_LIBRARY_DOCUMENTFILE_H_
#define MORVANE_LIBRARY_DOCUMENTFILE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "psd/PsdDocument.h"
#include "util/Status.h"

// Documents from and to files and memory. After a failure the document, or the file, is what it was
// before. Paths are in the encoding that the system's file functions take, and hold no zero byte.

namespace morvane {

// Reads a PSD file, or makes a document of an uncompressed TGA image of 24 or 32 bits; the
// extension of the file's name says which. Fails as PsdDocument::load() does, and the text names
// the file.
Status loadDocument(std::string_view path, PsdDocument& document);

// Reads a PSD file of `size` bytes in memory. The first takes the bytes, which stay the only copy:
// the document's channels lie in them. The second copies them. kDamaged, kUnsupported, kTooLarge,
// or kOutOfMemory.
Status parseDocument(std::unique_ptr<std::uint8_t[]> bytes, std::size_t size,
                     PsdDocument& document);
Status parseDocument(const std::uint8_t* bytes, std::size_t size, PsdDocument& document);

// Writes the document as a PSD file. Whenever the process or the machine stops, the path holds the
// old file or the new one whole; only a success means that every byte is on the disk. Fails as
// PsdDocument::save() does.
Status saveDocument(const PsdDocument& document, std::string_view path);

// Replaces what `bytes` holds with the bytes that saveDocument() would write. kDamaged for a
// document whose public members do not fit together, or for which there is no memory.
Status writeDocument(const PsdDocument& document, std::vector<std::uint8_t>& bytes);

}  // namespace morvane

#endif  // MORVANE_LIBRARY_DOCUMENTFILE_H_
