// Help, manual page and completions know the same verbs, options and values that are parsed.
#include "verbs/interface.hpp"

#include "program.hpp"
#include "verbs/verbs.hpp"

#ifndef _WIN32
#include <array>
#include <cstdio>
#endif

namespace orva::program {
namespace {

class Interface : public ProgramTest {
protected:
    CLI::App app;
    Command command;
    Interface() { addVerbs(app, command); }

    // Every name that is parsed, for `look(verb, name)`.
    template <typename Look> void forAllNames(const Look& look) const {
        std::size_t count = 0;
        for (const CLI::App* verb : verbsOf(app)) {
            for (const Word& word : wordsOf(*verb)) {
                for (const std::string& name : word.names) {
                    look(verb->get_name(), name);
                    ++count;
                }
            }
        }
        EXPECT_GT(count, 60U);
    }

    // The part of a text about a verb: between two of its lines.
    static std::string between(const std::string& text, const std::string& begin, const std::string& end) {
        const std::size_t from = text.find(begin);
        EXPECT_NE(from, std::string::npos) << begin;
        if (from == std::string::npos) return "";
        const std::size_t to = text.find(end, from + begin.size());
        return text.substr(from, to == std::string::npos ? to : to - from);
    }

    // Whether the name stands there as a word.
    static bool has(const std::string& text, const std::string& name) {
        const auto isPart = [](char c) { return c == '-' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
        for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
            const char before = at == 0 ? ' ' : text[at - 1];
            const char after = at + name.size() == text.size() ? ' ' : text[at + name.size()];
            if (!isPart(before) && !isPart(after)) return true;
        }
        return false;
    }

    static std::string withoutEscapes(std::string roff) {
        for (const std::string escape : {"\\fB", "\\fI", "\\fR", "\\&"}) {
            for (std::size_t at = 0; (at = roff.find(escape)) != std::string::npos;) roff.erase(at, escape.size());
        }
        std::erase(roff, '\\');
        return roff;
    }
};

TEST_F(Interface, HelpNamesAllThatIsParsed) {
    std::string last;
    std::string help;
    forAllNames([&](const std::string& verb, const std::string& name) {
        if (verb != last) help = orva({verb, "--help"}).output;
        last = verb;
        EXPECT_TRUE(has(help, name)) << verb << ' ' << name;
    });
}

TEST_F(Interface, ManPageNamesAllThatIsParsed) {
    const Outcome run = orva({"man"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output, manPage(app));
    const std::string page = withoutEscapes(run.output);
    forAllNames([&](const std::string& verb, const std::string& name) {
        EXPECT_TRUE(has(between(page, ".SS orva " + verb, "\n.S"), name)) << verb << ' ' << name;
    });
    for (const char* mode : {"sequential", "union", "parallel"}) {
        EXPECT_TRUE(has(between(page, ".SS orva subtract", "\n.S"), mode));
    }
    for (const char* code : {"0", "1", "2", "3", "4", "5", "6", "130"}) {
        EXPECT_NE(page.find(std::string(".TP\n") + code + "\n"), std::string::npos) << code;
    }
}

TEST_F(Interface, BashCompletionNamesAllThatIsParsed) {
    const std::string script = orva({"completion", "bash"}).output;
    EXPECT_EQ(script, bashCompletion(app));
    forAllNames([&](const std::string& verb, const std::string& name) {
        if (!name.starts_with("-")) return;
        EXPECT_TRUE(has(between(script, "\n    " + verb + ")\n", "\n    *)\n"), name)) << verb << ' ' << name;
    });
}

TEST_F(Interface, ZshCompletionNamesAllThatIsParsed) {
    const std::string script = orva({"completion", "zsh"}).output;
    EXPECT_EQ(script, zshCompletion(app));
    EXPECT_TRUE(script.starts_with("#compdef orva\n"));
    forAllNames([&](const std::string& verb, const std::string& name) {
        if (!name.starts_with("-")) return;
        EXPECT_TRUE(has(between(script, "\n    " + verb + ")\n", ";;\n"), name)) << verb << ' ' << name;
    });
}

TEST_F(Interface, CompletionsForOtherShells) {
    expectFailure(orva({"completion", "fish"}), 2, "SHELL: fish not in {bash,zsh}; see orva completion --help");
}

#ifndef _WIN32

std::string outputOf(const std::string& shellCommand) {
    std::string output;
    FILE* pipe = popen(shellCommand.c_str(), "r");
    if (pipe == nullptr) return "no shell";
    std::array<char, 4096> piece{};
    for (std::size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;) {
        output.append(piece.data(), size);
    }
    const int status = pclose(pipe);
    return status == 0 ? output : output + "failed";
}

TEST_F(Interface, ManPageIsCleanRoff) {
    const std::string page = file("orva.1", manPage(app));
    EXPECT_EQ(outputOf("groff -man -Tutf8 -ww -z '" + page + "' 2>&1"), ""); // all warnings, no output
    const std::string text = outputOf("groff -man -Tascii -P-c -P-b -P-u '" + page + "' 2>&1");
    EXPECT_NE(text.find("orva subtract wall.off door.off window-*.off -o house.off --mode union"), std::string::npos)
        << text;
}

TEST_F(Interface, BashCompletes) {
    const std::string script = file("completion", bashCompletion(app));
    file("mesh.off", "");
    // What bash offers when the words are these, the last one unfinished.
    const auto offered = [&](const std::string& words) {
        return outputOf("cd '" + file("") + "' && bash -c '. ./completion && COMP_WORDS=(" + words +
                        ") && COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) && _orva && echo \"${COMPREPLY[*]}\"' 2>&1");
    };
    EXPECT_EQ(offered("orva sub"), "subtract\n");
    EXPECT_EQ(offered("orva --vers"), "--version\n");
    EXPECT_EQ(offered("orva union --kee"), "--keep-faces\n");
    EXPECT_EQ(offered("orva subtract a.off b.off --mode par"), "parallel\n");
    EXPECT_EQ(offered("orva subtract a.off --mode \"\""), "sequential union parallel\n");
    EXPECT_EQ(offered("orva ti"), "tidy\n");
    EXPECT_EQ(offered("orva tidy a.off --merge \"\""), "none cut all\n");
    EXPECT_EQ(offered("orva union --allow"), "--allow-empty\n");
    EXPECT_EQ(offered("orva convert m"), "mesh.off\n");
    EXPECT_EQ(offered("orva convert mesh.off -o m"), "mesh.off\n");
    EXPECT_EQ(offered("orva convert --from st"), "stl stl-ascii\n");
    EXPECT_EQ(offered("orva completion z"), "zsh\n");
    EXPECT_EQ(offered("orva union --threads m"), "\n");
    EXPECT_EQ(outputOf("bash -n '" + script + "' 2>&1"), "");
}

#endif

} // namespace
} // namespace orva::program
