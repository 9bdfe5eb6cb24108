// Text paths, commands and values of any content. The input is a path, a line feed and a
// value. Whatever comes, the reply stays within its field and terminated, and numbers read as the
// C library reads them.
// Reads: src/text/tag_parser.cpp src/text/command_arguments.cpp src/text/number_text.cpp
// Reads: src/text/data_server_object.cpp

#include <bit>

#include "settings/link_settings.h"
#include "target.h"
#include "text/number_text.h"
#include "wells/source.h"
#include "wells/static_well_data.h"

namespace {

using namespace gantry;
using namespace gantry::fuzz;

constexpr size_t kReplySize = 512;
constexpr char kGuard = '#';

StaticWellDataCollection SomeWells() {
  StaticWellDataCollection wells;
  for (const char* name : {"P1", "", "W]{}[(\"x\")"}) wells.Items.emplace_back().Name = name;
  return wells;
}

/// The walk that the model takes.
void Walk(TagParser& parser) {
  LinkSettings settings;
  StaticWellDataCollection wells = SomeWells();
  SourceList sources;
  sources.Items.resize(2);
  std::vector<double> numbers(3);
  parser.MatchWord("Intersect");
  // One that fails in the middle of a path leaves the rest to the next.
  const auto fails = [&](bool handled) {
    Require(!handled || parser.ErrorText.empty());
    parser.ErrorText.clear();
    return !handled;
  };
  if (fails(settings.Handle(parser, nullptr)) && fails(wells.Handle(parser, false, nullptr, {})) &&
      fails(sources.Handle(parser, false, nullptr, "Well"))) {
    fails(parser.DoubleArrayItem(numbers, "Numbers"));
  }
}

void ReadPath(const std::string& path) {
  std::array<char, kReplySize + 16> field;
  field.fill(kGuard);
  TagParser parser = TagParser::ForReading(path, std::span(field).first(kReplySize));
  Walk(parser);
  for (size_t i = kReplySize; i < field.size(); ++i) Require(field[i] == kGuard);
  const bool answered = field[0] != kGuard || field[1] != kGuard;
  Require(!answered || std::memchr(field.data(), '\0', kReplySize) != nullptr);
}

void WritePath(const std::string& path, const std::string& value) {
  TagParser parser = TagParser::ForWriting(path, value.c_str());
  Walk(parser);
  std::array<double, 4> numbers = {};
  std::string error;
  Require(parser.ParseValueArray(numbers, error) == error.empty());
}

void RunCommand(const std::string& text) {
  TagParser parser = TagParser::ForCommand(text);
  CExtDataServerCmdArgumentCollection arguments;
  parser.MatchWord("Intersect");
  const CommandMatch match = parser.MatchCommand("RunToTime", arguments, 1, 3);
  Require((match == CommandMatch::kMalformed) == !parser.ErrorText.empty());
  Require(arguments.Size() <= 3);
  for (const auto& argument : arguments) Require(std::strlen(argument->Text) < 256);
}

void ReadNumbers(const std::string& text) {
  const double expected = std::strtod(text.c_str(), nullptr);
  const double actual = ReadDouble(text.c_str());
  Require(std::isnan(expected)
              ? std::isnan(actual)
              : std::bit_cast<uint64_t>(actual) == std::bit_cast<uint64_t>(expected));
  ReadInteger(text);
}

}  // namespace

FUZZ_TARGET(tag_parser) {
  const std::string path(gantry::fuzz::TakeUpTo('\n', input)), value(input);
  ReadPath(path);
  WritePath(path, value);
  RunCommand(path);
  ReadNumbers(value);
}
