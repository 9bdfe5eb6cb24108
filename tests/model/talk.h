#pragma once

#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "gantry/boundary.h"
#include "model/ext_model.h"
#include "model/field_peer.h"
#include "model/programs/inflow_probe.h"
#include "settings/gantry_app.h"
#include "support/play.h"
#include "support/test_folder.h"

namespace gantry::test {

/// What stands behind a verb, taken word by word.
class Words {
 public:
  explicit Words(const std::string& line) : line_(line) {}

  template <class T = std::string>
  T Next(T otherwise = {}) {
    T word = otherwise;
    return line_ >> word ? word : otherwise;
  }
  template <class T = std::string>
  std::vector<T> All() {
    return {std::istream_iterator<T>(line_), {}};
  }
  std::string Rest() {
    std::string rest;
    std::getline(line_ >> std::ws, rest);
    return rest;
  }

 private:
  std::istringstream line_;
};

/// The host's side of a model, by the exported functions: a case in a folder of its own, a real
/// simulator process, and a field that answers for it from within the test.
class HostTalk : public testing::TestWithParam<Scene>, public Player {
 protected:
  using Verb = void (*)(HostTalk& talk, Words& words);
  static const std::map<std::string, Verb> kFieldVerbs, kVerbs;

  HostTalk();
  ~HostTalk() override;
  void Do(const std::string& verb, const std::string& rest) override;
  std::string Filled(std::string text) const;

  std::filesystem::path Case() const { return folder / "case"; }
  CExtModel& Model() { return *static_cast<CExtModel*>(model); }
  int32_t Command(uint32_t number, void* data = nullptr, uint32_t value = 0) {
    return ExtCmd(model, nullptr, number, data, value, &err);
  }
  /// "done", or the text of the failure ("failed" where it has none).
  std::string Outcome(int32_t result) const {
    if (result == 0) return "done";
    return *err.text == '\0' ? "failed" : err.text;
  }
  /// What went wrong, if it did; true where nothing has.
  bool Hear(int32_t result) {
    if (result != 0) Tell(Outcome(result));
    return result == 0;
  }
  void TellAll(const Texts& lines) {
    for (const std::string& line : lines) Tell(line);
  }
  /// The value, or "none" where nothing answered.
  std::string Get(const std::string& path) {
    const std::string whole = "Intersect." + path;
    GetPropertyRequest request = {};
    request.path = whole.c_str();
    return Command(EXT_GET_PROPERTY, &request) == 0 ? request.value : "none";
  }
  Texts Wells() {
    Texts names;
    EnumSourcesRow row = {};
    row.index = -1;
    while (Command(EXT_ENUM_SOURCES, &row) == 0) names.push_back(row.name);
    return names;
  }
  /// With these wells connected; the host's callbacks are given what `Told` holds.
  int32_t StartRun(double hostDate, std::vector<int32_t> connected);
  static Texts& Told();
  void TellFluid();
  void TellPart(const std::string& part);

  TestFolder folder;
  FieldPeer peer;
  CGantryApp app;
  InflowProbe& probe;
  std::unique_ptr<_tGetSetData> inflow = std::make_unique<_tGetSetData>();  ///< what is read
  std::unique_ptr<CaseDataRecord> record = std::make_unique<CaseDataRecord>();
  ExtErrorBlock err = {};
  void* model = nullptr;
};

}  // namespace gantry::test
