// man and completion: the command line about itself.
#include "verbs/interface.hpp"
#include "verbs/options.hpp"
#include "verbs/verbs.hpp"

#include <memory>
#include <string>

namespace orva::program {

namespace {

// A parser of its own: the one that was parsed with is gone when the command runs.
std::string about(std::string (*describe)(const CLI::App& app)) {
    CLI::App app;
    Command ignored;
    addVerbs(app, ignored);
    return describe(app);
}

} // namespace

void addMan(CLI::App& app, Command& command) {
    CLI::App* verb = app.add_subcommand("man", "The manual page, in roff.");
    verb->footer("Example:\n  orva man > orva.1 && man -l orva.1");
    verb->callback([&command] { command = commandOf("man", {}, [](Run& run) { run.report.text = about(manPage); }); });
}

void addCompletion(CLI::App& app, Command& command) {
    const auto shell = std::make_shared<std::string>();
    CLI::App* verb = app.add_subcommand("completion", "A script with which a shell completes what is typed.");
    verb->add_option("SHELL", *shell, "whose script")
        ->required()
        ->type_name("SHELL")
        ->check(CLI::IsMember({"bash", "zsh"}));
    verb->footer("Example:\n  orva completion bash > ~/.local/share/bash-completion/completions/orva\n"
                 "  orva completion zsh > \"${fpath[1]}/_orva\"");
    verb->callback([shell, &command] {
        command = commandOf("completion", {}, [shell](Run& run) {
            run.report.text = about(*shell == "bash" ? bashCompletion : zshCompletion);
        });
    });
}

} // namespace orva::program
