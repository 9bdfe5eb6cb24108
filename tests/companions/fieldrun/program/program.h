#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/test_folder.h"

namespace gantry::fieldrun::test {

/// What a program left when it ended.
struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

/// The path of a program of this project, else the name as it stands.
std::string ProgramOf(const std::string& name);

/// Runs a program of this project, or of the system, in the folder with these arguments, each given
/// as it stands, and waits for its end.
Outcome RunInFolder(const gantry::test::TestFolder& folder, const std::string& program,
                    const std::vector<std::string>& arguments);
Outcome RunFieldrun(const gantry::test::TestFolder& folder,
                    const std::vector<std::string>& arguments);

/// The case file of an example.
std::string ExampleCase(const std::string& name);

/// A copy of an example in the folder, with a part of its case file put in place of another. Fails
/// the test when the part isn't there.
std::string ChangedExample(const gantry::test::TestFolder& folder, const std::string& name,
                           const std::string& part, const std::string& replacement);

/// A comma-separated table by rows and the names of its columns. Fields hold no commas.
class Table {
 public:
  explicit Table(const std::filesystem::path& file);
  size_t Rows() const { return rows_.size(); }
  std::string Text(size_t row, const std::string& column) const;
  double Number(size_t row, const std::string& column) const;

 private:
  std::vector<std::string> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace gantry::fieldrun::test
