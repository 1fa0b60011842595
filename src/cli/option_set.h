#pragma once

#include <deque>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillmarden {

/// One option of a command: how it is written, what its help says, and what takes its value. The parser's own library
/// is for one file alone, so that a command compiles in a moment and knows nothing of it.
struct OptionSpec {
  enum class Form { Flag, Value, Repeated };

  std::string name;  ///< "--table"; without dashes the argument that stands by its place alone
  Form form = Form::Value;
  std::string type;  ///< the word that stands for a value in the help
  std::string help;
  bool isRequired = false;
  std::vector<std::string> wanted;    ///< options without which this one says nothing
  std::vector<std::string> unwanted;  ///< options that contradict it; each stands in front of it in the set
  std::vector<std::string> words;     ///< the only values; empty for any
  std::vector<std::function<std::string(const std::string& value)>> checks;
  std::function<void(const std::string& value)> take;  ///< of a flag: called with ""

  OptionSpec& required();
  /// Refuses a value of nothing but blanks.
  OptionSpec& filled();
  OptionSpec& needs(std::string other);
  /// Refuses to stand beside that one.
  OptionSpec& excludes(std::string other);
  OptionSpec& only(std::vector<std::string> values);
  /// `fault` gives what is wrong with a value, "" for nothing.
  OptionSpec& check(std::function<std::string(const std::string& value)> fault);
};

/// The first thing that is wrong with a value, "" for nothing.
std::string optionFault(const OptionSpec& option, const std::string& value);

/// The options of one command, each tied to the place that takes its value. The places must outlive the set.
class OptionSet {
 public:
  template <typename Value>
  using Words = std::initializer_list<std::pair<const char*, std::type_identity_t<Value>>>;

  OptionSpec& text(std::string name, std::string& value, std::string type, std::string help);
  /// The same where no text and a blank one differ.
  OptionSpec& text(std::string name, std::optional<std::string>& value, std::string type, std::string help);
  /// An option that may come again, one value each time.
  OptionSpec& texts(std::string name, std::vector<std::string>& values, std::string type, std::string help);
  OptionSpec& flag(std::string name, bool& value, std::string help);
  /// A whole number; anything else is refused.
  OptionSpec& number(std::string name, int& value, std::string type, std::string help);
  /// One of these words, each of which stands for a value.
  template <typename Value>
  OptionSpec& choice(std::string name, Value& value, std::string type, std::string help, Words<Value> words) {
    return addChoice<Value>(std::move(name), std::move(type), std::move(help), words,
                            [&value](const Value& given) { value = given; });
  }
  /// The same where nothing stands for an option that is not there.
  template <typename Value>
  OptionSpec& choice(std::string name, std::optional<Value>& value, std::string type, std::string help,
                     Words<Value> words) {
    return addChoice<Value>(std::move(name), std::move(type), std::move(help), words,
                            [&value](const Value& given) { value = given; });
  }

  const std::deque<OptionSpec>& options() const { return options_; }

 private:
  template <typename Value>
  OptionSpec& addChoice(std::string name, std::string type, std::string help, Words<Value> words,
                        std::function<void(const Value&)> take) {
    std::vector<std::pair<std::string, Value>> known(words.begin(), words.end());
    OptionSpec& option = add(std::move(name), OptionSpec::Form::Value, std::move(type), std::move(help));
    for (const auto& [word, meaning] : known) option.words.push_back(word);
    option.take = [known = std::move(known), take = std::move(take)](const std::string& given) {
      for (const auto& [word, meaning] : known)
        if (word == given) take(meaning);
    };
    return option;
  }
  OptionSpec& add(std::string name, OptionSpec::Form form, std::string type, std::string help);

  std::deque<OptionSpec> options_;  // callers hold on to what they have added
};

}  // namespace quillmarden
