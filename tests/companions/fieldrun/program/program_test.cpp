// fieldrun as its user meets it: command lines, exit statuses, messages and files.

#include "program.h"

#include <regex>

#include <gtest/gtest.h>

#include "support/isolation.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;

class Program : public ::testing::Test {
 protected:
  Outcome Run(const std::vector<std::string>& arguments) { return RunFieldrun(folder_, arguments); }
  /// What a run that comes to a good end prints.
  std::string Succeed(const std::vector<std::string>& arguments) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }
  /// What a run prints that ends with this status and tells of this on its standard error.
  std::string Fail(const std::vector<std::string>& arguments, const std::string& complaint,
                   int status = 1) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_TRUE(std::regex_search(outcome.err, std::regex(complaint))) << outcome.err;
    return outcome.out;
  }
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  std::string Read(const std::string& name) const { return folder_.Read(folder_ / name); }

  const std::string odeh_ = ExampleCase("odeh");
  gantry::test::TestFolder folder_;
};

TEST_F(Program, CallsTheModuleInTheOrderOfARun) {
  EXPECT_EQ(Succeed({"run", ExampleCase("gas_cycling"), "-o", Path("out"), "-n", "2", "--trace",
                     Path("trace"), "--quiet"}),
            "");
  const std::string trace = Read("trace");
  std::string order;
  std::string last;
  static const std::regex kCall(R"((?:^|\n)(Ext[A-Za-z]+)\((\d+ )?)");
  for (std::sregex_iterator call(trace.begin(), trace.end(), kCall), end; call != end; ++call) {
    std::string name = (*call)[2].matched ? (*call)[2].str() : (*call)[1].str() + " ";
    if (name != last) order += name;
    last = name;
  }
  // Three wells; a repeated call counts once. The totals are published before the simulator
  // starts, and the last read is the result of the second step.
  EXPECT_EQ(order,
            "ExtIdentify ExtCreateUnit ExtCreateInstance 21 20 97 20 12 109 20 12 20 23 96 2 9 11 "
            "97 96 129 19 48 103 105 63 50 53 101 49 63 50 105 53 101 49 63 50 105 56 "
            "ExtDestroyInstance ")
      << order;
  EXPECT_NE(trace.find("composition=[0.02 0.86 0.09 0.03 0 0]"), std::string::npos);
}

TEST_F(Program, TellsWhatItCantDoAndWhatTheModulePassesOverInSilence) {
  const std::string parallel = "Intersect.CaseDetails.Parallel";
  const struct {
    std::vector<std::string> line;
    int status;
    std::string notice;  // how it begins
  } kLines[] = {
      {{}, 2, "fieldrun: "},
      {{"rum"}, 2, "fieldrun: there is no command \"rum\"; did you mean \"run\"?"},
      {{"fly"}, 2, "fieldrun: there is no command \"fly\"; see fieldrun --help"},
      {{"run"}, 2, "fieldrun: case is required"},
      {{"units", "--jsn"},
       2,
       "fieldrun: The following argument was not expected: --jsn; did you mean \"--json\"?"},
      {{"run", "a.toml", "--steps", "0"}, 2, "fieldrun: --steps: "},
      {{"do", odeh_, "Intersect.Fly(1)"},
       2,
       "fieldrun: the module has no command \"Fly\"; it has StartIX, "},
      {{"variables", odeh_, "--add", "P1:Colour"},
       2,
       "fieldrun: --add P1:Colour: the label must be one of "},
      {{"variables", odeh_, "--read", "0"}, 2, "fieldrun: --read and --write need --start: "},
      {{"variables", odeh_, "--start", "--write", "0=much"},
       2,
       "fieldrun: --write 0=much: the value must be"},
      {{"variables", odeh_, "--add", "P1:Oil production rate"},
       2,
       odeh_ + ":9: variables are kept in the case's store_file, and [simulator] names none\n"},
      {{"set", odeh_, parallel, "much"},
       1,
       "fieldrun: " + parallel + " takes a number; \"much\" has"},
      {{"set", odeh_, parallel, "600"}, 0, "fieldrun: " + parallel + " is 512 now, not 600\n"},
      {{"set", odeh_, parallel, "7"}, 0, ""},
      {{"set", odeh_, "Intersect.CaseDetails.HeadNode", "node7"}, 0, ""},
      {{"describe", odeh_, Path("d.xml")},
       0,
       "fieldrun: " + Path("d.xml") + " describes no wells, "},
  };
  for (const auto& [line, status, notice] : kLines) {
    const Outcome outcome = Run(line);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_EQ(outcome.err.substr(0, notice.empty() ? 1 : notice.size()), notice);
  }
}

