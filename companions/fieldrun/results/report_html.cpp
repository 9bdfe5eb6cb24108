#include "fieldrun/results/report_html.h"

#include <nlohmann/json.hpp>

#include "fieldrun/results/report_data.h"

namespace gantry::fieldrun {
namespace {

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

std::string EscapeHtml(const std::string& text) {
  return Replaced(Replaced(text, "&", "&amp;"), "<", "&lt;");
}

// No text of the data can end the element that holds it: only texts hold such a character.
std::string DataText(const nlohmann::ordered_json& data) {
  return Replaced(data.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace), "<",
                  "\\u003c");
}

}  // namespace

std::string ComposeReport(const CaseModel& model, const RunHistory& history,
                          std::string_view watchedFile) {
  nlohmann::ordered_json data = ReportData(model, history);
  if (!watchedFile.empty()) data["watch"] = watchedFile;
  std::string page(kReportPage);
  constexpr std::string_view kTitle = "@TITLE@";
  constexpr std::string_view kData = "@DATA@";
  page.replace(page.find(kTitle), kTitle.size(), EscapeHtml(model.general.title));
  return page.replace(page.rfind(kData), kData.size(), DataText(data));
}

}  // namespace gantry::fieldrun
