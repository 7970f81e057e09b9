#ifndef MORVANE_GOBLIN_SURFACESAMPLING_H_
#define MORVANE_GOBLIN_SURFACESAMPLING_H_

#include <maya/MDagPath.h>
#include <maya/MObject.h>
#include <maya/MPoint.h>
#include <maya/MSelectionList.h>
#include <maya/MStatus.h>

#include <vector>

// Finds the textured geometry under a goblin and copies its texture coordinates onto the goblin.
namespace morvane {

// Candidate geometry, and for each candidate a box that quickly rules it out as the nearest. Good
// as long as neither the list nor the candidates change.
class GeometrySearch {
 public:
  explicit GeometrySearch(const MSelectionList& candidates);

  // As findClosestGeometry().
  void findClosest(const MObject& goblin, unsigned& index, int& polygon) const;

 private:
  struct Candidate {
    MDagPath shape;
    MPoint low;  // of its box in the world
    MPoint high;
  };
  std::vector<Candidate> candidates_;
};

// Finds the candidate whose surface is nearest to the centre of the goblin's object-space box,
// which is taken as a point of the world. Writes the candidate's position in the list and the id of
// its nearest polygon; writes neither when no candidate has a nearest point. Ties go to the earlier
// candidate. Always a success.
MStatus findClosestGeometry(const MObject& goblin, const MSelectionList& candidates,
                            unsigned& index, int& polygon);

// Gives the goblin's UV number v the texture coordinates of the point of candidate `index`'s
// polygon `polygon` that is nearest to vertex v in world space, and makes every corner use the UV
// of its vertex's number. A vertex whose coordinates cannot be evaluated is reported on standard
// output and keeps the UV it had, else (0, 0). Always a success.
MStatus sampleGoblinUVs(const MObject& goblin, const MSelectionList& candidates, unsigned index,
                        int polygon);

}  // namespace morvane

#endif  // MORVANE_GOBLIN_SURFACESAMPLING_H_
