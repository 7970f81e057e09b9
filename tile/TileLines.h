#ifndef MORVANE_TILE_TILELINES_H_
#define MORVANE_TILE_TILELINES_H_

// The fixed lines that an export writes to the message log. A program that runs the plug-in reads
// them there.
namespace morvane {

// The lines of a tile begin with its path between the first two. Those of a failed tile end with
// the third and the tile's place in the selection.
inline constexpr char kTileBegins[] = "Exporting tile ";
inline constexpr char kTileBeginsEnd[] = "...";
inline constexpr char kTileFailed[] = "*** Error exporting tile ";

// Before each of the errors and warnings below.
inline constexpr char kErrorMark[] = "*** Error : ";
inline constexpr char kWarningMark[] = "*** Warning : ";

inline constexpr char kNoDagPath[] = "couldn't get DAG path";
inline constexpr char kNoTransform[] = "No transform";
inline constexpr char kNoMesh[] = "No mesh";
inline constexpr char kNoExtent[] = "tile has no extent in x or z";
inline constexpr char kSeveralMaterials[] = "Must have only one material attached to base mesh";
inline constexpr char kNoMaterial[] = "No material attached to shader node";
inline constexpr char kNoTexture[] = "No texture attached to material node";
inline constexpr char kSeveralTextures[] = "Must have only one texture attached to base material";
inline constexpr char kNoFileTexture[] = "Only file textures supported";
inline constexpr char kNoTextureName[] = "Error retrieving texture name";
inline constexpr char kLoadFailed[] = "couldn't load psd";
inline constexpr char kWeirdTransform[] = "transform weirdness on goblin";  // without a line feed
inline constexpr char kLayerFailed[] = "couldn't add goblin layer";
inline constexpr char kTooLarge[] = "goblin geometry exceeds layer size";
inline constexpr char kSaveFailed[] = "couldn't save psd";

inline constexpr char kGoblinOutside[] = "goblin outside of tile boundary";

// Without a line feed, and without the mark.
inline constexpr char kPlainWarningMark[] = "Warning: ";
inline constexpr char kGoblinMaterials[] = "more than one material on the goblin!";

}  // namespace morvane

#endif  // MORVANE_TILE_TILELINES_H_
