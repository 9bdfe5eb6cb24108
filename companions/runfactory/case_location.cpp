#include "runfactory/case_location.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "platform/text.h"

namespace gantry::cluster {

namespace {

constexpr size_t kLongestBaseName = 200;

/// A directory below a root: what is opened as it stands, and what is walked with care.
struct Place {
  std::string root;
  std::string below;
};

bool IsSeparator(char character) { return character == '/' || character == '\\'; }

/// A path that begins with a drive or a share, or that is cut at "\", comes from Windows.
bool IsWindowsPath(std::string_view path) {
  const bool hasDrive = path.size() >= 2 && path[1] == ':';
  return hasDrive || (path.find('\\') != std::string_view::npos && !path.starts_with('/'));
}

bool SameCharacter(char a, char b, bool isWindows) {
  if (!isWindows) return a == b;
  return platform::EqualNoCase({&a, 1}, {&b, 1}) || (IsSeparator(a) && IsSeparator(b));
}

std::string_view WithoutClosingSeparators(std::string_view path) {
  while (path.size() > 1 && IsSeparator(path.back())) path.remove_suffix(1);
  return path;
}

/// What stands behind `beginning` in `path`, if the path begins so at the end of a name.
std::optional<std::string> Behind(std::string_view beginning, std::string_view path) {
  const bool isWindows = IsWindowsPath(beginning);
  beginning = WithoutClosingSeparators(beginning);
  if (path.size() < beginning.size()) return std::nullopt;
  const bool begins =
      std::equal(beginning.begin(), beginning.end(), path.begin(),
                 [isWindows](char a, char b) { return SameCharacter(a, b, isWindows); });
  if (!begins) return std::nullopt;
  std::string rest(path.substr(beginning.size()));
  if (isWindows) std::replace(rest.begin(), rest.end(), '\\', '/');
  if (!rest.empty() && rest.front() != '/' && beginning != "/") return std::nullopt;
  return rest;
}

std::optional<Place> FindPlace(const std::vector<PathMap>& maps,
                               const std::vector<std::string>& roots,
                               const std::string& directory) {
  std::optional<Place> place;
  size_t longest = 0;
  for (const PathMap& map : maps) {
    const std::optional<std::string> below = Behind(map.from, directory);
    if (!below || map.from.size() <= longest) continue;
    longest = map.from.size();
    place = Place{map.to, *below};
  }
  for (size_t i = 0; i < roots.size() && !place; ++i) {
    if (const auto below = Behind(roots[i], directory)) place = Place{roots[i], *below};
  }
  return place;
}

[[noreturn]] void Refuse(const std::string& directory, const std::string& why) {
  throw CaseRefused("The run factory can't open the case directory " + directory + ": " + why);
}

platform::Descriptor OpenDirectory(int parent, const std::string& name, int flags) {
  return platform::Descriptor(
      ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
}

CaseLocation Walk(const Place& place, const std::string& directory) {
  CaseLocation location;
  location.path = std::string(WithoutClosingSeparators(place.root));
  location.directory = OpenDirectory(AT_FDCWD, location.path, 0);
  if (!location.directory.IsOpen()) Refuse(directory, std::strerror(errno));
  for (size_t begin = 0; begin < place.below.size();) {
    const size_t end = std::min(place.below.find('/', begin), place.below.size());
    const std::string name = place.below.substr(begin, end - begin);
    begin = end + 1;
    if (name.empty() || name == ".") continue;
    if (name == "..") Refuse(directory, "\"..\" isn't allowed");
    platform::Descriptor next = OpenDirectory(location.directory.Number(), name, O_NOFOLLOW);
    if (!next.IsOpen()) {
      // A link shows as "not a directory" when only directories are opened.
      const bool isPlain = errno != ELOOP && errno != ENOTDIR;
      Refuse(directory, isPlain ? std::strerror(errno) : name + " is no plain directory");
    }
    location.directory = std::move(next);
    location.path += "/" + name;
  }
  return location;
}

void CheckBaseName(const std::string& name) {
  const bool isName = !name.empty() && name.size() <= kLongestBaseName && name.front() != '-' &&
                      name.front() != '.' && std::none_of(name.begin(), name.end(), IsSeparator);
  if (!isName) throw CaseRefused("The run factory takes no case of the name '" + name + "'");
}

/// The case's files are those of its name with any extension. One must be there, none a link.
void CheckFiles(const CaseLocation& location) {
  const int copy = ::openat(location.directory.Number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(copy < 0 ? nullptr : ::fdopendir(copy),
                                                    ::closedir);
  bool isThere = false;
  while (const dirent* entry = listing ? ::readdir(listing.get()) : nullptr) {
    if (!std::string_view(entry->d_name).starts_with(location.baseName + ".")) continue;
    struct stat status {};
    if (::fstatat(location.directory.Number(), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
      continue;
    }
    if (S_ISLNK(status.st_mode)) {
      throw CaseRefused("The run factory follows no link: " + std::string(entry->d_name));
    }
    isThere = isThere || S_ISREG(status.st_mode);
  }
  if (!isThere) {
    throw CaseRefused("The run factory finds no case '" + location.baseName + "' in " +
                      location.path);
  }
}

}  // namespace

CaseLocation OpenCase(const std::vector<PathMap>& maps, const std::vector<std::string>& roots,
                      const std::string& directory, const std::string& baseName) {
  CheckBaseName(baseName);
  const std::optional<Place> place = FindPlace(maps, roots, directory);
  if (!place) Refuse(directory, "it lies under no directory that is served here");
  CaseLocation location = Walk(*place, directory);
  location.baseName = baseName;
  CheckFiles(location);
  return location;
}

}  // namespace gantry::cluster
