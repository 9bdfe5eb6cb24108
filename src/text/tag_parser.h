#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "text/ext_collection.h"

namespace gantry {

enum class TagMode : int32_t { kRead = 0, kWrite = 1, kCommand = 2 };

/// What `TagParser::MatchCommand` found.
enum class CommandMatch : int32_t {
  kOther = -1,     ///< not this command
  kMatched = 0,    ///< this command, its arguments well formed
  kMalformed = 1,  ///< this command, and `ErrorText` tells what is wrong
};

/// One argument of a command.
struct CExtDataServerCmdArgument : CExtCollectionObject {
  enum : int32_t { kText = 0, kQuoted = 1, kNumber = 2, kInteger = 3 };

  int32_t Kind = kText;
  int32_t IntegerValue = 0;
  char Text[256] = {};       ///< cut to 255 characters, without its quotes
  double NumberValue = 0.0;  ///< 3.4e35 for quoted text
};

using CExtDataServerCmdArgumentCollection = CExtCollection<CExtDataServerCmdArgument>;

/// Walks one text path of the host, such as Intersect.Well[{P1}].OilGravity, or one command, such
/// as Intersect.RunToTime(100). Each test tries to take the next token and moves on when it
/// matches; a test that fails takes nothing. Lives for one request and is private to the call.
class TagParser {
 public:
  /// A path to read: the answer goes into `reply`, cut to fit and always terminated.
  static TagParser ForReading(std::string_view path, std::span<char> reply);
  /// A path to write: `value` is the new value, read until its terminator.
  static TagParser ForWriting(std::string_view path, const char* value);
  /// A command.
  static TagParser ForCommand(std::string_view path);
  /// A path whose answer is placed in a new text, however long.
  static TagParser ForAllocatedReply(std::string_view path, std::unique_ptr<char[]>& holder);

  bool MatchWord(std::string_view name);

  /// Each takes `name` as `MatchWord` does and on a match transfers the value: formatted into the
  /// reply on a read, parsed into the variable on a write unless the name was of the "$" kind.
  bool IntProperty(int32_t& value, std::string_view name);
  bool BoolProperty(bool& value, std::string_view name);
  bool ShortProperty(int16_t& value, std::string_view name);
  bool DoubleProperty(double& value, std::string_view name);
  bool StringProperty(std::string& value, std::string_view name);
  bool DoubleArrayItem(std::vector<double>& values, std::string_view name);

  int32_t ParseIndex();    ///< "[n]", or -1 with nothing taken
  std::string ParseKey();  ///< "[{name}]", at most 255 characters; empty for anything else
  std::string NextWord();  ///< the next token without a test, up to "." or "["

  void WriteReply(std::string_view text);
  void WriteReply(int32_t number);
  void WriteReply(double number);

  /// An empty `name` takes no word. `arguments` is emptied first.
  CommandMatch MatchCommand(std::string_view name, CExtDataServerCmdArgumentCollection& arguments,
                            int32_t minimum, int32_t maximum);
  /// The write value as numbers, each ended by "|" or "}". True when exactly `target.size()` came.
  bool ParseValueArray(std::span<double> target, std::string& error) const;

  TagMode Mode() const { return mode_; }
  bool Protected() const { return protected_; }
  const char* Value() const { return value_; }  ///< the text to write; empty outside write mode

  /// A text that a handler leaves for the host; not empty means failure.
  std::string ErrorText;
  /// Set by a handler that the simulator's connector would let go on.
  bool NeedsSimulator = false;

 private:
  TagParser(std::string_view path, TagMode mode);

  bool MayWrite() const { return mode_ == TagMode::kWrite && !protected_; }
  void TransferDouble(double& value);
  CommandMatch Malformed(const char* text);

  std::string path_;
  size_t position_ = 0;
  TagMode mode_;
  bool protected_ = false;
  const char* value_ = "";
  std::span<char> reply_;
  std::unique_ptr<char[]>* valueHolder_ = nullptr;  ///< set when the reply is to be allocated
};

}  // namespace gantry
