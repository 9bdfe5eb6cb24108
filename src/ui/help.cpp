#include "ui/help.h"

#include "platform/dynamic_library.h"

namespace gantry {

void ShowHelpTopic(platform::DialogWindow& window, uint32_t topic) {
  constexpr uint32_t kTopicMark = 0x20000;
  const std::string folder = platform::ModuleFolder();
  if (topic == 0 || topic == kTopicMark || folder.empty()) return;
  const std::string file = folder + "Tessel.chm";
  if (window.ShowHelp(file, topic & ~kTopicMark)) return;
  window.ShowMessage("The help can't be shown: " + file + " or a viewer for it is missing");
}

}  // namespace gantry
