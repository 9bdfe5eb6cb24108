// The report as a browser lays it out. A script of the test's own, which measures, goes into a
// copy.

#include <cstdlib>
#include <regex>

#include <gtest/gtest.h>

#include "program.h"
#include "support/isolation.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;
using gantry::test::TestFolder;

// Leaves "CHARTS charts, LABELS labels: FAULTS" as the page's title.
constexpr const char* kMeasure = R"(<script>
const faults = [];
const box = (element) => element.getBoundingClientRect();
const charts = document.querySelectorAll('svg');
for (const chart of charts) {
  const frame = box(chart);
  for (const mark of chart.querySelectorAll('text, path, circle, line')) {
    const {left, right, top, bottom} = box(mark);
    const isInside = left >= frame.left && right <= frame.right && top >= frame.top &&
        bottom <= frame.bottom;
    if (!isInside) faults.push(`${chart.ariaLabel}: ${mark.outerHTML} is cut off`);
  }
  const labels = [...chart.querySelectorAll('text.x')];
  labels.forEach((label, i) => {
    if (i > 0 && box(label).left <= box(labels[i - 1]).right)
      faults.push(`${chart.ariaLabel}: ${label.textContent} lies over its neighbour`);
  });
}
for (const text of document.querySelectorAll('h1, h2, h3, p, figcaption, .tile, .legend'))
  if (text.scrollWidth > text.clientWidth) faults.push(`${text.textContent} is cut off`);
const page = document.documentElement;
if (page.scrollWidth > page.clientWidth) faults.push('the page is wider than its window');
const count = document.querySelectorAll('svg text').length;
document.title = `${charts.length} charts, ${count} labels: ${faults.join('; ')}`;
</script></body>)";

/// An example, and how many of its steps are run: axes of years, months and days.
using RunOfExample = std::pair<const char*, const char*>;

bool HasBrowser() { return std::system("command -v chromium >/dev/null 2>&1") == 0; }

class Report : public ::testing::TestWithParam<RunOfExample> {
 protected:
  /// The title that the page has given itself in a window of this width.
  std::string Title(const fs::path& page, int width) {
    const std::string out = (folder_ / "dom").string();
    const std::string command =
        "chromium --headless --no-sandbox --disable-gpu --disable-dev-shm-usage --user-data-dir='" +
        (folder_ / "browser").string() + "' --window-size=" + std::to_string(width) +
        ",900 --dump-dom 'file://" + page.string() + "' >'" + out + "' 2>'" + out + ".err'";
    EXPECT_EQ(std::system(command.c_str()), 0) << TestFolder::Read(out + ".err");
    const std::string dom = TestFolder::Read(out);
    std::smatch title;
    return std::regex_search(dom, title, std::regex("<title>([^<]*)</title>")) ? title[1].str()
                                                                               : dom.substr(0, 500);
  }

  TestFolder folder_;
};

TEST_P(Report, CutsNothingOffInAWideWindowAndInANarrowOne) {
  if (!HasBrowser()) GTEST_SKIP() << "chromium is not installed";
  const std::string out = (folder_ / "out").string();
  const auto& [example, steps] = GetParam();
  const Outcome run =
      RunFieldrun(folder_, {"run", ExampleCase(example), "-q", "-o", out, "--steps", steps});
  ASSERT_EQ(run.status, 0) << run.err;
  std::string page = TestFolder::Read(folder_ / "out/report.html");
  page.replace(page.find("</body>"), 7, kMeasure);
  const fs::path copy = folder_.Write("report.html", page);
  for (const int width : {1280, 600}) {
    EXPECT_TRUE(
        std::regex_match(Title(copy, width), std::regex("[0-9]{2} charts, [0-9]{3} labels: ")))
        << Title(copy, width);
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, Report,
                         ::testing::Values(RunOfExample{"five_spot", "120"},
                                           RunOfExample{"odeh", "3"},
                                           RunOfExample{"gas_cycling", "1"}));

}  // namespace
}  // namespace gantry::fieldrun::test
