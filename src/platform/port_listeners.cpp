#include "platform/port_listeners.h"

#include <algorithm>
#include <atomic>

namespace gantry::platform {

namespace {

std::atomic<int> ignored = 0;

/// Those of the listeners whom the system asks first.
std::vector<PortListener> FirstAsked(std::vector<PortListener> listeners) {
  const auto nearest = std::ranges::min_element(listeners, {}, &PortListener::reach);
  if (nearest == listeners.end()) return listeners;
  const PortListener::Reach reach = nearest->reach;
  std::erase_if(listeners, [reach](const PortListener& one) { return one.reach != reach; });
  return listeners;
}

}  // namespace

Bystanders::Bystanders(uint16_t port) : port_(port) {
  if (ignored == 0) listeners_ = ListenersOn(port);
}

bool Bystanders::WouldAnswer() const {
  if (listeners_.empty()) return false;
  return std::ranges::any_of(FirstAsked(ListenersOn(port_)), [this](const PortListener& now) {
    return std::ranges::find(listeners_, now) != listeners_.end();
  });
}

IgnoredBystanders::IgnoredBystanders() { ++ignored; }

IgnoredBystanders::~IgnoredBystanders() { --ignored; }

}  // namespace gantry::platform
