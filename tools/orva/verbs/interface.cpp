#include "verbs/interface.hpp"

#include <utility>

namespace orva::program {

namespace {

// "{a,b,c}" in the name of an option's type is how the parser says that it takes a, b or c.
std::vector<std::string> valuesIn(const std::string& type) {
    std::vector<std::string> values;
    const std::size_t begin = type.find('{');
    const std::size_t end = type.find('}', begin);
    if (begin == std::string::npos || end == std::string::npos) return values;
    std::string value;
    for (const char c : type.substr(begin + 1, end - begin - 1) + ",") {
        if (c == ',') {
            values.push_back(std::exchange(value, {}));
        } else {
            value += c;
        }
    }
    return values;
}

Word wordOf(const CLI::Option& option) {
    Word word;
    word.isOption = !option.get_positional();
    if (word.isOption) {
        for (const std::string& name : option.get_snames()) word.names.push_back("-" + name);
        for (const std::string& name : option.get_lnames()) word.names.push_back("--" + name);
    } else {
        word.names.push_back(option.get_name(true));
    }
    word.takesValue = option.get_items_expected_max() > 0;
    const std::string type = option.get_type_name(); // "FORMAT:{off,stl}", "N:INT in [1 - 1024]"
    if (word.takesValue) word.valueName = type.substr(0, type.find(':'));
    word.values = valuesIn(type);
    word.description = option.get_description();
    word.required = option.get_required();
    word.many = !word.isOption && option.get_items_expected_max() > 1;
    return word;
}

} // namespace

std::vector<Word> wordsOf(const CLI::App& verb) {
    std::vector<Word> words;
    for (const CLI::Option* option : verb.get_options()) words.push_back(wordOf(*option));
    return words;
}

std::vector<const CLI::App*> verbsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

} // namespace orva::program
