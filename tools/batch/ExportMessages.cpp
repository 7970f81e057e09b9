#include "tools/batch/ExportMessages.h"

namespace tools {
namespace {

Message messageOf(const SharedTextures::Tile& tile) {
  return {{"scene", tile.scene}, {"path", tile.path}};
}

SharedTextures::Tile tileOf(const Message& message) {
  return {message.at("scene"), message.at("path")};
}

}  // namespace

Message messageOf(const OpeningOptions& opening) {
  Message message = {{"maps", opening.maps}, {"project", opening.project}};
  if (opening.frame) message["frame"] = *opening.frame;
  return message;
}

OpeningOptions openingOf(const Message& message) {
  OpeningOptions opening;
  message.at("maps").get_to(opening.maps);
  message.at("project").get_to(opening.project);
  if (message.contains("frame")) opening.frame = message["frame"].get<double>();
  return opening;
}

Message messageOf(const ExportJob& job) {
  return {{"nodes", job.nodes}, {"opening", messageOf(job.opening)},  {"json", job.json},
          {"quiet", job.quiet}, {"skipUnchanged", job.skipUnchanged}, {"dryRun", job.dryRun}};
}

ExportJob jobOf(const Message& message) {
  ExportJob job;
  message.at("nodes").get_to(job.nodes);
  job.opening = openingOf(message.at("opening"));
  message.at("json").get_to(job.json);
  message.at("quiet").get_to(job.quiet);
  message.at("skipUnchanged").get_to(job.skipUnchanged);
  message.at("dryRun").get_to(job.dryRun);
  return job;
}

Message messageOf(const SceneResult& result) {
  return {{"status", static_cast<int>(result.status)},
          {"outcome", result.outcome},
          {"records", result.records},
          {"failedScenes", result.failedScenes},
          {"exportedTiles", result.exportedTiles},
          {"failedTiles", result.failedTiles}};
}

SceneResult resultOf(const Message& message) {
  SceneResult result;
  result.status = static_cast<ExitStatus>(message.at("status").get<int>());
  message.at("outcome").get_to(result.outcome);
  message.at("records").get_to(result.records);
  message.at("failedScenes").get_to(result.failedScenes);
  message.at("exportedTiles").get_to(result.exportedTiles);
  message.at("failedTiles").get_to(result.failedTiles);
  return result;
}

Message messageOf(const SceneProgress& progress) {
  return {{"tile", progress.tile}, {"number", progress.number}, {"tiles", progress.tiles}};
}

SceneProgress progressOf(const Message& message) {
  return {message.at("tile"), message.at("number"), message.at("tiles")};
}

Message messageOf(const SharedTextures::Known& known) {
  Message owners = Message::object();
  for (const auto& [file, tiles] : known.owners) {
    Message& list = owners[file] = Message::array();
    for (const SharedTextures::Tile& tile : tiles) list.push_back(messageOf(tile));
  }
  Message textures = Message::object();
  for (const auto& [file, tile] : known.psdTextures) textures[file] = messageOf(tile);
  return {{"owners", owners}, {"foreseen", known.foreseen}, {"psdTextures", textures}};
}

SharedTextures::Known knownOf(const Message& message) {
  SharedTextures::Known known;
  for (const auto& [file, tiles] : message.at("owners").items())
    for (const Message& tile : tiles) known.owners[file].push_back(tileOf(tile));
  message.at("foreseen").get_to(known.foreseen);
  for (const auto& [file, tile] : message.at("psdTextures").items())
    known.psdTextures[file] = tileOf(tile);
  return known;
}

}  // namespace tools
