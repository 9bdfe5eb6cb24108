#include "simulator_side/controller_service.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include <boost/system/system_error.hpp>

#include "client/tcp_connection.h"
#include "platform/file_path.h"
#include "simulator_side/message_log.h"
#include "text/failure_text.h"

namespace gantry::simulator {

namespace {

/// The listener is gone once the controller has come: whoever knocks on the port while this
/// simulator ends is to wait for the next one.
std::unique_ptr<TcpConnection> AwaitController(const DriverArguments& arguments) {
  const std::string port = std::to_string(arguments.port);
  std::unique_ptr<TcpConnection> connection;
  try {
    connection = TcpListener(arguments.port).Accept(arguments.secondsForController);
  } catch (const boost::system::system_error& error) {
    throw std::runtime_error("can't listen on port " + port + ": " + error.code().message());
  }
  if (connection) return connection;
  throw std::runtime_error("no controller came to port " + port + " within " +
                           std::to_string(arguments.secondsForController) + " seconds");
}

void Speak(const DriverArguments& arguments, TcpConnection& connection,
           const std::function<void(ByteChannel&)>& serve) {
  if (!arguments.logsMessages) return serve(connection);
  MessageLog log(connection, platform::PathOf(arguments.base + ".ecreplay"));
  serve(log);
}

int Fail(const std::string& program, const std::string& reason) {
  std::fprintf(stderr, "%s: %s\n", program.c_str(), reason.c_str());
  return kRunFailed;
}

}  // namespace

int ServeController(const std::string& program, const DriverArguments& arguments,
                    const std::function<void(ByteChannel&)>& serve) {
  std::unique_ptr<TcpConnection> connection;
  try {
    connection = AwaitController(arguments);
  } catch (const std::exception& error) {
    return Fail(program, FailureText(error, "a controller"));
  }
  try {
    Speak(arguments, *connection, serve);
  } catch (const boost::system::system_error& error) {
    return Fail(program,
                std::string("the controller has gone without a shutdown: ") + error.what());
  } catch (const std::exception& error) {
    return Fail(program, "session ended: " + FailureText(error));
  }
  return 0;
}

}  // namespace gantry::simulator
