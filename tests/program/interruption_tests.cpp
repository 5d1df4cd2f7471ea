// Ctrl-C leaves nothing behind.
#include "files/name.hpp"
#include "files/temporary.hpp"
#include "program.hpp"
#include "samples.hpp"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace orva::program {
namespace {

class Interruption : public ProgramTest {
protected:
    const std::string out = file("out.stl");

    // Many triangles in few bytes: quick to read, long to write.
    std::string manyTriangles() const {
        std::string text = "OFF\n3 1500000 0\n0 0 0\n1 0 0\n0 1 0\n";
        for (int i = 0; i < 1500000; ++i) text += "3 0 1 2\n";
        return file("many.off", text);
    }

    bool temporaryIsThere() const {
        for (const std::string& name : files()) {
            if (name.starts_with(".orva-")) return true;
        }
        return false;
    }

    static void expectInterrupted(const Outcome& run) {
        EXPECT_EQ(run.exitCode, 130);
        EXPECT_EQ(run.errors, "orva: interrupted\n");
        EXPECT_EQ(run.output, "");
    }
};

TEST_F(Interruption, WhileTheFileIsWritten) {
    const std::string many = manyTriangles();
    // The program may be through, or as good as, before the signal reaches it: then the file is whole.
    int interrupted = 0;
    bool reached = true;
    for (int attempt = 0; attempt < 50 && interrupted < 2; ++attempt) {
        std::filesystem::remove(out);
        const Outcome run = orvaWhile({"convert", many, "-o", out}, [&](const Process& process) {
            while (!temporaryIsThere() && !std::filesystem::exists(out)) std::this_thread::yield();
            reached = process.interrupt();
        });
        EXPECT_FALSE(temporaryIsThere());
        if (!reached) GTEST_SKIP() << "no console to interrupt with";
        if (std::filesystem::exists(out)) {
            EXPECT_EQ(std::filesystem::file_size(out), 84U + 1500000U * 50U);
            continue;
        }
        ++interrupted;
        expectInterrupted(run);
        EXPECT_EQ(files(), std::vector<std::string>{"many.off"});
    }
    EXPECT_EQ(interrupted, 2);
}

// The same from inside, where no console is needed: a file that is being written, and one that is all there.
TEST_F(Interruption, TakesTemporaryFilesAway) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    // In a process of its own, which has a folder of its own, too, and has to see for itself.
    const auto end = [this] {
        const TemporaryFile begun(pathOf(out));
        TemporaryFile written(pathOf(file("other.stl")));
        written.write("all of it");
        const bool there = files().size() == 2;
        TemporaryFile::removeAll();
        const bool gone = files().empty();
        std::filesystem::remove_all(pathOf(out).parent_path().parent_path());
        std::_Exit(there && gone ? 130 : 1);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(130), "");
}

#ifndef _WIN32

// A pipe that nobody writes to keeps the program where it is.
class InterruptionWhileReading : public Interruption {
protected:
    const std::string pipe = file("pipe.off");
    void SetUp() override { ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0); }

    // Opening a pipe for writing waits for its reader: then the program is at work, and stays so until the pipe is
    // closed.
    Outcome interruptBy(int signal, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments{"convert", pipe, "-o", out};
        arguments.insert(arguments.end(), options.begin(), options.end());
        std::ofstream writer;
        return orvaWhile(arguments, [&](const Process& process) {
            writer.open(pipe);
            process.send(signal);
        });
    }
};

TEST_F(InterruptionWhileReading, ByEverySignalThatAsksForTheEnd) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) expectInterrupted(interruptBy(signal));
    EXPECT_EQ(files(), std::vector<std::string>{"pipe.off"});
}

TEST_F(InterruptionWhileReading, LeavesAnOldFile) {
    const std::string old = file("out.stl", "old");
    expectInterrupted(interruptBy(SIGINT, {"--force"}));
    EXPECT_EQ(contentOf(old), "old");
}

TEST_F(InterruptionWhileReading, NotBySignalsThatAreIgnored) {
    // As nohup does it.
    const Outcome run = orvaAfter("trap '' HUP", {"convert", pipe, "-o", out}, [this](const Process& process) {
        const std::ofstream writer(pipe);
        process.send(SIGHUP);
    });
    EXPECT_EQ(run.exitCode, 3); // the pipe ended with nothing in it
}

TEST_F(Interruption, WhileTheLibraryWorks) {
    // Needles through a block in all directions cut each other into pieces without end.
    std::vector<std::string> arguments{"union"};
    for (int i = 0; i < 40; ++i) {
        std::vector<Triangle> triangles;
        for (int k = 0; k < 40; ++k) {
            const double t = 0.1 * i + 0.37 * k;
            for (Triangle triangle : boxTriangles({t, 0, 0}, {t + 0.3, 20, 20})) {
                for (Vec3& p : triangle) p = {p.x + 0.03 * i * p.y, p.y + 0.02 * k * p.z, p.z + 0.01 * i * p.x};
                triangles.push_back(triangle);
            }
        }
        arguments.push_back(
            file("needles-" + std::to_string(i) + ".off", writeAs(formatOf("a.off").write, meshOf(triangles))));
    }
    const std::size_t before = files().size();
    arguments.insert(arguments.end(), {"-o", out, "-q"});
    const Outcome run = orvaWhile(arguments, [](const Process& process) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        process.interrupt();
    });
    expectInterrupted(run);
    EXPECT_EQ(files().size(), before);
}

#endif

} // namespace
} // namespace orva::program
