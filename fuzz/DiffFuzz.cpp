// Two files of any goblins, compared: nothing differs from itself, and each goblin of both files is
// told of once or counted as the same.
#include <algorithm>
#include <set>
#include <string>

#include "fuzz/FuzzTools.h"
#include "psd/PsdDocument.h"
#include "tools/model/GoblinDiff.h"
#include "tools/model/TileFile.h"

using namespace morvane::fuzz;

namespace {

tools::Goblins goblinsIn(const std::string& blob) {
  morvane::PsdDocument document(256, 256);
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(blob.data());
  require(document.addDataLayer("GoblinGeometry", static_cast<std::uint32_t>(blob.size()), bytes),
          "a blob does not fit");
  return tools::readGoblins(document);
}

void compare(const tools::GoblinSide& before, const tools::GoblinSide& after, bool isItself) {
  const tools::GoblinDiff diff = tools::diffGoblins(before, after);
  const std::size_t left = before.goblins.goblins.size();
  const std::size_t right = after.goblins.goblins.size();
  std::set<std::size_t> seen[2];
  for (const tools::GoblinChange& change : diff.changes) {
    require(!change.before || (*change.before < left && seen[0].insert(*change.before).second),
            "a goblin of the old file is told of twice, or is not there");
    require(!change.after || (*change.after < right && seen[1].insert(*change.after).second),
            "a goblin of the new file is told of twice, or is not there");
    require(change.before || change.after, "a change of nothing");
    tools::changedName(change, before, after);
  }
  require(seen[0].size() + diff.same == left && seen[1].size() + diff.same == right,
          "a goblin is neither the same nor changed");
  require(!isItself || diff.changes.empty(), "goblins differ from themselves");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 100000) return 0;
  InputBytes in(data, size);
  const std::size_t first = std::min<std::size_t>(in.takeWord(), in.left());
  const std::string both(in.bytes(), in.bytes() + in.left());
  const tools::Goblins old = goblinsIn(both.substr(0, first));
  const tools::Goblins other = goblinsIn(both.substr(first));
  const tools::GoblinSide before(old);
  const tools::GoblinSide after(other);
  compare(before, before, true);
  compare(before, after, false);
  compare(after, before, false);
  return 0;
}