TEST_F(Program, ChecksACaseAndItsDeckWithoutARun) {
  Succeed({"check", odeh_});
  const std::string file = ChangedExample(folder_, "five_spot", "diameter = 62", "diameter = 6.2");
  const auto change = [this](const std::string& name, const std::string& from, const char* to) {
    std::string text = Read("five_spot/" + name);
    folder_.Write("five_spot/" + name, text.replace(text.find(from), from.size(), to));
  };
  EXPECT_NE(Run({"run", file, "-q", "-n", "1"}).err.find(":32: warning: diameter is 6.2 mm"),
            std::string::npos);
  change("case.toml", "max_liquid", "max_liqid");
  change("FIVE_SPOT.afi", "skin", "skn");
  EXPECT_EQ(Fail({"check", file}, "", 2),
            file +
                ":32: warning: diameter is 6.2 mm, less than 19.05 mm: it can hardly be meant (6.2 "
                "in could)\n" +
                file + ":47: [well] has no key \"max_liqid\"; did you mean \"max_liquid\"?\n" +
                Path("five_spot/FIVE_SPOT.afi") +
                ":96: unknown key 'skn'; did you mean \"skin\"?\n" + file +
                ": 2 errors, 1 warning\n");
}

TEST_F(Program, TellsARunToProgramsByALineForEachEvent) {
  const std::string file = ChangedExample(folder_, "five_spot", "diameter = 62", "diameter = 6.2");
  const std::string events = Succeed({"run", file, "-o", Path("out"), "-n", "2", "--json"});
  EXPECT_TRUE(std::regex_search(
      events,
      std::regex(R"(^\{"event":"start","run":.*"units":"metric".*"steps":2,.*:32: warning: .*\n)"
                 R"((?:\{.*\n)*\{"event":"step","step":1,.*"produced":\{"oil":\d.*\n)"
                 R"((?:\{.*\n)*\{"event":"step","step":2,.*"total_injected":\{.*"water":\d.*\n)"
                 R"((?:\{.*\n)*\{"event":"end","steps":2,.*"failure":"",.*\}\n$)")))
      << events;
}

TEST_F(Program, NamesTheUnitsAndTheWellsOfACase) {
  const auto units = Succeed({"units", ExampleCase("five_spot"), "--json"});
  EXPECT_TRUE(std::regex_search(units, std::regex(R"("pressure",\s+"unit": "bara")"))) << units;
  const auto wells = Succeed({"wells", odeh_, "--json"});
  EXPECT_TRUE(std::regex_search(
      wells, std::regex(R"("well": "INJ",\s+"kind": "gas injector",\s+"connected": true)")))
      << wells;
}

TEST_F(Program, NamesTheLineOfACaseThatDoesntFitItsSimulator) {
  const struct {
    std::string part, replacement, complaint;
  } kCases[] = {
      {"name = \"INJ\"", "name = \"inj\"",
       R"(case\.toml:\d+: the simulator has no well "inj"; did you mean "INJ"\?)"},
      {"kind = \"gas_injector\"\ngas_rate", "kind = \"water_injector\"\nwater_rate",
       R"(case\.toml:\d+: well "INJ" is a gas injector in the simulator)"},
      {"gas_rate = 100", "gas_rate = 100\ncomposition = [1.0]",
       R"(case\.toml:\d+: composition means nothing for a black-oil dataset)"},
      {"[time]\n", "[time]\nstart = 2014-12-31\n",
       R"(case\.toml:\d+: start lies before the simulator's date, 2015-01-01)"},
  };
  for (const auto& c : kCases) {
    fs::remove_all(folder_ / "odeh");
    const std::string file = ChangedExample(folder_, "odeh", c.part, c.replacement);
    Fail({"run", file, "-n", "1"}, c.complaint, 2);
    EXPECT_FALSE(fs::exists(folder_ / "odeh/results/wells.csv"));
  }
}

