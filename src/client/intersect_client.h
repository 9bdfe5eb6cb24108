#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/byte_channel.h"
#include "client/message_stream.h"
#include "client/query_results.h"

namespace gantry {

/// Where the simulator stands in its run.
enum class AlgorithmicPosition : int32_t {
  UNCONNECTED = 0,
  STARTING = 1,
  MODEL_DEFINITION = 2,
  BEGIN_NEWTON = 3,
  END_SIMULATE = 4,
};

/// The text of a position; invalid_argument for a value outside the table.
std::string position_name(AlgorithmicPosition position);

/// A setter of constraints that has been encoded once, whose values are filled in for each sending.
class EncodedConstraints {
 public:
  void Set(size_t well, size_t item, double value) {
    message_.SetDouble(values_[well] + item * sizeof value, value);
  }

 private:
  friend class IntersectClientBase;
  EncodedMessage message_;
  std::vector<size_t> values_;  ///< for each well, the place of its values in the message
};

/// What is done while the simulator works on its answer.
using Meanwhile = std::function<void()>;

/// What both client versions share: one TCP session with a running simulator, in the simulator's
/// units. Every operation sends one message and blocks until the simulator has answered, without a
/// time limit but for `connect`. All throw; after a failure the client is dropped.
/// `v2016_2::IntersectClient` and `v2017_2::IntersectClient` add what differs.
class IntersectClientBase {
 public:
  virtual ~IntersectClientBase();

  // Session.
  void connect(const std::string& host, uint32_t port, uint32_t timeout_seconds);
  void continue_simulation();
  void continue_simulation_until(double time);  ///< days
  void shutdown();
  void receive_position();
  void receive_ready();

  // Queries. The wells may be the one element "*": all wells of the model.
  WellQueryResult query_wells(const Strings& wells, const Strings& items);
  /// The same for a caller that asks time and again: with a query that has been encoded once, into
  /// a result whose storage is used again.
  void encode_well_query(const Strings& wells, const Strings& items, EncodedMessage& query);
  void query_wells(const EncodedMessage& query, WellQueryResult& result,
                   const Meanwhile& meanwhile = {});
  WellQueryStringResult query_wells_as_strings(const Strings& wells, const Strings& items);
  void encode_well_query_as_strings(const Strings& wells, const Strings& items,
                                    EncodedMessage& query);
  void query_wells_as_strings(const EncodedMessage& query, WellQueryStringResult& result);
  ReservoirQueryResult query_reservoir(const Strings& items);
  ReservoirQueryStringResult query_reservoir_as_strings(const Strings& items);
  WellConstraintsResult get_constraints_for_wells(const Strings& wells);
  IPRQueryResult get_ipr_data_for_wells(const Strings& wells, const Strings& pressure_types,
                                        int32_t point_count, double skewness);
  std::vector<ReservoirFluidRecord> get_res_fluid_models();

  // Setters. Sizes are compared before anything is composed.
  void set_constraints_for_wells(const Strings& wells, const std::vector<Strings>& items,
                                 const std::vector<Doubles>& values,
                                 const std::vector<Strings>& setters);
  /// The same with the user as the setter of each.
  void set_user_constraints_for_wells(const Strings& wells, const std::vector<Strings>& items,
                                      const std::vector<Doubles>& values);
  /// The same for a caller that sends time and again what differs in values alone. The values are
  /// zero until they are set.
  void encode_user_constraints(const Strings& wells, std::span<const Strings* const> items,
                               EncodedConstraints& constraints);
  void set_constraints_for_wells(const EncodedConstraints& constraints);
  void set_status_for_wells(const Strings& wells, const Strings& statuses,
                            const std::string& closure);
  /// The same for a caller that sends it time and again.
  void encode_status_for_wells(const Strings& wells, const Strings& statuses,
                               const std::string& closure, EncodedMessage& message);
  void set_status_for_wells(const EncodedMessage& message);
  void set_uptime_fractions_for_wells(const Strings& wells, const Doubles& fractions);

  AlgorithmicPosition position() const { return position_; }
  double time() const { return time_; }  ///< days, of the last "STEP"
  /// Year, month, day of the last "STEP", then three more.
  const std::array<int32_t, 6>& date() const { return date_; }

 protected:
  /// A connection over TCP.
  IntersectClientBase();
  explicit IntersectClientBase(std::unique_ptr<PeerConnection> connection);

  /// A message of the "SET" family, its name already appended.
  OutgoingMessage BeginSetter(std::string_view name);
  OutgoingMessage BeginStatus(const Strings& wells, const Strings& statuses,
                              const std::string& closure);
  void SendAndAwaitReady(OutgoingMessage message);
  /// Sends a message whose answer is a reply of its own, and receives that reply up to its content.
  IncomingMessage Ask(OutgoingMessage message);
  IncomingMessage ReceiveReply();
  /// A reply that has been read up to its "END" marker, and the "READY" behind it.
  void FinishReply(IncomingMessage& reply);
  /// The strings of the one entry that answers "QFMFLUIDMODEL"; any name passes without
  /// `entryName`.
  Strings RequestFluidModel(std::optional<std::string_view> entryName);

 private:
  void SendSetup();
  void SendRunControl(OutgoingMessage message);
  void ReceiveStep(IncomingMessage& message);
  OutgoingMessage BeginQuery(std::string_view name);
  OutgoingMessage BeginWellQuery(std::string_view name, const Strings& wells, const Strings& items);
  /// The reply to a query of wells that has been sent.
  template <class T>
  void ReadWells(WellAnswer<T>& answer);
  template <class Result>
  Result QueryReservoir(std::string_view name, const Strings& items);

  std::unique_ptr<PeerConnection> connection_;
  MessageStream stream_;
  AlgorithmicPosition position_ = AlgorithmicPosition::UNCONNECTED;
  double time_ = 0.0;
  std::array<int32_t, 6> date_ = {1900, 1, 1, 0, 0, 0};
};

}  // namespace gantry
