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
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  gantry::test::TestFolder folder_;
};

TEST_F(Program, CallsTheModuleInTheOrderOfARun) {
  const Outcome outcome = Run({"run", ExampleCase("gas_cycling"), "-o", Path("out"), "-n", "2",
                               "--trace", Path("trace"), "--quiet"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  const std::string trace = gantry::test::TestFolder::Read(folder_ / "trace");
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

TEST_F(Program, TellsABadCommandLineWithStatusTwo) {
  const std::string odeh = ExampleCase("odeh");
  const struct {
    std::vector<std::string> line;
    std::string complaint;
  } kLines[] = {
      {{}, ""},
      {{"rum"}, "there is no command \"rum\"; did you mean \"run\"?"},
      {{"fly"}, "there is no command \"fly\"; see fieldrun --help"},
      {{"run"}, "case is required"},
      {{"units", "--jsn"},
       "The following argument was not expected: --jsn; did you mean \"--json\"?"},
      {{"run", "a.toml", "--steps", "0"}, "--steps: "},
      {{"do", odeh, "Intersect.Fly(1)"}, "the module has no command \"Fly\"; it has StartIX, "},
      {{"variables", odeh, "--add", "P1:Colour"}, "--add P1:Colour: the label must be one of "},
      {{"variables", odeh, "--read", "0"}, "--read and --write need --start: "},
      {{"variables", odeh, "--start", "--write", "0=much"}, "--write 0=much: the value must be"},
  };
  for (const auto& [line, complaint] : kLines) {
    const Outcome outcome = Run(line);
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    const std::string start = "fieldrun: " + complaint;
    EXPECT_EQ(outcome.err.substr(0, start.size()), start);
  }
}

TEST_F(Program, ChecksACaseAndItsDeckWithoutARun) {
  EXPECT_EQ(Run({"check", ExampleCase("odeh")}).status, 0);
  const std::string file = ChangedExample(folder_, "five_spot", "diameter = 62", "diameter = 6.2");
  const auto change = [this](const std::string& name, const std::string& from, const char* to) {
    std::string text = gantry::test::TestFolder::Read(folder_ / "five_spot" / name);
    text.replace(text.find(from), from.size(), to);
    folder_.Write("five_spot/" + name, text);
  };
  EXPECT_NE(Run({"run", file, "-q", "-n", "1"}).err.find(":32: warning: diameter is 6.2 mm"),
            std::string::npos);
  change("case.toml", "max_liquid", "max_liqid");
  change("FIVE_SPOT.afi", "skin", "skn");
  const Outcome outcome = Run({"check", file});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out,
            file +
                ":32: warning: diameter is 6.2 mm, less than 19.05 mm: it can hardly be meant (6.2 "
                "in could)\n" +
                file + ":47: [well] has no key \"max_liqid\"; did you mean \"max_liquid\"?\n" +
                Path("five_spot/FIVE_SPOT.afi") +
                ":96: unknown key 'skn'; did you mean \"skin\"?\n" + file +
                ": 2 errors, 1 warning\n");
}

TEST_F(Program, TellsWhatTheModulePassesOverInSilence) {
  const std::string odeh = ExampleCase("odeh");
  const std::string parallel = "Intersect.CaseDetails.Parallel";
  const struct {
    std::vector<std::string> line;
    int status;
    std::string notice;
  } kLines[] = {
      {{"set", odeh, parallel, "much"},
       1,
       "fieldrun: " + parallel + " takes a number; \"much\" has"},
      {{"set", odeh, parallel, "600"}, 0, "fieldrun: " + parallel + " is 512 now, not 600\n"},
      {{"set", odeh, parallel, "7"}, 0, ""},
      {{"set", odeh, "Intersect.CaseDetails.HeadNode", "node7"}, 0, ""},
      {{"describe", odeh, Path("d.xml")},
       0,
       "fieldrun: " + Path("d.xml") + " describes no wells, "},
      {{"variables", odeh, "--add", "P1:Oil production rate"},
       2,
       odeh + ":9: variables are kept in the case's store_file, and [simulator] names none\n"},
  };
  for (const auto& [line, status, notice] : kLines) {
    const Outcome outcome = Run(line);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_EQ(outcome.err.substr(0, notice.empty() ? 1 : notice.size()), notice) << line[2];
  }
}

TEST_F(Program, TellsARunToProgramsByALineForEachEvent) {
  const std::string file = ChangedExample(folder_, "five_spot", "diameter = 62", "diameter = 6.2");
  const Outcome outcome = Run({"run", file, "-o", Path("out"), "-n", "2", "--json"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_TRUE(std::regex_search(
      outcome.out,
      std::regex(R"(^\{"event":"start","run":.*"units":"metric".*"steps":2,.*:32: warning: .*\n)"
                 R"((?:\{.*\n)*\{"event":"step","step":1,.*"produced":\{"oil":\d.*\n)"
                 R"((?:\{.*\n)*\{"event":"step","step":2,.*"total_injected":\{.*"water":\d.*\n)"
                 R"((?:\{.*\n)*\{"event":"end","steps":2,.*"failure":"",.*\}\n$)")))
      << outcome.out;
}

TEST_F(Program, NamesTheUnitsOfACase) {
  const Outcome outcome = Run({"units", ExampleCase("five_spot"), "--json"});
  EXPECT_TRUE(std::regex_search(outcome.out, std::regex(R"("pressure",\s+"unit": "bara")")));
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
    const Outcome outcome = Run({"run", file, "-n", "1"});
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    EXPECT_TRUE(std::regex_search(outcome.err, std::regex(c.complaint))) << outcome.err;
    EXPECT_FALSE(fs::exists(folder_ / "odeh/results/wells.csv"));
  }
}

TEST_F(Program, FailsWithTheModulesOwnText) {
  const std::string odeh = ExampleCase("odeh");
  const Outcome missing =
      Run({"run", odeh, "-o", Path("out"), "--simulator", Path("no-simulator")});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(std::regex_search(
      missing.err, std::regex(R"(Could not start the simulator process: <.*> \(.*no-simulator\))")))
      << missing.err;
  EXPECT_FALSE(fs::exists(folder_ / "out/wells.csv"));

  const Outcome noModule = Run({"identify", "--module", Path("libNone.so")});
  EXPECT_EQ(noModule.status, 1);
  EXPECT_NE(noModule.err.find("libNone.so"), std::string::npos);

  const Outcome noProperty = Run({"get", odeh, "Intersect.CaseDetails.Nothing"});
  EXPECT_EQ(noProperty.status, 1);
  EXPECT_NE(noProperty.err.find("Intersect.CaseDetails.Nothing"), std::string::npos);

  const Outcome onlyOne = Run({"get", odeh, "Intersect.Nothing", "Intersect.IsRunning"});
  EXPECT_EQ(onlyOne.status, 1);
  EXPECT_EQ(onlyOne.out, "0\n");
  EXPECT_NE(onlyOne.err.find("Intersect.Nothing"), std::string::npos) << onlyOne.err;

  const Outcome badCommand = Run({"do", odeh, "Other.StartIX()"});
  EXPECT_EQ(badCommand.status, 1);
  EXPECT_NE(badCommand.err.find("Invalid prefix"), std::string::npos);
}

TEST_F(Program, TellsOfAResultFolderThatCantBeMade) {
  folder_.Write("taken", "");
  const Outcome outcome = Run({"run", ExampleCase("odeh"), "-o", Path("taken")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("taken"), std::string::npos) << outcome.err;
  EXPECT_EQ(gantry::test::TestFolder::Read(folder_ / "taken"), "");
}

TEST_F(Program, TellsOfADiskThatIsFull) {
  EXPECT_EQ(Run({"identify", "--trace", Path("trace")}).status, 0);
  const Outcome trace = Run({"identify", "--trace", "/dev/full"});
  EXPECT_EQ(trace.status, 1);
  EXPECT_NE(trace.err.find("/dev/full couldn't be written whole"), std::string::npos) << trace.err;

  const std::string script = folder_
                                 .Write("fieldrun",
                                        "#!/bin/sh\ntrap '' XFSZ; ulimit -f 40\n"
                                        "exec \"" FIELDRUN "\" \"$@\"\n")
                                 .string();
  fs::permissions(script, fs::perms::owner_all);
  const std::string odeh = ExampleCase("odeh");
  const Outcome run = [&] {
    const gantry::test::ScopedVariable limited("GANTRY_FIELDRUN", script);
    return Run({"run", odeh, "-o", Path("out"), "-q"});
  }();
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("inflow.csv can't be written: File too large"), std::string::npos)
      << run.err;
  const size_t steps = Table(folder_ / "out/field.csv").Rows();
  EXPECT_GT(steps, 4U);
  EXPECT_EQ(Table(folder_ / "out/inflow.csv").Rows(), 20 * steps) << "whole steps are kept";
  EXPECT_EQ(Run({"report", Path("out")}).status, 0);
}

TEST_F(Program, ListsTheWellsOfACase) {
  const Outcome outcome = Run({"wells", ExampleCase("odeh"), "--json"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_TRUE(std::regex_search(
      outcome.out, std::regex(R"("well": "INJ",\s+"kind": "gas injector",\s+"connected": true)")))
      << outcome.out;
}

TEST_F(Program, ReachesPropertiesAndCommandsOfARunningSimulator) {
  const std::string odeh = ExampleCase("odeh");
  const Outcome idle = Run({"get", odeh, "Intersect.IsRunning"});
  EXPECT_EQ(idle.out, "0\n") << idle.err;
  const Outcome running =
      Run({"get", odeh, "--start", "--json", "Intersect.IsRunning", "Intersect.Well.$Count"});
  ASSERT_EQ(running.status, 0) << running.err;
  EXPECT_EQ(running.out,
            "{\n  \"Intersect.IsRunning\": \"1\",\n  \"Intersect.Well.$Count\": \"2\"\n}\n");
  EXPECT_EQ(Run({"do", odeh, "--start", "Intersect.RunToTime(31)"}).status, 0);
}

TEST_F(Program, SavesACaseAndLoadsItAgain) {
  const std::string odeh = ExampleCase("odeh");
  const Outcome set = Run({"set", odeh, "Intersect.CaseDetails.Parallel", "7", "--start", "--save",
                           Path("case.block")});
  ASSERT_EQ(set.status, 0) << set.err;
  const Outcome load = Run({"load", Path("case.block")});
  ASSERT_EQ(load.status, 0) << load.err;
  EXPECT_TRUE(std::regex_search(load.out, std::regex(R"(Parallel +7\n)"))) << load.out;
  EXPECT_TRUE(std::regex_search(Run({"load", Path("case.block"), "--json"}).out,
                                std::regex(R"("Parallel",\s+"value": 7\s)")));
  EXPECT_TRUE(std::regex_search(load.out, std::regex(R"(well PROD +producer\n)"))) << load.out;
  EXPECT_EQ(Run({"get", odeh, "--block", Path("case.block"), "--simulator", "/bin/other",
                 "Intersect.CaseDetails.SimExeName"})
                .out,
            "/bin/other\n");

  folder_.Write("torn.block", gantry::test::TestFolder::Read(folder_ / "case.block").substr(0, 40));
  const Outcome torn = Run({"load", Path("torn.block")});
  EXPECT_EQ(torn.status, 1);
  EXPECT_NE(torn.err.find("Failed in reading all case data - buffer overflow"), std::string::npos);
  EXPECT_EQ(Run({"load", folder_.Path().string()}).status, 2);
}

TEST_F(Program, KeepsTheVariablesThatAreAddedAndDeleted) {
  const std::string model =
      "[simulator]\ndeck = \"deck.afi\"\nstore_file = \"case.state\"\n[time]\nsteps = 1\n";
  folder_.Write("case.toml", model);
  folder_.Write("deck.afi", "");
  const std::string oil = "P1:Oil production rate";
  const std::string cut = "P:2:WATER_CUT";  // by its key, of a well with a colon in its name
  ASSERT_EQ(Run({"variables", Path("case.toml"), "--add", oil, "--add", cut}).status, 0);
  ASSERT_EQ(Run({"variables", Path("case.toml"), "--add", oil}).status, 0);
  const std::regex both(
      R"(0 +P1:Oil production rate +P1 +30801 +yes\n1 +P:2:Water cut +P:2 .*no\n$)");
  const Outcome kept = Run({"variables", Path("case.toml")});
  EXPECT_TRUE(std::regex_search(kept.out, both)) << kept.out << kept.err;

  ASSERT_EQ(Run({"variables", Path("case.toml"), "--delete", "-1"}).status, 0);
  EXPECT_EQ(Run({"variables", Path("case.toml")}).out.find("Oil"), std::string::npos);

  fs::remove(folder_ / "case.state");
  fs::create_directory(folder_ / "case.state");  // which no file can take the place of
  const Outcome lost = Run({"variables", Path("case.toml"), "--add", oil});
  EXPECT_EQ(lost.status, 1);
  EXPECT_NE(lost.err.find("couldn't be kept in"), std::string::npos) << lost.err;
}

TEST_F(Program, WritesTheDescriptionOfChosenWells) {
  const Outcome outcome = Run({"describe", ExampleCase("odeh"), Path("d.xml"), "--start", "--well",
                               "PROD", "--no-variables"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const std::string xml = gantry::test::TestFolder::Read(folder_ / "d.xml");
  EXPECT_NE(xml.find("PROD"), std::string::npos);
  EXPECT_EQ(xml.find("INJ"), std::string::npos);
}

// The module and the simulator speak the host's code page.
TEST_F(Program, KnowsWellsAndFoldersByNamesBeyondAscii) {
  const std::string name = "\u00C9t\u00E9 5\u20AC";
  ChangedExample(folder_, "odeh", "\"PROD\"", "\"" + name + "\"");
  std::string deck = gantry::test::TestFolder::Read(folder_ / "odeh/ODEH.afi");
  deck.replace(deck.find("\"PROD\""), 6, "\"" + name + "\"");
  folder_.Write("odeh/ODEH.afi", deck);
  const fs::path folder = folder_.Path() / u8"d\u00E9p\u00F4t des cas";
  fs::rename(folder_ / "odeh", folder);
  const std::u8string bytes = (folder / "case.toml").u8string();
  const std::string file(bytes.begin(), bytes.end());
  const Outcome run = Run({"run", file, "-n", "1", "-o", Path("out"), "-t", Path("trace"), "-q"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Table(folder_ / "out/wells.csv").Text(0, "well"), name);
  EXPECT_NE(Run({"wells", file}).out.find(name), std::string::npos);
  const std::string path = "Intersect.StaticWell[{" + name + "}].Name";
  EXPECT_EQ(Run({"get", file, "--start", path}).out, name + "\n");
  EXPECT_EQ(Run({"describe", file, Path("d.xml"), "--start", "--well", name}).status, 0);
  EXPECT_NE(gantry::test::TestFolder::Read(folder_ / "d.xml").find(name), std::string::npos);

  const Outcome lacking = Run({"get", file, "Intersect.StaticWell[{\u0416}].Name"});
  EXPECT_EQ(lacking.status, 1);
  EXPECT_NE(lacking.err.find("\u0416"), std::string::npos) << lacking.err;
}

TEST_F(Program, RunsAScriptBetweenTheSteps) {
  folder_.Write("script",
                "# a remark\n\n"
                "* get Intersect.CurrentElapsedDays\n"
                "2 set Intersect.StaticWell[{PROD}].OpMode 2\n"
                "2 get Intersect.StaticWell[{PROD}].OpMode\n");
  const std::string odeh = ExampleCase("odeh");
  const std::vector<std::string> line{"run", odeh,        "-q",       "-n",          "2",
                                      "-o",  Path("out"), "--script", Path("script")};
  const Outcome outcome = Run(line);
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            "step 1: Intersect.CurrentElapsedDays = 0\n"
            "step 2: Intersect.CurrentElapsedDays = 31\n"
            "step 2: Intersect.StaticWell[{PROD}].OpMode = 2\n");

  folder_.Write("script", "2 do Intersect.RunToTime(1)\n");
  const Outcome failed = Run(line);
  EXPECT_EQ(failed.status, 1);
  EXPECT_NE(failed.err.find("RunToTime called for a time which has already passed"),
            std::string::npos);
  Table field(folder_ / "out/field.csv");
  ASSERT_EQ(field.Rows(), 1U) << "the step that was run is reported";
  EXPECT_EQ(field.Text(0, "total oil (STB)"), "620000");

  folder_.Write("script", "2 do Intersect.StopIX()\n");
  const Outcome lost = Run(line);
  EXPECT_EQ(lost.status, 1);
  EXPECT_NE(lost.err.find("warning: 2015-01-01: nothing tells the rates of step 1"),
            std::string::npos)
      << lost.err;
  field = Table(folder_ / "out/field.csv");
  ASSERT_EQ(field.Rows(), 1U);
  EXPECT_EQ(field.Text(0, "oil (STB/d)") + field.Text(0, "total oil (STB)"), "")
      << "nothing is counted that the network had only decided";

  for (const char* bad : {"0 get X", "one get X", "1 fetch X", "1 get", "1 set X", "1 get X Y",
                          "1 do Intersect.Fly()"}) {
    folder_.Write("script", std::string("\n") + bad + "\n");
    const Outcome refused = Run(line);
    EXPECT_EQ(refused.status, 2) << bad;
    EXPECT_NE(refused.err.find("script:2: "), std::string::npos) << refused.err;
  }
}

TEST_F(Program, SaysThatADialogCantBeShown) {
  gantry::test::SetEnvironment("DISPLAY", "");
  for (const std::vector<std::string>& line :
       {std::vector<std::string>{"configure"}, {"edit", ExampleCase("odeh")}}) {
    const Outcome outcome = Run(line);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("There is no display to show a dialog on"), std::string::npos)
        << outcome.err;
  }
  EXPECT_EQ(Run({"export", ExampleCase("odeh")}).status, 1);
}

}  // namespace
}  // namespace gantry::fieldrun::test
