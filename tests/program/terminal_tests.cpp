// The progress as a person sees it, on a real terminal: tmux's.
#include "program.hpp"
#include "samples.hpp"

#ifndef _WIN32

#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <sys/stat.h>
#include <thread>

namespace orva::program {
namespace {

std::string outputOf(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return output;
    std::array<char, 4096> piece{};
    for (std::size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), pipe)) > 0;) {
        output.append(piece.data(), size);
    }
    pclose(pipe);
    return output;
}

// The program waits in a terminal of 70 columns for a pipe to tell it something: that takes over a second.
class Terminal : public ProgramTest {
protected:
    const std::string pipe = file("pipe.off");
    const std::string out = file("out.off");
    const std::string tmux = "tmux -S '" + file("socket") + "' -f /dev/null ";

    void SetUp() override { ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0); }
    void TearDown() override { outputOf(tmux + "kill-server 2>&1"); }

    void begin(const std::string& environment, const std::string& options = "") const {
        // Ctrl-C reaches the shell, too, which has to outlive it.
        const std::string command = "trap : INT; " + environment + " '" + programFile() + "' convert '" + pipe +
                                    "' -o '" + out + "' " + options + "; echo exit code $?; exec cat";
        const std::string script = file("run.sh", command);
        EXPECT_EQ(outputOf(tmux + "new-session -d -x 70 -y 10 'sh " + script + "' 2>&1"), "");
    }

    // With the escape sequences that make colours.
    std::string screen() const { return outputOf(tmux + "capture-pane -p -e 2>&1"); }

    // Looks until `text` is to be seen, for as long as a busy machine may take.
    std::string screenWith(const std::string& text) const {
        std::string seen;
        for (int i = 0; i < 600 && seen.find(text) == std::string::npos; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            seen = screen();
        }
        EXPECT_NE(seen.find(text), std::string::npos) << seen;
        return seen;
    }

    void feed() const { std::ofstream(pipe) << boxFile({0, 0, 0}, {1, 1, 1}); }
};

TEST_F(Terminal, ShowsWhatTakesLongAndLeavesNothingOfIt) {
    begin("TERM=xterm");
    const std::string during = screenWith("orva: reading ");
    EXPECT_NE(during.find("pipe.off  0:0"), std::string::npos) << during;
    feed();
    const std::string after = screenWith("exit code");
    EXPECT_TRUE(after.starts_with("exit code 0\n")) << after; // in the first line: the progress line is gone
    EXPECT_EQ(after.find("orva"), std::string::npos) << after;
    EXPECT_EQ(contentOf(out), contentOf(file("in.off", boxFile({0, 0, 0}, {1, 1, 1}))));
}

TEST_F(Terminal, InterruptedIsLeftClean) {
    begin("TERM=xterm");
    screenWith("orva: reading ");
    outputOf(tmux + "send-keys C-c");
    const std::string after = screenWith("exit code");
    EXPECT_TRUE(after.starts_with("orva: interrupted\nexit code 130\n")) << after;
    EXPECT_EQ(files(), (std::vector<std::string>{"pipe.off", "run.sh", "socket"}));
}

TEST_F(Terminal, QuietShowsNothing) {
    begin("TERM=xterm", "-q & sleep 2; echo looked");
    const std::string seen = screenWith("looked");
    EXPECT_EQ(seen.find("reading"), std::string::npos) << seen;
    feed();
    screenWith("exit code");
}

} // namespace
} // namespace orva::program

#endif
