#include "ui/help.h"

#include "platform/dynamic_library.h"

namespace gantry {

void ShowHelpTopic(platform::DialogWindow& window, uint32_t topic) {
  constexpr uint32_t kTopicMark = 0x20000;
  const std::string folder = platform::ModuleFolder();
  if (topic == 0 || topic == kTopicMark || folder.empty()) return;
  window.ShowHelp(folder + "Tessel.chm", topic & ~kTopicMark);
}

}  // namespace gantry
