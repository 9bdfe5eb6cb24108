#include "program.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <gtest/gtest.h>

#include "platform/dynamic_library.h"
#include "run_program.h"
#include "support/free_ports.h"
#include "support/play.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;
using gantry::test::Split;

/// Where something of the build stands, or of a package of it that a variable names.
std::string Place(const char* variable, const char* built) {
  const char* const packed = std::getenv(variable);
  return packed != nullptr ? packed : built;
}

/// What a program has printed, with the same ends of lines everywhere.
std::string ReadOutput(const fs::path& file) {
  std::string text = gantry::test::TestFolder::Read(file);
  std::erase(text, '\r');
  return text;
}

}  // namespace

std::string ProgramOf(const std::string& name) {
  if (name == "fieldrun") return Place("GANTRY_FIELDRUN", FIELDRUN);
  const fs::path built = fs::path(FIELDRUN).replace_filename(platform::ProgramFileName(name));
  return fs::exists(built) ? built.string() : name;
}

Outcome RunFieldrun(const gantry::test::TestFolder& folder,
                    const std::vector<std::string>& arguments) {
  return RunInFolder(folder, "fieldrun", arguments);
}

Outcome RunInFolder(const gantry::test::TestFolder& folder, const std::string& program,
                    const std::vector<std::string>& arguments) {
  ShareSettingsWithPrograms();
  gantry::test::StartSimulatorsOnFreePorts();
  // Of each run's own: what a program has started may hold its files open for longer than it lives.
  static int runs = 0;
  const std::string number = std::to_string(++runs);
  const fs::path out = folder / ("standard-output-" + number);
  const fs::path err = folder / ("standard-error-" + number);
  const int status = RunProgram(ProgramOf(program), arguments, folder.Path(), out, err);
  return {status, ReadOutput(out), ReadOutput(err)};
}

std::string ExampleCase(const std::string& name) {
  return (fs::path(Place("GANTRY_EXAMPLES", EXAMPLES)) / name / "case.toml").string();
}

std::string ChangedExample(const gantry::test::TestFolder& folder, const std::string& name,
                           const std::string& part, const std::string& replacement) {
  fs::copy(fs::path(EXAMPLES) / name, folder / name, fs::copy_options::recursive);
  std::string text = gantry::test::TestFolder::Read(folder / name / "case.toml");
  const size_t place = text.find(part);
  EXPECT_NE(place, std::string::npos) << "the example has changed: no " << part;
  if (place != std::string::npos) text.replace(place, part.size(), replacement);
  return folder.Write(name + "/case.toml", text).string();
}

Table::Table(const fs::path& file) {
  std::istringstream stream(gantry::test::TestFolder::Read(file));
  std::string line;
  std::getline(stream, line);
  columns_ = Split(line, ",");
  while (std::getline(stream, line)) rows_.push_back(Split(line, ","));
}

std::string Table::Text(size_t row, const std::string& column) const {
  const auto found = std::find(columns_.begin(), columns_.end(), column);
  EXPECT_NE(found, columns_.end()) << "no column " << column;
  return rows_.at(row).at(static_cast<size_t>(found - columns_.begin()));
}

double Table::Number(size_t row, const std::string& column) const {
  return std::stod(Text(row, column));
}

}  // namespace gantry::fieldrun::test
