#ifndef MORVANE_TOOLS_MODEL_GOBLINOBJ_H_
#define MORVANE_TOOLS_MODEL_GOBLINOBJ_H_

#include <string>

#include "tools/model/TileFile.h"

namespace tools {

// The goblins as a Wavefront OBJ text: one named object each, over the unit tile (x and z from 0 to
// 1 at y = 0). Positions are in tile space, corners counter-clockwise, texture coordinates with v =
// 1 where z = 0, so that the same goblins give the same text whichever layout they were stored in:
// the tagged layout's mirrored z and the named layout's reversed corners are undone.
// `library` is the name of a file as objMaterial() makes it, without a line feed; empty: the text
// names no material.
std::string goblinsToObj(const Goblins& goblins, const std::string& library = "");

// The material of all that: coloured by the image file of that name, or gray where that is empty.
std::string objMaterial(const std::string& picture);

}  // namespace tools

#endif  // MORVANE_TOOLS_MODEL_GOBLINOBJ_H_
