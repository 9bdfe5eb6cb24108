// The layers of the driver, held by its own #include lines.

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

struct Layer {
  std::string folder;
  int rank;
};

/// From the bottom up. A file may include its own layer, the layers of lower rank, and none beside
/// its own.
const std::vector<Layer> kLayers = {
    {"boundary", 0},   {"platform", 1}, {"text", 2},  {"toolkit", 3},  {"client", 4},
    {"settings", 5},   {"remote", 6},   {"wells", 7}, {"sessions", 8}, {"case", 9},
    {"equipment", 10}, {"model", 11},   {"ui", 12},   {"host", 13}};

const Layer* LayerOf(const std::string& path) {
  for (const Layer& layer : kLayers) {
    if (path.starts_with(layer.folder + "/")) return &layer;
  }
  return nullptr;
}

struct SourceFile {
  std::string path;  ///< below the source folder
  std::vector<std::string> lines;
};

std::vector<SourceFile> ReadSources() {
  const fs::path root = GANTRY_SOURCE;
  std::vector<SourceFile> files;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp" && extension != ".c") continue;
    SourceFile& file = files.emplace_back();
    file.path = fs::relative(entry.path(), root).generic_string();
    std::ifstream stream(entry.path());
    for (std::string line; std::getline(stream, line);) file.lines.push_back(line);
  }
  return files;
}

std::vector<std::string> IncludesOf(const SourceFile& file) {
  static const std::regex kInclude("^ *# *include *\"([^\"]+)\".*");
  std::vector<std::string> includes;
  std::smatch match;
  for (const std::string& line : file.lines) {
    if (std::regex_match(line, match, kInclude)) includes.push_back(match[1]);
  }
  return includes;
}

TEST(IncludeGraph, HasEveryFileInALayer) {
  const auto files = ReadSources();
  EXPECT_GT(files.size(), 50u);
  for (const SourceFile& file : files) EXPECT_NE(LayerOf(file.path), nullptr) << file.path;
}

TEST(IncludeGraph, NeverPointsUpward) {
  for (const SourceFile& file : ReadSources()) {
    const Layer* const from = LayerOf(file.path);
    if (from == nullptr) continue;
    for (const std::string& include : IncludesOf(file)) {
      const Layer* const to = LayerOf(include);
      EXPECT_NE(to, nullptr) << file.path << " includes " << include << ", which has no layer";
      if (to == nullptr) continue;
      EXPECT_LE(to->rank, from->rank) << file.path << " includes " << include;
    }
  }
}

/// Walks the includes of a file, depth first, and tells where they come back to their start.
class CycleFinder {
 public:
  explicit CycleFinder(const std::vector<SourceFile>& files) {
    for (const SourceFile& file : files) includes_[file.path] = IncludesOf(file);
  }

  std::vector<std::string> Cycles() {
    for (const auto& [path, ignored] : includes_) Visit(path);
    return cycles_;
  }

 private:
  enum class State { kNew, kOpen, kDone };

  void Visit(const std::string& path) {
    if (states_[path] == State::kDone || !includes_.contains(path)) return;
    if (states_[path] == State::kOpen) {
      cycles_.push_back(path);
      return;
    }
    states_[path] = State::kOpen;
    for (const std::string& include : includes_[path]) Visit(include);
    states_[path] = State::kDone;
  }

  std::map<std::string, std::vector<std::string>> includes_;
  std::map<std::string, State> states_;
  std::vector<std::string> cycles_;
};

TEST(IncludeGraph, HasNoCycle) {
  EXPECT_EQ(CycleFinder(ReadSources()).Cycles(), std::vector<std::string>());
}

TEST(IncludeGraph, LeavesThePlatformToItsFolder) {
  static const std::regex kPlatformTest(
      "^ *# *(if|ifdef|ifndef|elif|elifdef).*(_WIN32|_WIN64|WIN32|__linux|__unix|__APPLE__|"
      "__MINGW|_MSC_VER).*");
  for (const SourceFile& file : ReadSources()) {
    if (file.path.starts_with("platform/")) continue;
    for (const std::string& line : file.lines)
      EXPECT_FALSE(std::regex_match(line, kPlatformTest)) << file.path << ": " << line;
  }
}

}  // namespace
