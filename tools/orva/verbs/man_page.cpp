#include "failure.hpp"
#include "verbs/interface.hpp"

#include <algorithm>

namespace orva::program {

namespace {

// Text as roff takes it: a line must not begin with a dot or an apostrophe, and a hyphen is a minus, to be copied.
std::string escaped(const std::string& text) {
    std::string roff;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool begins = i == 0 || text[i - 1] == '\n';
        if (begins && (text[i] == '.' || text[i] == '\'')) roff += "\\&";
        if (text[i] == '\\') {
            roff += "\\e";
        } else if (text[i] == '-') {
            roff += "\\-";
        } else {
            roff += text[i];
        }
    }
    return roff;
}

std::string bold(const std::string& text) {
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + escaped(text) + "\\fR";
}

std::string headOf(const Word& word) {
    std::string head;
    for (const std::string& name : word.names) {
        head += (head.empty() ? "" : ", ") + (word.isOption ? bold(name) : italic(name));
    }
    if (word.isOption && word.takesValue) head += " " + italic(word.valueName);
    return head;
}

void appendWord(std::string& page, const Word& word) {
    page += ".TP\n" + headOf(word) + "\n" + escaped(word.description);
    if (!word.values.empty()) {
        page += ": ";
        for (std::size_t i = 0; i < word.values.size(); ++i) {
            page += (i == 0 ? "" : i + 1 == word.values.size() ? " or " : ", ") + bold(word.values[i]);
        }
    }
    page += "\n";
}

// "Example:" with indented lines below, paragraphs between blank lines.
void appendFooter(std::string& page, const std::string& footer) {
    bool indented = false;
    bool blank = true;
    for (std::size_t at = 0; at < footer.size();) {
        const std::size_t end = std::min(footer.find('\n', at), footer.size());
        const std::string line = footer.substr(at, end - at);
        at = end + 1;
        const bool example = line.starts_with("  ");
        if (example != indented) page += example ? ".PP\n.nf\n.RS 4\n" : ".RE\n.fi\n";
        if (!example && !line.empty() && blank) page += ".PP\n";
        if (!line.empty()) page += escaped(example ? line.substr(2) : line) + "\n";
        indented = example;
        blank = line.empty() || example;
    }
    if (indented) page += ".RE\n.fi\n";
}

void appendVerb(std::string& page, const CLI::App& verb) {
    page += ".SS " + escaped("orva " + verb.get_name());
    for (const Word& word : wordsOf(verb)) {
        if (!word.isOption) page += " " + escaped(word.names.front() + (word.many ? "..." : ""));
    }
    page += "\n" + escaped(verb.get_description()) + "\n";
    for (const Word& word : wordsOf(verb)) appendWord(page, word);
    appendFooter(page, verb.get_footer());
}

constexpr struct {
    ExitCode code;
    const char* text;
} exitCodes[] = {
    {ExitCode::Done, "Done. An empty result is one, too."},
    {ExitCode::Internal, "An error of the program itself."},
    {ExitCode::Usage, "Verbs, options or names that are not understood."},
    {ExitCode::CannotRead, "A file that is missing, unreadable, or not the mesh that it claims to be."},
    {ExitCode::Unfit,
     "A mesh that is unfit for a boolean: found by check, or refused with --strict, as is a result that does not "
     "close. An empty mesh in a union."},
    {ExitCode::OutOfMemory, "Out of memory."},
    {ExitCode::CannotWrite, "The output cannot be written, or exists and --force was not given."},
    {ExitCode::Interrupted, "Interrupted. No part of a file is left."},
};

} // namespace

std::string manPage(const CLI::App& app) {
    std::string page = ".TH ORVA 1 \"\" \"" + escaped(app.version()) +
                       "\"\n.SH NAME\norva \\- booleans of closed "
                       "triangle meshes\n";
    page += ".SH SYNOPSIS\n" + bold("orva") + " " + italic("VERB") + " [" + italic("ARGUMENTS") + "]\n";
    page += ".SH DESCRIPTION\n" + escaped(app.get_description()) + "\n.PP\n" +
            escaped("Results are data on stdout or in files; everything else goes to stderr. An output file is there "
                    "as a whole or not at all.") +
            "\n";
    page += ".SH OPTIONS\n";
    for (const Word& word : wordsOf(app)) appendWord(page, word);
    page += ".SH VERBS\n";
    for (const CLI::App* verb : verbsOf(app)) appendVerb(page, *verb);
    page += ".SH EXIT STATUS\n";
    for (const auto& [code, text] : exitCodes) {
        page += ".TP\n" + bold(std::to_string(static_cast<int>(code))) + "\n" + escaped(text) + "\n";
    }
    page += ".SH ENVIRONMENT\n.TP\n" + bold("NO_COLOR") + "\n" +
            escaped("If set to anything, the progress on the terminal has no colour.") + "\n";
    return page;
}

} // namespace orva::program
