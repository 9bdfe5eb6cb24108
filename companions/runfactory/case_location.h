#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/posix/descriptor.h"
#include "runfactory/options.h"

namespace gantry::cluster {

/// Why a case can't be opened, fit for the driver's user.
class CaseRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A case's directory, held open, so that nothing that happens to its path later leads elsewhere.
struct CaseLocation {
  platform::Descriptor directory;
  std::string path;
  std::string baseName;
};

/// Finds a case for a driver. `directory` is the driver's word for it, of Windows or of POSIX, and
/// is looked for under the map with the longest matching beginning, else under the listed roots.
/// Below a root no ".." and no symbolic link is followed. Throws `CaseRefused`.
CaseLocation OpenCase(const std::vector<PathMap>& maps, const std::vector<std::string>& roots,
                      const std::string& directory, const std::string& baseName);

}  // namespace gantry::cluster
