// Outputs are all or nothing.
#include "files/name.hpp"
#include "formats/off.hpp"
#include "program.hpp"
#include "samples.hpp"

#include <fstream>

#ifdef _WIN32
#include <windows.h>
#endif

namespace orva::program {
namespace {

namespace fs = std::filesystem;

class Output : public ProgramTest {
protected:
    const std::string in = file("in.off", boxFile({0, 0, 0}, {1, 1, 1}));

    Outcome convertTo(const std::string& out) const { return orva({"convert", in, "-o", out, "--force"}); }
};

TEST_F(Output, LeavesAnOldFileAlone) {
    const std::string out = file("out.off", "old");
    expectFailure(orva({"convert", in, "-o", out}), 6, out + ": exists already; use --force to replace it");
    EXPECT_EQ(contentOf(out), "old");
    EXPECT_EQ(files(), (std::vector<std::string>{"in.off", "out.off"}));
}

TEST_F(Output, ReplacesAnOldFileByForce) {
    const std::string out = file("out.off", std::string(100000, 'x'));
    EXPECT_EQ(convertTo(out).exitCode, 0);
    EXPECT_EQ(contentOf(out), contentOf(in));
    EXPECT_EQ(files(), (std::vector<std::string>{"in.off", "out.off"}));
}

TEST_F(Output, KeepsTheOldFileWhenTheInputIsBroken) {
    const std::string out = file("out.off", "old");
    EXPECT_EQ(orva({"convert", file("broken.off", "OFF 1 1 0 0"), "-o", out, "--force"}).exitCode, 3);
    EXPECT_EQ(contentOf(out), "old");
    EXPECT_EQ(files(), (std::vector<std::string>{"broken.off", "in.off", "out.off"}));
}

TEST_F(Output, FolderThatIsMissing) {
    const std::string out = file("missing/out.off");
    expectFailure(convertTo(out), 6,
                  out + ": there is no folder " + nameOf(pathOf(out).parent_path()) + "; make it first");
}

TEST_F(Output, FolderInItsPlace) {
    const std::string out = file("folder.off");
    fs::create_directory(pathOf(out));
    expectFailure(convertTo(out), 6, out + ": this is a folder; name a file in it");
}

TEST_F(Output, OldFileIsWriteProtected) {
    const std::string out = file("out.off", "old");
    constexpr fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    fs::permissions(pathOf(out), write, fs::perm_options::remove);
    expectFailure(convertTo(out), 6,
                  out + ": the file there is write-protected; choose another name or make it writable");
    EXPECT_EQ(contentOf(out), "old");
    fs::permissions(pathOf(out), write, fs::perm_options::add); // so that it can be removed
}

TEST_F(Output, IsFoundUnwritableBeforeTheInputIsRead) {
    const std::string out = file("missing/out.off");
    EXPECT_EQ(orva({"convert", file("missing.off"), "-o", out}).exitCode, 6);
}

TEST_F(Output, InTheCurrentFolder) {
    const fs::path before = fs::current_path();
    fs::current_path(pathOf(in).parent_path());
    const Outcome run = convertTo("out.off");
    fs::current_path(before);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    EXPECT_EQ(contentOf(file("out.off")), contentOf(in));
}

#ifdef _WIN32

TEST_F(Output, OldFileIsInUse) {
    const std::string out = file("out.off", "old");
    HANDLE user = CreateFileW(pathOf(out).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    const Outcome run = convertTo(out);
    CloseHandle(user);
    EXPECT_EQ(run.exitCode, 6);
    EXPECT_TRUE(run.errors.starts_with("orva: " + out + ": cannot be replaced: ")) << run.errors;
    EXPECT_TRUE(run.errors.ends_with("; close it in other programs or choose another name\n")) << run.errors;
    EXPECT_EQ(contentOf(out), "old");
    EXPECT_EQ(files(), (std::vector<std::string>{"in.off", "out.off"}));
}

#else

TEST_F(Output, DiskIsFull) {
    const std::string out = file("out.off", "old");
    const std::string big = file(
        "big.off", "OFF 1 1 0 0.1 0.2 0.3\n" + std::string("20001") + [] {
            std::string corners;
            for (int i = 0; i < 20001; ++i) corners += " 0";
            return corners;
        }());
    // A file-size limit, met with an error instead of the signal, is the full disk that every machine has.
    expectFailure(orvaAfter("trap '' XFSZ; ulimit -f 8", {"convert", big, "-o", out, "--force"}), 6,
                  out + ": writing failed: File too large; nothing was changed, check the space on the disk");
    EXPECT_EQ(contentOf(out), "old");
    EXPECT_EQ(files(), (std::vector<std::string>{"big.off", "in.off", "out.off"}));
}

TEST_F(Output, FolderThatTakesNoFiles) {
    expectFailure(convertTo("/proc/out.off"), 6,
                  "/proc/out.off: cannot write to its folder: No such file or directory; check its permissions");
}

TEST_F(Output, NoOrdinaryFileInItsPlace) {
    const std::string out = file("null.off");
    fs::create_symlink("/dev/null", out);
    expectFailure(convertTo(out), 6, out + ": this is no ordinary file; choose another name");
}

TEST_F(Output, KeepsTheOldFilesRights) {
    const std::string out = file("out.off", "old");
    fs::permissions(out, fs::perms{0640});
    EXPECT_EQ(convertTo(out).exitCode, 0);
    EXPECT_EQ(fs::status(out).permissions(), fs::perms{0640});
}

TEST_F(Output, FollowsALink) {
    const std::string real = file("real.off", "old");
    const std::string link = file("link.off");
    fs::create_symlink("real.off", link);
    EXPECT_EQ(convertTo(link).exitCode, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(contentOf(real), contentOf(in));
}

TEST_F(Output, LongestNamePossible) {
    const std::string out = file(std::string(251, 'n') + ".off");
    EXPECT_EQ(convertTo(out).exitCode, 0);
    EXPECT_EQ(contentOf(out), contentOf(in));
}

#endif

} // namespace
} // namespace orva::program
