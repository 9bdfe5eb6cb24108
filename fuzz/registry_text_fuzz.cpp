// The file in the registry's place. Beyond its first line nothing changes but the value that is
// set, which reads back, and the other values stay. The input is a key, a name, another name and a
// text, each on its line, and the file.
// Reads: src/platform/registry_text.cpp

#include "platform/registry_text.h"
#include "platform/text.h"
#include "target.h"

using namespace gantry::platform;
using namespace gantry::fuzz;

FUZZ_TARGET(registry_text) {
  const std::string_view key = TakeUpTo('\n', input), name = TakeUpTo('\n', input);
  const std::string_view other = TakeUpTo('\n', input), text = TakeUpTo('\n', input);
  RegistryText file(input);
  Require(file.Text().ends_with(input) || file.Text().starts_with(input));
  Require(RegistryText(file.Text()).Text() == file.Text());
  const auto before = file.Find(key, other);
  for (const auto& data : {before, file.Find(key, name)}) {
    if (!data) continue;
    const auto plain = ParseRegistryText(*data);
    if (plain) {
      Require(ParseRegistryText(FormatRegistryText(*plain)) == plain->substr(0, plain->find('\0')));
    }
    const auto number = ParseRegistryNumber(*data);
    if (number) Require(ParseRegistryNumber(FormatRegistryNumber(*number)) == number);
  }
  Require(ParseRegistryText(FormatRegistryText(text)) == text.substr(0, text.find('\0')));

  const bool hadKey = file.HasKey(key);
  if (!hadKey) file.AddKey(key);
  if (!file.HasKey(key)) return;  // no line can name it
  file.Set(key, name, FormatRegistryText(text));
  if (hadKey && !EqualNoCase(name, other)) Require(file.Find(key, other) == before);
  const RegistryText again(file.Text());
  const auto data = again.Find(key, name);
  if (name.find('\r') == name.npos) Require(data && *data == FormatRegistryText(text));
}
