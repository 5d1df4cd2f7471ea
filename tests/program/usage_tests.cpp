// The command line: help, version, and what it does not take.
#include "program.hpp"
#include "verbs/verbs.hpp"

namespace orva::program {
namespace {

class Usage : public ProgramTest {
protected:
    static std::vector<std::string> verbs() {
        CLI::App app;
        Command command;
        addVerbs(app, command);
        std::vector<std::string> names;
        for (const CLI::App* verb : app.get_subcommands({})) names.push_back(verb->get_name());
        EXPECT_GE(names.size(), 5U);
        return names;
    }
};

TEST_F(Usage, Version) {
    const Outcome run = orva({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "orva " ORVA_VERSION "\n");
    EXPECT_EQ(run.errors, "");
}

TEST_F(Usage, HelpNamesEveryVerb) {
    const Outcome run = orva({"--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    for (const std::string& verb : verbs()) {
        EXPECT_NE(run.output.find("\n  " + verb + " "), std::string::npos) << run.output;
    }
}

TEST_F(Usage, HelpOfEveryVerbHasAnExample) {
    for (const std::string& verb : verbs()) {
        const Outcome run = orva({verb, "--help"});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_NE(run.output.find("Example:\n  orva " + verb + " "), std::string::npos) << run.output;
    }
}

TEST_F(Usage, NoVerb) {
    std::string names;
    for (const std::string& verb : verbs()) names += (names.empty() ? "" : ", ") + verb;
    const std::string line = "name a verb: " + names + "; see orva --help";
    expectFailure(orva({}), 2, line);
    expectFailure(orva({"add", "a.off", "b.off"}), 2, line);
    expectFailure(orva({"-z"}), 2, line);
}

TEST_F(Usage, ArgumentsThatAreMissing) {
    expectFailure(orva({"union", "a.off", "-o", "c.off"}), 2, "B is required; see orva union --help");
    expectFailure(orva({"subtract", "a.off", "b.off"}), 2, "--output is required; see orva subtract --help");
    expectFailure(orva({"convert", "a.off", "-o", "b.off", "--move", "1", "2"}), 2,
                  "--move: 3 required X Y Z missing; see orva convert --help");
}

TEST_F(Usage, ArgumentsTooMany) {
    expectFailure(orva({"convert", "a.off", "b.off", "-o", "c.off"}), 2,
                  "The following argument was not expected: b.off; see orva convert --help");
    expectFailure(orva({"convert", "a.off", "-o", "b.off", "--fast"}), 2,
                  "The following argument was not expected: --fast; see orva convert --help");
}

TEST_F(Usage, MovesThatAreNoNumbers) {
    for (const std::string word : {"nan", "inf", "1e999"}) {
        expectFailure(orva({"convert", "a.off", "-o", "b.off", "--move", "0", word, "0"}), 2,
                      "--move: " + word + " is not a finite number; see orva convert --help");
    }
    EXPECT_EQ(orva({"convert", "a.off", "-o", "b.off", "--move", "0", "5m", "0"}).exitCode, 2);
}

TEST_F(Usage, QuietAndVerboseAtOnce) {
    expectFailure(orva({"union", "a.off", "b.off", "-o", "c.off", "-q", "-v"}), 2,
                  "--quiet excludes --verbose; see orva union --help");
}

} // namespace
} // namespace orva::program
