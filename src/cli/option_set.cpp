#include "cli/option_set.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

#include "common/text.h"

namespace quillmarden {

namespace {

bool isWholeNumber(const std::string& text, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

OptionSpec& OptionSpec::required() {
  isRequired = true;
  return *this;
}

OptionSpec& OptionSpec::filled() {
  return check([](const std::string& value) { return trim(value).empty() ? "空白は指定できません." : ""; });
}

OptionSpec& OptionSpec::needs(std::string other) {
  wanted.push_back(std::move(other));
  return *this;
}

OptionSpec& OptionSpec::excludes(std::string other) {
  unwanted.push_back(std::move(other));
  return *this;
}

OptionSpec& OptionSpec::only(std::vector<std::string> values) {
  words = std::move(values);
  return *this;
}

OptionSpec& OptionSpec::check(std::function<std::string(const std::string& value)> fault) {
  checks.push_back(std::move(fault));
  return *this;
}

std::string optionFault(const OptionSpec& option, const std::string& value) {
  if (!option.words.empty() && std::find(option.words.begin(), option.words.end(), value) == option.words.end())
    return fmt::format("{} のいずれかを指定して下さい: {}", fmt::join(option.words, ", "), value);
  for (const auto& check : option.checks)
    if (std::string fault = check(value); !fault.empty()) return fault;
  return "";
}

OptionSpec& OptionSet::add(std::string name, OptionSpec::Form form, std::string type, std::string help) {
  OptionSpec& option = options_.emplace_back();
  option.name = std::move(name);
  option.form = form;
  option.type = std::move(type);
  option.help = std::move(help);
  return option;
}

OptionSpec& OptionSet::text(std::string name, std::string& value, std::string type, std::string help) {
  OptionSpec& option = add(std::move(name), OptionSpec::Form::Value, std::move(type), std::move(help));
  option.take = [&value](const std::string& given) { value = given; };
  return option;
}

OptionSpec& OptionSet::text(std::string name, std::optional<std::string>& value, std::string type, std::string help) {
  OptionSpec& option = add(std::move(name), OptionSpec::Form::Value, std::move(type), std::move(help));
  option.take = [&value](const std::string& given) { value = given; };
  return option;
}

OptionSpec& OptionSet::texts(std::string name, std::vector<std::string>& values, std::string type, std::string help) {
  OptionSpec& option = add(std::move(name), OptionSpec::Form::Repeated, std::move(type), std::move(help));
  option.take = [&values](const std::string& given) { values.push_back(given); };
  return option;
}

OptionSpec& OptionSet::flag(std::string name, bool& value, std::string help) {
  OptionSpec& option = add(std::move(name), OptionSpec::Form::Flag, "", std::move(help));
  option.take = [&value](const std::string&) { value = true; };
  return option;
}

OptionSpec& OptionSet::number(std::string name, int& value, std::string type, std::string help) {
  OptionSpec& option = add(std::move(name), OptionSpec::Form::Value, std::move(type), std::move(help));
  option.take = [&value](const std::string& given) { isWholeNumber(given, value); };
  return option.check([](const std::string& given) {
    int number = 0;
    return isWholeNumber(given, number) ? std::string() : "整数ではありません: " + given;
  });
}

}  // namespace quillmarden
