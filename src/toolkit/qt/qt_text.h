#pragma once

#include <QString>
#include <string>

namespace gantry::platform {

/// A text in the host's code page as the toolkit takes it.
QString ToQt(const std::string& text);
/// Back to the host's code page; a character that it lacks becomes "?".
std::string FromQt(const QString& text);

}  // namespace gantry::platform
