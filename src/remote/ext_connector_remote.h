#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "client/connector_base.h"
#include "remote/remote_connector.h"
#include "remote/remote_message.h"
#include "remote/socket.h"

namespace gantry {

class NameIndex;

/// Runs the operations of a connector as routines of a remote controller. Owns its copy of the
/// factory's connection, and the one buffer that every reply is read into. Every failure is a
/// runtime_error with the text of its routine; nothing resynchronises the stream after one. Behind
/// a request that didn't go out, or a reply that was refused as too long, no further reply can be
/// found: requests still go out, and fail at once.
class CExtConnectorRemote : public CExtConnectorBase {
 public:
  explicit CExtConnectorRemote(const RemoteSessionData& data)
      : Socket(std::make_unique<SocketClient>(*data.Socket)), VersionCode(data.VersionCode) {}

  ~CExtConnectorRemote() override { Socket->Close(); }

  void ConnectToSimulator() override { Do(Routine::kConnectToSimulator); }
  void Shutdown() override { Do(Routine::kShutdown); }
  void AdvanceNewton() override { Do(Routine::kAdvanceNewton); }
  void PollWellStatuses() override {}
  void PollWellConstraints() override {}

  double GetMinimumSimulatorVersion() override;
  double GetMaximumSimulatorVersion() override { return 10000.0; }
  std::string GetConnectorVersionName() override;

  double GetVersion() override { return AskDouble(Routine::kGetVersion); }
  double GetTimeDays() override { return AskDouble(Routine::kGetTimeDays); }
  bool GetMetricFlag() override { return AskFlag(Routine::kGetMetricFlag); }
  bool GetCompositionalFlag() override { return AskFlag(Routine::kGetCompositionalFlag); }
  bool GetTerminationFlag() override { return AskFlag(Routine::kGetTerminationFlag); }
  void GetDate(int32_t& day, int32_t& month, int32_t& year) override {
    AskDate(Routine::kGetDate, day, month, year);
  }
  void GetStartDate(int32_t& day, int32_t& month, int32_t& year) override {
    AskDate(Routine::kGetStartDate, day, month, year);
  }

  void RunUntil(double days) override { Do(Routine::kRunUntil, MessageWriter().PutDouble(days)); }
  void GetWellStatus(std::vector<ConnectorWellStatus>& statuses) override;
  void GetWellData(const Strings& wells, std::vector<ConnectorWellRecord>& records) override;
  void GetWellIPRData(int32_t componentCount, const Strings& wells,
                      std::vector<ConnectorWellRecord>& records, bool useBottomHolePressure,
                      double skewness) override;
  void GetWellVariables(const std::string& well, const Strings& items,
                        const std::vector<int32_t>& codes, Doubles& values) override;
  void GetEOSProperties(EOSProperties& properties) override;
  bool SetInjectionSource(const std::string& well, const std::string& source) override;
  void SetWellInjectionComposition(const Strings& sources,
                                   const std::vector<Doubles>& fractions) override;
  void SetWellStatus(const Strings& wells, const Strings& statuses) override;
  void SetWellUptime(const Strings& wells, const Doubles& fractions) override;
  void SetWellConstraints(const Strings& wells, const std::vector<Strings>& items,
                          const std::vector<Doubles>& values,
                          const std::vector<std::vector<int32_t>>& codes) override;

 private:
  /// Sends a request and reads its reply with `read`, which takes the results up to the
  /// acknowledgement that every routine but one ends with.
  template <class Read>
  void Ask(Routine routine, const MessageWriter& request, Read read) {
    int32_t acknowledgement = 0;
    AskUnacknowledged(routine, request, [&](MessageReader& reply) {
      read(reply);
      acknowledgement = reply.GetInt();
    });
    if (acknowledgement != 0) throw std::runtime_error(AcknowledgementError(routine));
  }

  template <class Read>
  void AskUnacknowledged(Routine routine, const MessageWriter& request, Read read) {
    if (Send(request, *Socket, routine) != 0) isOutOfStep_ = true;
    try {
      if (!ReceiveReply() || LastRoutine != static_cast<uint32_t>(routine)) throw MessageOverrun();
      MessageReader reply(ReplyPayload);
      read(reply);
    } catch (const MessageOverrun&) {
      throw std::runtime_error(CommunicationError(routine));
    }
  }

  void Do(Routine routine, const MessageWriter& request = {}) {
    Ask(routine, request, [](MessageReader&) {});
  }

  /// False when none came, or none can be found in what comes.
  bool ReceiveReply();
  double AskDouble(Routine routine);
  bool AskFlag(Routine routine);
  void AskDate(Routine routine, int32_t& day, int32_t& month, int32_t& year);
  void ReadWellData(ConnectorWellRecord& record);
  void ReadInflow(const std::string& well, const NameIndex& index,
                  std::vector<ConnectorWellRecord>& records, size_t compositions);

  std::unique_ptr<SocketClient> Socket;
  uint32_t LastRoutine = 0;
  std::span<const std::byte> ReplyPayload;
  FrameBuffer ReplyBuffer{kLargestReply};
  bool isOutOfStep_ = false;
  int32_t VersionCode;
};

}  // namespace gantry
