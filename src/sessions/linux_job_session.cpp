#include "sessions/linux_job_session.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <optional>
#include <vector>

#include "boundary/error_text.h"
#include "platform/user.h"
#include "remote/factory_version.h"
#include "remote/remote_connector.h"
#include "remote/socket.h"
#include "settings/link_settings.h"
#include "text/failure_text.h"
#include "text/pieces.h"

namespace gantry {

namespace {

constexpr size_t kLongestUserName = 256;

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char character) {
    return static_cast<char>(std::tolower(character));
  });
  return text;
}

void SendNumber(SocketClient& factory, int32_t number) {
  factory.SendText(FormatText("%d", number));
}

}  // namespace

CLinuxJobSession::~CLinuxJobSession() { CLinuxJobSession::StopIfRunning(); }

int32_t CLinuxJobSession::Start(std::string& message) {
  const platform::SingleLock lock(StartLock);
  if (IsRunning()) {
    message = "The current simulator process is still running. No new process is created.";
    return 1;
  }
  const char* node = Settings.HeadNode.c_str();
  try {
    return Converse(message);
  } catch (int error) {
    message = FormatText(
        "Error connecting to run factory on host %s, port %d. Is it running? Error number: %d",
        node, Settings.HeadNodePort, error);
  } catch (...) {
    message = FormatText("Error connecting to run factory on host %s, port %d. Is it running?",
                         node, Settings.HeadNodePort);
  }
  return 1;
}

int32_t CLinuxJobSession::Converse(std::string& message) {
  SocketClient factory(Settings.HeadNode, static_cast<uint16_t>(Settings.HeadNodePort));
  const bool placed = AgreeOnVersion(factory, message) && DescribeRun(factory, message) &&
                      ReadAnswer(factory, message);
  return placed ? Connect(factory, message) : 1;
}

bool CLinuxJobSession::AgreeOnVersion(SocketClient& factory, std::string& message) {
  int32_t length = 0;
  const std::string version = factory.ReceiveText(length);
  if (length == 0) {
    message = FormatText("Error connecting to run factory on host %s. Version number not returned",
                         Settings.HeadNode.c_str());
    return false;
  }
  FactoryVersion = std::atoi(version.c_str());
  const bool matches = FactoryVersion == ExpectedFactoryVersion;
  if (!matches) {
    message = FormatText(
        "Linux side executables are of a different version to KINSET (%d - expected = %d)",
        FactoryVersion, ExpectedFactoryVersion);
  }
  factory.SendText(matches ? "1" : "0");
  return matches;
}

bool CLinuxJobSession::DescribeRun(SocketClient& factory, std::string& message) const {
  SendNumber(factory, ScenarioNumber);
  factory.SendText(Settings.GetCaseDirectory());
  factory.SendText(Settings.GetCaseBaseName());
  SendNumber(factory, Settings.Parallel);
  SendNumber(factory, Settings.LinuxIXVersion);
  const std::optional<std::string> user = platform::LogInName();
  if (!user || user->size() > kLongestUserName) {
    message = "Failed to get Windows user name to pass to Linux";
    return false;
  }
  factory.SendText(LowerCase(*user));
  factory.SendText(Settings.StdLogging ? "1" : "0");
  return true;
}

bool CLinuxJobSession::ReadAnswer(SocketClient& factory, std::string& message) {
  int32_t length = 0;
  const std::string answer = factory.ReceiveText(length);
  if (length == 0) {
    message =
        FormatText("Error connecting to run factory on host %s (2)", Settings.HeadNode.c_str());
    return false;
  }
  const std::vector<std::string> tokens = SplitAt(answer, "|\n");
  if (tokens.size() == 2 && tokens[0] == "OK") {
    HostName = tokens[1];
    return true;
  }
  message = tokens.empty() ? "Invalid response from simulator" : answer;
  return false;
}

int32_t CLinuxJobSession::Connect(const SocketClient& factory, std::string& message) {
  RemoteSessionData data;
  data.VersionCode = Settings.LinuxIXVersion;
  data.Socket = &factory;
  try {
    Connector = CreateRemoteConnector(data);
    return 0;
  } catch (const std::exception& failure) {
    message = std::string("Abnormal error: ") + FailureText(failure);
    return 1;
  }
}

}  // namespace gantry
