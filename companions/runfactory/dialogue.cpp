#include "runfactory/dialogue.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <variant>

#include "boundary/parallel_range.h"
#include "remote/factory_version.h"
#include "text/number_text.h"

namespace gantry::cluster {

namespace {

constexpr size_t kLengthSize = 4;

bool Read(const std::string& text, int32_t most, int32_t& number) {
  const auto value = ParseNumber<int32_t>(text);
  if (!value || *value < 0 || *value > most) return false;
  number = *value;
  return true;
}

bool Read(const std::string& text, int32_t /*most*/, bool& flag) {
  flag = text == "1";
  return text == "0" || text == "1";
}

bool Read(const std::string& text, int32_t /*most*/, std::string& value) {
  value = text;
  return std::none_of(text.begin(), text.end(), [](char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7f;
  });
}

}  // namespace

/// One line that a driver says: how long it may be, where it goes, and the largest number.
struct Dialogue::Line {
  const char* what;
  size_t longest;
  std::variant<std::monostate, int32_t RunRequest::*, bool RunRequest::*, std::string RunRequest::*>
      field;
  int32_t most = INT32_MAX;
  bool isNeeded = false;

  bool ReadInto(RunRequest& request, const std::string& text) const {
    if (isNeeded && text.empty()) return false;
    return std::visit(
        [&]<class Field>(Field target) {
          if constexpr (std::is_same_v<Field, std::monostate>)
            return true;
          else
            return Read(text, most, request.*target);
        },
        field);
  }
};

const Dialogue::Line Dialogue::kLines[] = {
    {.what = "version word", .longest = 1, .field = {}},
    {.what = "scenario number", .longest = 11, .field = &RunRequest::scenario},
    {.what = "case directory", .longest = 4096, .field = &RunRequest::directory},
    {.what = "case name", .longest = 255, .field = &RunRequest::baseName},
    {"number of processors", 11, &RunRequest::parallel, kMostParallel},
    {.what = "version code", .longest = 11, .field = &RunRequest::versionCode},
    {.what = "user name", .longest = 256, .field = &RunRequest::user, .isNeeded = true},
    {.what = "logging flag", .longest = 1, .field = &RunRequest::logging},
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
  if (!line.ReadInto(request_, text) && refusal_.empty()) {
    refusal_ = std::string("The run factory can't read the ") + line.what;
  }
  if (++line_ == std::size(kLines)) state_ = State::kComplete;
}

}  // namespace gantry::cluster
