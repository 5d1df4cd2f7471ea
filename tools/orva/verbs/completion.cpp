#include "verbs/interface.hpp"
#include "words.hpp"

namespace orva::program {

namespace {

std::string verbNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* verb : verbsOf(app)) names.push_back(verb->get_name());
    return joined(names, " ");
}

std::string optionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const Word& word : wordsOf(app)) {
        if (word.isOption) names.insert(names.end(), word.names.begin(), word.names.end());
    }
    return joined(names, " ");
}

// Between single quotes.
std::string quoted(const std::string& text) {
    std::string inside;
    for (const char c : text) inside += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return "'" + inside + "'";
}

// To zsh's _arguments, brackets and colons in a description mean something.
std::string escapedForZsh(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '[' || c == ']' || c == ':' || c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

// What zsh offers as the word's value.
std::string actionFor(const Word& word) {
    if (!word.values.empty()) return "(" + joined(word.values, " ") + ")";
    return word.valueName == "FILE" ? "_files" : " ";
}

} // namespace

std::string bashCompletion(const CLI::App& app) {
    std::string script = "# bash completion for orva; made by: orva completion bash\n"
                         "_orva() {\n"
                         "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} choice=\n"
                         "  COMPREPLY=()\n"
                         "  if [[ $COMP_CWORD -eq 1 ]]; then\n"
                         "    COMPREPLY=($(compgen -W '" +
                         verbNames(app) + " " + optionNames(app) +
                         "' -- \"$word\"))\n"
                         "    return\n"
                         "  fi\n"
                         "  case ${COMP_WORDS[1]} in\n";
    for (const CLI::App* verb : verbsOf(app)) {
        script += "    " + verb->get_name() + ")\n      case $before in\n";
        std::string arguments;
        for (const Word& word : wordsOf(*verb)) {
            if (!word.isOption) arguments += (arguments.empty() ? "" : " ") + joined(word.values, " ");
            if (!word.isOption || !word.takesValue) continue;
            script += "        " + joined(word.names, "|") + ") ";
            if (!word.values.empty()) {
                script += "choice='" + joined(word.values, " ") + "' ;;\n";
            } else if (word.valueName == "FILE") {
                script += "COMPREPLY=($(compgen -f -- \"$word\")); return ;;\n";
            } else {
                script += "return ;;\n";
            }
        }
        script += "        *) if [[ $word == -* ]]; then choice='" + optionNames(*verb) + "'; else choice='" +
                  arguments + "'; fi ;;\n      esac ;;\n";
    }
    return script + "  esac\n"
                    "  if [[ $choice ]]; then\n"
                    "    COMPREPLY=($(compgen -W \"$choice\" -- \"$word\"))\n"
                    "  else\n"
                    "    COMPREPLY=($(compgen -f -- \"$word\"))\n"
                    "  fi\n"
                    "}\n"
                    "complete -o filenames -F _orva orva\n";
}

std::string zshCompletion(const CLI::App& app) {
    std::string script = "#compdef orva\n# zsh completion for orva; made by: orva completion zsh\n_orva() {\n"
                         "  local -a verbs=(\n";
    for (const CLI::App* verb : verbsOf(app)) {
        script += "    " + quoted(verb->get_name() + ":" + verb->get_description()) + "\n";
    }
    script += "  )\n  if (( CURRENT == 2 )); then\n    _describe verb verbs\n    compadd -- " + optionNames(app) +
              "\n    return\n  fi\n  local verb=$words[2]\n  shift words\n  (( CURRENT-- ))\n  case $verb in\n";
    for (const CLI::App* verb : verbsOf(app)) {
        script += "    " + verb->get_name() + ")\n      _arguments -S";
        for (const Word& word : wordsOf(*verb)) {
            const std::string text = "[" + escapedForZsh(word.description) + "]";
            const std::string value = ":" + escapedForZsh(word.valueName) + ":" + actionFor(word);
            if (!word.isOption) {
                script += " \\\n        " + quoted((word.many ? "*" : "") + value);
                continue;
            }
            for (const std::string& name : word.names) {
                script += " \\\n        " + quoted(name + text + (word.takesValue ? value : ""));
            }
        }
        script += " ;;\n";
    }
    return script + "  esac\n}\ncompdef _orva orva\n";
}

} // namespace orva::program
