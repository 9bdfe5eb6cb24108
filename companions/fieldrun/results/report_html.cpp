#include "fieldrun/results/report_html.h"

#include <boost/algorithm/string/replace.hpp>
#include <nlohmann/json.hpp>

#include "fieldrun/results/json_text.h"
#include "fieldrun/results/report_data.h"

namespace gantry::fieldrun {
namespace {

using boost::algorithm::replace_all_copy;

std::string EscapeHtml(const std::string& text) {
  return replace_all_copy(replace_all_copy(text, "&", "&amp;"), "<", "&lt;");
}

// No text of the data can end the element that holds it: only texts hold such a character.
std::string DataText(const Json& data) {
  return replace_all_copy(data.dump(-1, ' ', false, Json::error_handler_t::replace), "<",
                          "\\u003c");
}

}  // namespace

std::string ComposeReport(const CaseModel& model, const RunHistory& history,
                          std::string_view watchedFile) {
  Json data = ReportData(model, history);
  if (!watchedFile.empty()) data["watch"] = watchedFile;
  std::string page(kReportPage);
  constexpr std::string_view kTitle = "@TITLE@";
  constexpr std::string_view kData = "@DATA@";
  page.replace(page.find(kTitle), kTitle.size(), EscapeHtml(model.general.title));
  return page.replace(page.rfind(kData), kData.size(), DataText(data));
}

}  // namespace gantry::fieldrun
