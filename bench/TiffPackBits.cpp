#include "bench/TiffPackBits.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>

namespace bench {
namespace {

// The file in memory, and the functions that libtiff wants for it.
struct MemoryFile {
  Bytes bytes;
  std::size_t position = 0;
};

MemoryFile& fileOf(thandle_t handle) {
  return *static_cast<MemoryFile*>(handle);
}

tmsize_t readFile(thandle_t handle, void* to, tmsize_t size) {
  MemoryFile& file = fileOf(handle);
  const std::size_t left = file.bytes.size() - std::min(file.position, file.bytes.size());
  const std::size_t count = std::min(left, static_cast<std::size_t>(size));
  std::memcpy(to, file.bytes.data() + file.position, count);
  file.position += count;
  return static_cast<tmsize_t>(count);
}

tmsize_t writeFile(thandle_t handle, void* from, tmsize_t size) {
  MemoryFile& file = fileOf(handle);
  const std::size_t end = file.position + static_cast<std::size_t>(size);
  if (file.bytes.size() < end) file.bytes.resize(end);
  std::memcpy(file.bytes.data() + file.position, from, static_cast<std::size_t>(size));
  file.position = end;
  return size;
}

toff_t seekFile(thandle_t handle, toff_t offset, int whence) {
  MemoryFile& file = fileOf(handle);
  const toff_t from = whence == SEEK_SET   ? 0
                      : whence == SEEK_CUR ? file.position
                                           : file.bytes.size();
  return file.position = static_cast<std::size_t>(from + offset);
}

int closeFile(thandle_t) {
  return 0;
}

toff_t sizeOfFile(thandle_t handle) {
  return fileOf(handle).bytes.size();
}

// Mapped, so that libtiff unpacks straight from the file's bytes.
int mapFile(thandle_t handle, void** base, toff_t* size) {
  *base = fileOf(handle).bytes.data();
  *size = fileOf(handle).bytes.size();
  return 1;
}

void unmapFile(thandle_t, void*, toff_t) {}

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tiff open(MemoryFile& file, const char* mode) {
  file.position = 0;
  return Tiff(TIFFClientOpen("memory", mode, &file, readFile, writeFile, seekFile, closeFile,
                             sizeOfFile, mapFile, unmapFile),
              TIFFClose);
}

class MemoryTiff : public TiffPlane {
 public:
  explicit MemoryTiff(std::uint32_t side) : tiff_(open(file_, "w")) {
    TIFFSetField(tiff_.get(), TIFFTAG_IMAGEWIDTH, side);
    TIFFSetField(tiff_.get(), TIFFTAG_IMAGELENGTH, side);
    TIFFSetField(tiff_.get(), TIFFTAG_ROWSPERSTRIP, side);
    TIFFSetField(tiff_.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff_.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff_.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff_.get(), TIFFTAG_COMPRESSION, COMPRESSION_PACKBITS);
  }

  // Writes the strip with TIFFWriteEncodedStrip or TIFFWriteRawStrip, and opens the file to read.
  template <typename Write>
  void write(Write writeStrip, Bytes bytes) {
    writeStrip(tiff_.get(), 0, bytes.data(), static_cast<tmsize_t>(bytes.size()));
    tiff_.reset();
    tiff_ = open(file_, "r");
  }

  Bytes packedRows() override {
    Bytes rows(TIFFRawStripSize64(tiff_.get(), 0));
    TIFFReadRawStrip(tiff_.get(), 0, rows.data(), static_cast<tmsize_t>(rows.size()));
    return rows;
  }

  bool unpack(Bytes& plane) override {
    const auto size = static_cast<tmsize_t>(plane.size());
    return TIFFReadEncodedStrip(tiff_.get(), 0, plane.data(), size) == size;
  }

 private:
  MemoryFile file_;
  Tiff tiff_;
};

}  // namespace

std::shared_ptr<TiffPlane> TiffPlane::pack(const Bytes& plane, std::uint32_t side) {
  auto tiff = std::make_shared<MemoryTiff>(side);
  tiff->write(TIFFWriteEncodedStrip, plane);
  return tiff;
}

std::shared_ptr<TiffPlane> TiffPlane::wrap(const Bytes& packedRows, std::uint32_t side) {
  auto tiff = std::make_shared<MemoryTiff>(side);
  tiff->write(TIFFWriteRawStrip, packedRows);
  return tiff;
}

}  // namespace bench
