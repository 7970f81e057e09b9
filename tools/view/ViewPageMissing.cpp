#include "tools/view/ViewPage.h"

// Takes the place of the page in a program that is built without Node.js.
namespace tools {

const char* const* viewPageHead() {
  return nullptr;
}

const char* const* viewPageTail() {
  return nullptr;
}

}  // namespace tools
