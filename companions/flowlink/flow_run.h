#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "flowlink/deck_composer.h"
#include "flowlink/flow_link.h"
#include "flowlink/flow_process.h"
#include "flowlink/link_settings.h"
#include "flowlink/result_file.h"

namespace gantry::flowlink {

/// One run of flow: from the deck's start, or from a point that an earlier run has come through.
/// Its end is the end of flow.
class FlowRun {
 public:
  /// Writes the deck NAME.DATA into the folder, starts flow on it and waits for the end of its
  /// first report step. Throws `LinkFault`.
  FlowRun(const LinkSettings& settings, const std::filesystem::path& folder,
          const std::string& name, RunBegin begin);

  const ComposedDeck& Deck() const { return deck_; }
  FlowLink& Link() { return link_; }
  const FlowLink& Link() const { return link_; }

  /// Runs the next report step (`FlowLink::Advance`). Throws `LinkFault` also when flow couldn't
  /// write in full what it has come to before.
  void Advance(const std::string& keywords, const NamedLimits& numbers);
  /// Ends the run here (`FlowLink::Finish`). Throws as `Advance` does.
  void Finish();

  /// Whether the deck orders something at the present stop.
  bool HasOrdersAtStop() const;
  /// Whether the run has only come through its tiny step, and isn't to go on.
  bool IsOnlyAsked() const { return !begin_.orders; }
  /// From where the present stop is come to again by another run; empty for the deck's start. A
  /// stop behind the tiny step is come to from where this run came.
  std::optional<RestartPoint> WayToStop() const;

 private:
  /// The end of a report step, as the deck has it.
  double EndOf(int report) const;
  FlowProcess Start(const LinkSettings& settings, const std::filesystem::path& folder);
  /// Where in the user's files an error of flow's lies; empty when it names no line of theirs.
  std::string PlaceOf(const std::string& reason) const;
  void CheckResults(std::span<ResultFile> files) const;

  std::string name_;
  RunBegin begin_;
  ComposedDeck deck_;
  FlowProcess process_;
  FlowLink link_;
  std::filesystem::path folder_;
  std::array<ResultFile, 2> results_;  ///< restart, closed after each report step, and summary
};

}  // namespace gantry::flowlink
