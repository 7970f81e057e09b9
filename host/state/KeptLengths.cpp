#include "host/state/KeptLengths.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "host/state/SceneUnits.h"
#include "host/text/Numbers.h"
#include "host/text/TextScanner.h"

namespace host {
namespace {

struct LengthAttribute {
  std::string_view type;
  std::string_view shortName;
  std::string_view longName;
};
constexpr LengthAttribute kLengths[] = {{"tweak", "vl", "vlist"}, {"polyTweak", "tk", "tweak"}};

// A word may hold many numbers.
template <class Turn>
void turnNumbers(KeptWords& kept, const Turn& turn) {
  for (std::string& word : kept.words) {
    std::string turned;
    TextScanner in(word);
    while (!in.atEnd()) {
      double number = 0.0;
      if (!turned.empty()) turned += ' ';
      if (in.number(number))
        mel::appendNumber(turned, turn(number));
      else
        turned += in.word();
    }
    word = std::move(turned);
  }
}

}  // namespace

bool isKeptLength(const Node& node, std::string_view path) {
  const std::string_view head = path.substr(0, path.find_first_of(".["));
  return std::any_of(std::begin(kLengths), std::end(kLengths), [&](const LengthAttribute& known) {
    return node.type().name() == known.type && (head == known.shortName || head == known.longName);
  });
}

void turnIntoCentimetres(KeptWords& kept, double length) {
  if (length != 1.0) turnNumbers(kept, [length](double number) { return number * length; });
}

void turnFromCentimetres(KeptWords& kept, double length) {
  if (length != 1.0)
    turnNumbers(kept, [length](double number) { return dividedBy(number, length); });
}

}  // namespace host
