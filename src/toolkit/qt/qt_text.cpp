#include "toolkit/qt/qt_text.h"

#include <QHash>

#include "platform/text.h"

namespace gantry::platform {

namespace {

/// What each character of the code page is there.
QHash<QChar, char> CodePage() {
  QHash<QChar, char> bytes;
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    bytes.insert(ToQt(std::string(1, c)).front(), c);
  }
  return bytes;
}

}  // namespace

QString ToQt(const std::string& text) { return QString::fromStdString(CodePageToUtf8(text)); }

std::string FromQt(const QString& text) {
  static const QHash<QChar, char> bytes = CodePage();
  std::string result;
  for (const QChar c : text) {
    if (!c.isLowSurrogate()) result += bytes.value(c, '?');
  }
  return result;
}

}  // namespace gantry::platform
