#pragma once

namespace gantry::flowlink {

/// The text of link.py, the adapter's part inside flow.
extern const char* const kLinkScript;

}  // namespace gantry::flowlink
