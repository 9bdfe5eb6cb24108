#include <cstring>

#include "client/record_fields.h"
#include "remote/ext_connector_remote.h"

namespace gantry {

namespace {

constexpr size_t kRoutineNumberSize = sizeof(uint32_t);
constexpr double kVersion2016 = 2016.2;
constexpr double kVersion2017 = 2017.2;

}  // namespace

std::unique_ptr<CExtConnectorBase> CreateRemoteConnector(const RemoteSessionData& data) {
  return Establish(std::make_unique<CExtConnectorRemote>(data));
}

bool CExtConnectorRemote::ReceiveReply() {
  uint32_t length = 0;
  if (Socket == nullptr) return false;
  if (isOutOfStep_) {
    Socket->DropAvailable();
    return false;
  }
  const bool hasCome = Socket->ReceiveFrame(ReplyBuffer, length) == 0;
  isOutOfStep_ = length > ReplyBuffer.Capacity();
  if (!hasCome) return false;
  std::memcpy(&LastRoutine, ReplyBuffer.Bytes().data(), kRoutineNumberSize);
  ReplyPayload = ReplyBuffer.Bytes().subspan(kRoutineNumberSize);
  return true;
}

double CExtConnectorRemote::GetMinimumSimulatorVersion() {
  return VersionCode == kVersion2016_2 ? kVersion2016 : kVersion2017;
}

std::string CExtConnectorRemote::GetConnectorVersionName() {
  return VersionCode >= kVersion2017_2 ? "2017.2->" : "2016.2 - 2017.1";
}

double CExtConnectorRemote::AskDouble(Routine routine) {
  double value = 0;
  Ask(routine, {}, [&](MessageReader& reply) { value = reply.GetDouble(); });
  return value;
}

bool CExtConnectorRemote::AskFlag(Routine routine) {
  int32_t flag = 0;
  Ask(routine, {}, [&](MessageReader& reply) { flag = reply.GetInt(); });
  return flag > 0;
}

void CExtConnectorRemote::AskDate(Routine routine, int32_t& day, int32_t& month, int32_t& year) {
  Ask(routine, {}, [&](MessageReader& reply) {
    day = reply.GetInt();
    month = reply.GetInt();
    year = reply.GetInt();
  });
}

void CExtConnectorRemote::GetEOSProperties(EOSProperties& properties) {
  properties = {};
  Ask(Routine::kGetEOSProperties, {}, [&](MessageReader& reply) {
    properties.eosName = reply.GetText();
    properties.componentNames = GetTexts(reply);
    for (const EOSField& element : kEOSFields) {
      Doubles& values = properties.*element.field;
      GetDoubles(reply, values);
      unitConverter->FromSimulator(values, element.code);
      if (!values.empty()) properties.presentProperties |= element.bit;
    }
  });
  properties.componentCount = static_cast<int32_t>(properties.componentNames.size());
}

bool CExtConnectorRemote::SetInjectionSource(const std::string& well, const std::string& source) {
  uint8_t result = 0;
  Ask(Routine::kSetInjectionSource, MessageWriter().PutText(well).PutText(source),
      [&](MessageReader& reply) { result = reply.GetByte(); });
  return result != 0;
}

void CExtConnectorRemote::SetWellInjectionComposition(const Strings& sources,
                                                      const std::vector<Doubles>& fractions) {
  MessageWriter request;
  PutTexts(request, sources);
  PutDoubleRows(request, fractions);
  Do(Routine::kSetWellInjectionComposition, request);
}

}  // namespace gantry
