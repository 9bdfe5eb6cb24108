#include "runfactory/dialogue.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
#include <span>

#include "boundary/parallel_range.h"
#include "remote/factory_version.h"

namespace gantry::cluster {

namespace {

constexpr size_t kLengthSize = 4;

std::optional<int32_t> Number(const std::string& text) {
  int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

bool ReadNumber(const std::string& text, int32_t least, int32_t most, int32_t& number) {
  const std::optional<int32_t> value = Number(text);
  if (!value || *value < least || *value > most) return false;
  number = *value;
  return true;
}

bool ReadFlag(const std::string& text, bool& flag) {
  flag = text == "1";
  return text == "0" || text == "1";
}

bool IsPlain(const std::string& text) {
  return std::none_of(text.begin(), text.end(), [](char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7f;
  });
}

bool ReadPlain(const std::string& text, std::string& value) {
  value = text;
  return IsPlain(text);
}

}  // namespace

/// One line that a driver says: how long it may be, and where it goes.
struct Dialogue::Line {
  const char* what;
  size_t longest;
  bool (*read)(const std::string& text, RunRequest& request);
};

const Dialogue::Line Dialogue::kLines[] = {
    {"version word", 1, [](const std::string&, RunRequest&) { return true; }},
    {"scenario number", 11,
     [](const std::string& text, RunRequest& request) {
       return ReadNumber(text, 0, INT32_MAX, request.scenario);
     }},
    {"case directory", 4096,
     [](const std::string& text, RunRequest& request) {
       return ReadPlain(text, request.directory);
     }},
    {"case name", 255,
     [](const std::string& text, RunRequest& request) {
       return ReadPlain(text, request.baseName);
     }},
    {"number of processors", 11,
     [](const std::string& text, RunRequest& request) {
       return ReadNumber(text, 0, kMostParallel, request.parallel);
     }},
    {"version code", 11,
     [](const std::string& text, RunRequest& request) {
       return ReadNumber(text, 0, INT32_MAX, request.versionCode);
     }},
    {"user name", 256,
     [](const std::string& text, RunRequest& request) {
       return ReadPlain(text, request.user) && !text.empty();
     }},
    {"logging flag", 1,
     [](const std::string& text, RunRequest& request) { return ReadFlag(text, request.logging); }},
};

std::string FramedText(std::string_view text) {
  const auto length = static_cast<uint32_t>(text.size());
  std::string bytes(kLengthSize, '\0');
  std::memcpy(bytes.data(), &length, kLengthSize);
  return bytes.append(text);
}

std::string Dialogue::Greeting() { return FramedText(std::to_string(ExpectedFactoryVersion)); }

Dialogue::State Dialogue::Break(std::string fault) {
  fault_ = std::move(fault);
  return state_ = State::kBroken;
}

Dialogue::State Dialogue::Take(std::string_view bytes) {
  for (const char byte : bytes) {
    if (state_ == State::kComplete) return Break("it says more than it was asked for");
    if (state_ != State::kGoingOn) return state_;
    received_.push_back(byte);
    if (received_.size() < kLengthSize) continue;
    uint32_t length = 0;
    std::memcpy(&length, received_.data(), kLengthSize);
    if (length > kLines[line_].longest) {
      return Break(std::string("its ") + kLines[line_].what + " claims " + std::to_string(length) +
                   " characters");
    }
    if (received_.size() == kLengthSize + length) TakeLine();
  }
  return state_;
}

void Dialogue::TakeLine() {
  const Line& line = kLines[line_];
  const std::string text = received_.substr(kLengthSize);
  received_.clear();
  if (line_ == 0 && text != "1") {
    if (text == "0") {
      state_ = State::kDeclined;
    } else {
      Break("its version word is neither 0 nor 1");
    }
    return;
  }
  if (!line.read(text, request_) && refusal_.empty()) {
    refusal_ = std::string("The run factory can't read the ") + line.what;
  }
  if (++line_ == std::size(kLines)) state_ = State::kComplete;
}

}  // namespace gantry::cluster
