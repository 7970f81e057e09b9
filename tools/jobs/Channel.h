#ifndef MORVANE_TOOLS_JOBS_CHANNEL_H_
#define MORVANE_TOOLS_JOBS_CHANNEL_H_

#include <nlohmann/json.hpp>
#include <optional>

namespace tools {

using Message = nlohmann::json;

// Messages between two processes of this program. Texts in them may have any bytes, as names of
// files do. The descriptors stay the caller's.
class Channel {
 public:
  Channel(int readEnd, int writeEnd) : readEnd_(readEnd), writeEnd_(writeEnd) {}

  // False when nobody reads any more.
  bool send(const Message& message) const;
  // Waits for the next one. Nothing when the other process has ended, or sent what is none.
  std::optional<Message> receive() const;

 private:
  int readEnd_;
  int writeEnd_;
};

}  // namespace tools

#endif  // MORVANE_TOOLS_JOBS_CHANNEL_H_