TEST_F(Program, FailsWithTheModulesOwnText) {
  Fail({"run", odeh_, "-o", Path("out"), "--simulator", Path("no-simulator")},
       R"(Could not start the simulator process: <.*> \(.*no-simulator\))");
  EXPECT_FALSE(fs::exists(folder_ / "out/wells.csv"));
  Fail({"identify", "--module", Path("libNone.so")}, "libNone\\.so");
  EXPECT_EQ(Fail({"get", odeh_, "Intersect.Nothing", "Intersect.IsRunning"}, "Intersect\\.Nothing"),
            "0\n");
  Fail({"do", odeh_, "Other.StartIX()"}, "Invalid prefix");
  folder_.Write("taken", "");
  Fail({"run", odeh_, "-o", Path("taken")}, "taken");
  EXPECT_EQ(Read("taken"), "");
}

TEST_F(Program, TellsOfADiskThatIsFull) {
  Succeed({"identify", "--trace", Path("trace")});
  Fail({"identify", "--trace", "/dev/full"}, "/dev/full couldn't be written whole");

  const std::string script = folder_
                                 .Write("fieldrun",
                                        "#!/bin/sh\ntrap '' XFSZ; ulimit -f 40\n"
                                        "exec \"" FIELDRUN "\" \"$@\"\n")
                                 .string();
  fs::permissions(script, fs::perms::owner_all);
  {
    const gantry::test::ScopedVariable limited("GANTRY_FIELDRUN", script);
    Fail({"run", odeh_, "-o", Path("out"), "-q"}, "inflow\\.csv can't be written: File too large");
  }
  const size_t steps = Table(folder_ / "out/field.csv").Rows();
  EXPECT_GT(steps, 4U);
  EXPECT_EQ(Table(folder_ / "out/inflow.csv").Rows(), 20 * steps) << "whole steps are kept";
  Succeed({"report", Path("out")});
}

TEST_F(Program, ReachesPropertiesAndCommandsOfARunningSimulator) {
  EXPECT_EQ(
      Succeed({"get", odeh_, "--start", "--json", "Intersect.IsRunning", "Intersect.Well.$Count"}),
      "{\n  \"Intersect.IsRunning\": \"1\",\n  \"Intersect.Well.$Count\": \"2\"\n}\n");
  Succeed({"do", odeh_, "--start", "Intersect.RunToTime(31)"});
  Succeed({"describe", odeh_, Path("d.xml"), "--start", "--well", "PROD", "--no-variables"});
  EXPECT_NE(Read("d.xml").find("PROD"), std::string::npos);
  EXPECT_EQ(Read("d.xml").find("INJ"), std::string::npos);
}

TEST_F(Program, SavesACaseAndLoadsItAgain) {
  const std::string block = Path("case.block");
  Succeed({"set", odeh_, "Intersect.CaseDetails.Parallel", "7", "--start", "--save", block});
  const std::string load = Succeed({"load", block});
  EXPECT_TRUE(
      std::regex_search(load, std::regex(R"(Parallel +7\n(.*\n)*(.* )?well PROD +producer\n)")))
      << load;
  EXPECT_TRUE(std::regex_search(Succeed({"load", block, "--json"}),
                                std::regex(R"("Parallel",\s+"value": 7\s)")));
  EXPECT_EQ(Succeed({"get", odeh_, "--block", block, "--simulator", "/bin/other",
                     "Intersect.CaseDetails.SimExeName"}),
            "/bin/other\n");
  folder_.Write("torn.block", Read("case.block").substr(0, 40));
  Fail({"load", Path("torn.block")}, "Failed in reading all case data - buffer overflow");
  Fail({"load", folder_.Path().string()}, "", 2);
}

TEST_F(Program, KeepsTheVariablesThatAreAddedAndDeleted) {
  const std::string file =
      folder_
          .Write(
              "case.toml",
              "[simulator]\ndeck = \"deck.afi\"\nstore_file = \"case.state\"\n[time]\nsteps = 1\n")
          .string();
  folder_.Write("deck.afi", "");
  const std::string oil = "P1:Oil production rate";
  const std::string cut = "P:2:WATER_CUT";  // by its key, of a well with a colon in its name
  Succeed({"variables", file, "--add", oil, "--add", cut});
  Succeed({"variables", file, "--add", oil});
  const std::regex both(
      R"(0 +P1:Oil production rate +P1 +30801 +yes\n1 +P:2:Water cut +P:2 .*no\n$)");
  const std::string kept = Succeed({"variables", file});
  EXPECT_TRUE(std::regex_search(kept, both)) << kept;
  Succeed({"variables", file, "--delete", "-1"});
  EXPECT_EQ(Succeed({"variables", file}).find("Oil"), std::string::npos);

  fs::remove(folder_ / "case.state");
  fs::create_directory(folder_ / "case.state");  // which no file can take the place of
  Fail({"variables", file, "--add", oil}, "couldn't be kept in");
}

