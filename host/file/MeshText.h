#ifndef MORVANE_HOST_FILE_MESHTEXT_H_
#define MORVANE_HOST_FILE_MESHTEXT_H_

#include <string>
#include <string_view>
#include <vector>

#include "host/mesh/MeshData.h"

namespace host {

// Whether the attribute of a mesh ("vt[0:165]", "uvst[0].uvsn", long names too) is part of its
// geometry, which is held as mesh data and not as attribute values.
bool isMeshData(std::string_view path);

// Sets such an attribute from the rest of its setAttr: numbers, faces or a quoted text, after -type
// and its word where given. Memory is taken only for numbers that are there, so that a range that
// promises more costs nothing. Points and tweaks are multiplied by `lengthFactor`. Gives what is
// wrong, else an empty text.
std::string setMeshData(MeshData& mesh, std::string_view path, std::string_view rest,
                        double lengthFactor);

// Whether such an attribute is a name, not numbers or faces.
bool isMeshText(std::string_view path);

// The same for what comes from a file without text: a name, or numbers in centimetres.
std::string setMeshText(MeshData& mesh, std::string_view path, std::string value);
std::string setMeshNumbers(MeshData& mesh, std::string_view path,
                           const std::vector<double>& numbers);

}  // namespace host

#endif  // MORVANE_HOST_FILE_MESHTEXT_H_
