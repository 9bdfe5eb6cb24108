#include "runfactory/controller.h"

#include <algorithm>
#include <cmath>

#include "client/intersect_client.h"
#include "client/record_fields.h"
#include "client/simulator_model.h"
#include "remote/remote_message.h"
#include "runfactory/driver_connection.h"
#include "text/failure_text.h"

namespace gantry::cluster {

namespace {

constexpr size_t kInt = 4;
constexpr size_t kDouble = 8;
constexpr size_t kEmptyList = 4;
constexpr size_t kWellDataSize = kEmptyList + kWellDataFields.size() * kDouble;
constexpr size_t kEmptyInflow = kInflowFields.size() * kEmptyList;
constexpr size_t kEmptyEOS = (2 + kEOSFields.size()) * kEmptyList;

}  // namespace

/// How a routine is answered, and how long its results are when it is refused: so many zero bytes
/// stand in front of the acknowledgement.
struct Controller::Entry {
  Routine number{};
  Handler answer = nullptr;
  size_t emptyResults = 0;
  bool acknowledged = true;
};

const Controller::Entry Controller::kEntries[] = {
    {Routine::kConnectToSimulator, &Controller::Connect, 0},
    {Routine::kGetDate, &Controller::GetDate, 3 * kInt},
    {Routine::kGetMetricFlag, &Controller::GetMetricFlag, kInt},
    {Routine::kGetTimeDays, &Controller::GetTimeDays, kDouble},
    {Routine::kGetCompositionalFlag, &Controller::GetCompositionalFlag, kInt},
    {Routine::kGetWellStatus, &Controller::GetWellStatus, kEmptyList},
    {Routine::kAdvanceNewton, &Controller::AdvanceNewton, 0},
    {Routine::kRunUntil, &Controller::RunUntil, 0},
    {Routine::kGetTerminationFlag, &Controller::GetTerminationFlag, kInt},
    {Routine::kGetWellData, &Controller::GetWellData, kInt},
    {Routine::kGetWellDataOfOne, &Controller::GetWellDataOfOne, kWellDataSize},
    {Routine::kSetWellStatus, &Controller::SetWellStatus, 0},
    {Routine::kSetWellUptime, &Controller::SetWellUptime, 0},
    {Routine::kSetWellConstraints, &Controller::SetWellConstraints, 0},
    {Routine::kGetEOSProperties, &Controller::GetEOSProperties, kEmptyEOS},
    {Routine::kGetWellVariables, &Controller::GetWellVariables, kEmptyList, false},
    {Routine::kGetWellIPRData, &Controller::GetWellIPRData, 2 * kInt},
    {Routine::kGetWellIPRDataOfOne, &Controller::GetWellIPRDataOfOne, kEmptyInflow},
    {Routine::kGetVersion, &Controller::GetVersion, kDouble},
    {Routine::kSetInjectionSource, &Controller::SetInjectionSource, 1},
    {Routine::kSetWellInjectionComposition, &Controller::SetWellInjectionComposition, 0},
    {Routine::kGetStartDate, &Controller::GetStartDate, 3 * kInt},
    {Routine::kShutdown, &Controller::Shutdown, 0},
};

Controller::Controller(Simulator& simulator, Report report)
    : simulator_(simulator), report_(std::move(report)) {}

bool Controller::Serve(DriverConnection& driver) {
  while (!hasShutDown_) {
    const std::span<const std::byte> request = driver.Receive();
    if (request.empty()) return false;
    const auto routine = static_cast<uint32_t>(MessageReader(request).GetInt());
    driver.SendReply(routine, Answer(request).Bytes());
  }
  return true;
}

MessageWriter Controller::Answer(std::span<const std::byte> request) {
  MessageReader reader(request);
  try {
    const auto number = static_cast<uint32_t>(reader.GetInt());
    const auto* entry =
        std::find_if(std::begin(kEntries), std::end(kEntries), [number](const Entry& candidate) {
          return candidate.number == static_cast<Routine>(number);
        });
    if (entry != std::end(kEntries)) return Answer(*entry, reader);
    throw DriverBroken("the driver asks for an unknown routine " + std::to_string(number));
  } catch (const MessageOverrun&) {
    throw DriverBroken("the driver sent a request whose counts don't fit its length");
  }
}

MessageWriter Controller::Answer(const Entry& entry, MessageReader& request) {
  MessageWriter results;
  int32_t acknowledgement = 0;
  try {
    (this->*entry.answer)(request, results);
    if (results.Bytes().size() + 2 * kInt > kLargestReply) {
      throw std::runtime_error("the results are longer than a reply can be");
    }
  } catch (const MessageOverrun&) {
    throw;
  } catch (const DriverBroken&) {
    throw;
  } catch (const std::exception& failure) {
    report_(std::string(FindRoutine(static_cast<uint32_t>(entry.number))->name) +
            " refused: " + FailureText(failure));
    results = {};
    results.PutBytes(std::vector<std::byte>(entry.emptyResults));
    acknowledgement = 1;
  }
  if (entry.acknowledged) results.PutInt(acknowledgement);
  return results;
}

const UnitConverter& Controller::Units() {
  if (!units_) units_.emplace(QueryMetricFlag(Client()));
  return *units_;
}

void Controller::Connect(MessageReader&, MessageWriter&) {}

void Controller::GetVersion(MessageReader&, MessageWriter& results) {
  results.PutDouble(QueryVersion(Client()));
}

void Controller::GetMetricFlag(MessageReader&, MessageWriter& results) {
  results.PutInt(Units().IsMetric() ? 1 : 0);
}

void Controller::GetCompositionalFlag(MessageReader&, MessageWriter& results) {
  results.PutInt(QueryCompositionalFlag(Client()) ? 1 : 0);
}

void Controller::GetTimeDays(MessageReader&, MessageWriter& results) {
  results.PutDouble(Client().time());
}

void Controller::GetDate(MessageReader&, MessageWriter& results) {
  std::array<int32_t, 3> date{};
  LastDate(Client(), date[0], date[1], date[2]);
  results.PutIntArray(date);
}

void Controller::GetStartDate(MessageReader&, MessageWriter& results) {
  std::array<int32_t, 3> date{};
  QueryStartDate(Client(), date[0], date[1], date[2]);
  results.PutIntArray(date);
}

void Controller::GetEOSProperties(MessageReader&, MessageWriter& results) {
  const EOSProperties properties = QueryEOSProperties(Client());
  results.PutText(properties.eosName);
  PutTexts(results, properties.componentNames);
  for (const EOSField& list : kEOSFields) PutDoubles(results, properties.*list.field);
}

void Controller::AdvanceNewton(MessageReader&, MessageWriter&) { AdvanceToFirstTimestep(Client()); }

void Controller::RunUntil(MessageReader& request, MessageWriter&) {
  const double days = request.GetDouble();
  if (!std::isfinite(days)) throw DriverBroken("the driver asks for a time that is no number");
  Client().continue_simulation_until(days);
}

void Controller::GetTerminationFlag(MessageReader&, MessageWriter& results) {
  results.PutInt(HasEnded(Client()) ? 1 : 0);
}

// Reported before the driver has its answer: once that has closed, the service waits for this
// process for a moment only.
void Controller::Shutdown(MessageReader&, MessageWriter&) {
  hasShutDown_ = true;
  Client().shutdown();
  report_("the driver has shut the simulator down");
}

}  // namespace gantry::cluster