// The module and the simulator speak the host's code page.
TEST_F(Program, KnowsWellsAndFoldersByNamesBeyondAscii) {
  const std::string name = "\u00C9t\u00E9 5\u20AC";
  ChangedExample(folder_, "odeh", "\"PROD\"", "\"" + name + "\"");
  std::string deck = Read("odeh/ODEH.afi");
  folder_.Write("odeh/ODEH.afi", deck.replace(deck.find("\"PROD\""), 6, "\"" + name + "\""));
  const fs::path folder = folder_.Path() / u8"d\u00E9p\u00F4t des cas";
  fs::rename(folder_ / "odeh", folder);
  const std::u8string bytes = (folder / "case.toml").u8string();
  const std::string file(bytes.begin(), bytes.end());
  Succeed({"run", file, "-n", "1", "-o", Path("out"), "-t", Path("trace"), "-q"});
  EXPECT_EQ(Table(folder_ / "out/wells.csv").Text(0, "well"), name);
  EXPECT_NE(Succeed({"wells", file}).find(name), std::string::npos);
  const std::string path = "Intersect.StaticWell[{" + name + "}].Name";
  EXPECT_EQ(Succeed({"get", file, "--start", path}), name + "\n");
  Succeed({"describe", file, Path("d.xml"), "--start", "--well", name});
  EXPECT_NE(Read("d.xml").find(name), std::string::npos);
  Fail({"get", file, "Intersect.StaticWell[{\u0416}].Name"}, "\u0416");
}

TEST_F(Program, RunsAScriptBetweenTheSteps) {
  folder_.Write("script",
                "# a remark\n\n"
                "* get Intersect.CurrentElapsedDays\n"
                "2 set Intersect.StaticWell[{PROD}].OpMode 2\n"
                "2 get Intersect.StaticWell[{PROD}].OpMode\n");
  const std::vector<std::string> line{"run", odeh_,       "-q",       "-n",          "2",
                                      "-o",  Path("out"), "--script", Path("script")};
  EXPECT_EQ(Succeed(line),
            "step 1: Intersect.CurrentElapsedDays = 0\n"
            "step 2: Intersect.CurrentElapsedDays = 31\n"
            "step 2: Intersect.StaticWell[{PROD}].OpMode = 2\n");

  folder_.Write("script", "2 do Intersect.RunToTime(1)\n");
  Fail(line, "RunToTime called for a time which has already passed");
  Table field(folder_ / "out/field.csv");
  ASSERT_EQ(field.Rows(), 1U) << "the step that was run is reported";
  EXPECT_EQ(field.Text(0, "total oil (STB)"), "620000");

  folder_.Write("script", "2 do Intersect.StopIX()\n");
  Fail(line, "warning: 2015-01-01: nothing tells the rates of step 1");
  field = Table(folder_ / "out/field.csv");
  ASSERT_EQ(field.Rows(), 1U);
  EXPECT_EQ(field.Text(0, "oil (STB/d)") + field.Text(0, "total oil (STB)"), "")
      << "nothing is counted that the network had only decided";

  for (const char* bad : {"0 get X", "one get X", "1 fetch X", "1 get", "1 set X", "1 get X Y",
                          "1 do Intersect.Fly()"}) {
    folder_.Write("script", std::string("\n") + bad + "\n");
    Fail(line, "script:2: ", 2);
  }
}

TEST_F(Program, SaysThatADialogCantBeShown) {
  gantry::test::SetEnvironment("DISPLAY", "");
  Fail({"configure"}, "There is no display to show a dialog on");
  Fail({"edit", odeh_}, "There is no display to show a dialog on");
  Fail({"export", odeh_}, "");
}

}  // namespace
}  // namespace gantry::fieldrun::test
