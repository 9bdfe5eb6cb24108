#pragma once

#include <memory>

namespace gantry {

class CJobSession;
class LinkSettings;

/// A new session, not yet started, of the kind that the case's connection mode asks for. It keeps
/// a reference to `settings`.
std::unique_ptr<CJobSession> MakeSession(const LinkSettings& settings);

}  // namespace gantry
