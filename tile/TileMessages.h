#ifndef MORVANE_TILE_TILEMESSAGES_H_
#define MORVANE_TILE_TILEMESSAGES_H_

#include <string>

namespace morvane {

// Takes the messages that reading a tile gives, in order. An export shows them; a forecast of an
// export keeps them.
class TileMessages {
 public:
  virtual ~TileMessages() = default;

  // To the message log, exactly as it is: no line feed is added.
  virtual void log(const std::string& text) = 0;
  // To the host's error and warning channels. It says what the log's fixed lines leave out: which
  // file or node, and why. One line, without a line feed.
  virtual void explain(const std::string& text) = 0;
  virtual void warn(const std::string& text) = 0;

  // Logs an error line. Always false.
  bool fail(const std::string& error);
  bool fail(const std::string& error, const std::string& explanation);
};

// Says everything.
class SpokenMessages final : public TileMessages {
 public:
  void log(const std::string& text) override;
  void explain(const std::string& text) override;
  void warn(const std::string& text) override;
};

// Says nothing.
class SilentMessages final : public TileMessages {
 public:
  void log(const std::string&) override {}
  void explain(const std::string&) override {}
  void warn(const std::string&) override {}
};

}  // namespace morvane

#endif  // MORVANE_TILE_TILEMESSAGES_H_
