// Ctrl-C leaves nothing behind.
#include "program.hpp"
#include "samples.hpp"

#include <chrono>
#include <csignal>
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
    // The program may be through before the signal reaches it: then the file is whole.
    int interrupted = 0;
    for (int attempt = 0; attempt < 50 && interrupted < 2; ++attempt) {
        std::filesystem::remove(out);
        const Outcome run = orvaWhile({"convert", many, "-o", out}, [this](const Process& process) {
            while (!temporaryIsThere() && !std::filesystem::exists(out)) std::this_thread::yield();
            process.interrupt();
        });
        EXPECT_FALSE(temporaryIsThere());
        if (run.exitCode == 0) {
            EXPECT_EQ(std::filesystem::file_size(out), 84U + 1500000U * 50U);
            continue;
        }
        ++interrupted;
        expectInterrupted(run);
        EXPECT_EQ(files(), std::vector<std::string>{"many.off"});
    }
    EXPECT_EQ(interrupted, 2);
}

#ifndef _WIN32

// A pipe that nobody writes to keeps the program where it is.
class InterruptionWhileReading : public Interruption {
protected:
    const std::string pipe = file("pipe.off");
    void SetUp() override { ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0); }

    // Opening a pipe for writing waits for its reader: then the program is at work.
    Outcome interruptBy(int signal, const std::string& preparation = ":") const {
        return orvaAfter(preparation, {"convert", pipe, "-o", out}, [this, signal](const Process& process) {
            std::ofstream writer(pipe);
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
    const Outcome run = orvaWhile({"convert", pipe, "-o", out, "--force"}, [this](const Process& process) {
        std::ofstream writer(pipe);
        process.interrupt();
    });
    expectInterrupted(run);
    EXPECT_EQ(contentOf(old), "old");
}

TEST_F(InterruptionWhileReading, NotBySignalsThatAreIgnored) {
    const Outcome run = interruptBy(SIGHUP, "trap '' HUP"); // as nohup does
    EXPECT_EQ(run.exitCode, 3);                             // the pipe ended with nothing in it
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
