#include "text/command_arguments.h"

#include <algorithm>
#include <memory>

#include "boundary/error_text.h"
#include "text/number_text.h"

namespace gantry {
namespace {

constexpr size_t kLongestArgument = sizeof CExtDataServerCmdArgument::Text - 1;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsDigitOrSign(char c) { return IsDigit(c) || c == '+' || c == '-'; }
bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool EndsArgument(char c) { return c == '(' || c == ')' || c == ','; }

/// The character that closes the quote which `c` opens; none when it opens no quote.
char ClosingQuote(char c) {
  if (c == '"' || c == '\'') return c;
  return c == '{' ? '}' : '\0';
}

int32_t KindOf(std::string_view text) {
  if (std::all_of(text.begin(), text.end(), IsDigitOrSign)) {
    return CExtDataServerCmdArgument::kInteger;
  }
  const bool numeric = IsDigitOrSign(text.front()) || text.front() == '.';
  return numeric ? CExtDataServerCmdArgument::kNumber : CExtDataServerCmdArgument::kText;
}

}  // namespace

std::optional<size_t> CommandArguments::Scan(size_t open) {
  for (size_t i = open; i < text_.size(); ++i) {
    const char c = text_[i];
    if (quote_ != '\0') {
      ClosesQuote(i) ? Finish(true) : Append(c);
      continue;
    }
    if (IsBlank(c)) continue;
    if (EndsArgument(c)) {
      if (begun_) Finish(false);
      if (c == ')') return i + 1;
      continue;
    }
    if (!begun_) quote_ = ClosingQuote(c);
    if (quote_ == '\0') Append(c);
  }
  return std::nullopt;
}

/// A closing character beside another one stands for itself, on whichever side the other is, so
/// that an empty text can only be written as {}.
bool CommandArguments::ClosesQuote(size_t position) const {
  if (text_[position] != quote_) return false;
  const bool after = text_[position - 1] == quote_;
  const bool before = position + 1 < text_.size() && text_[position + 1] == quote_;
  return !after && !before;
}

void CommandArguments::Append(char c) {
  begun_ = true;
  if (current_.size() < kLongestArgument) current_ += c;
}

void CommandArguments::Finish(bool quoted) {
  if (++count_ <= keepAtMost_) {
    auto argument = std::make_unique<CExtDataServerCmdArgument>();
    CopyBounded(argument->Text, current_);
    argument->Kind = quoted ? CExtDataServerCmdArgument::kQuoted : KindOf(current_);
    argument->IntegerValue = quoted ? 0 : ReadInteger(current_);
    argument->NumberValue = quoted ? EXT_FAILED_NUMBER : ReadDouble(current_);
    arguments_.Add(std::move(argument));
  }
  current_.clear();
  begun_ = false;
  quote_ = '\0';
}

}  // namespace gantry
