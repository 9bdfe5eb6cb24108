#pragma once

#include <span>
#include <string>
#include <vector>

#include "client/query_results.h"
#include "remote/message_reader.h"
#include "remote/message_writer.h"
#include "remote/routine_table.h"

// What a remote message is made of, the same from both ends: docs/remote-protocol.md.

namespace gantry {

class Socket;

/// A reply's largest body.
inline constexpr size_t kLargestReply = 1048576;

/// Sends the writer's bytes as a request of that routine. An empty writer sends the routine's
/// number twice. The result is that of `SendFrame`, or -1 when something was thrown on the way.
int32_t Send(const MessageWriter& writer, Socket& socket, Routine routine);

// Each list and table stands behind its count.
void PutTexts(MessageWriter& writer, const Strings& texts);
void PutDoubles(MessageWriter& writer, std::span<const double> values);
void PutTextRows(MessageWriter& writer, const std::vector<Strings>& rows);
void PutDoubleRows(MessageWriter& writer, const std::vector<Doubles>& rows);

Strings GetTexts(MessageReader& reader);
/// Appends a list to `values`.
void GetDoubles(MessageReader& reader, Doubles& values);
std::vector<Strings> GetTextRows(MessageReader& reader);
std::vector<Doubles> GetDoubleRows(MessageReader& reader);

/// Texts whose count has come before.
Strings GetTexts(MessageReader& reader, size_t count);

}  // namespace gantry
