// Memory runs out at every point of every operation, once for a moment and once for good. Each time the caller gets
// std::bad_alloc with its text, inputs and output are what the headers promise, nothing is lost, and the same call
// right afterwards gives the full result, bit for bit.
//
// Not among the points: what the scheduler takes for its own tasks and threads, and, in the parallel union, what the
// merges take on its threads; a merge that fails is documented to leave the call waiting. There the points are those of
// the calling thread.
#include "figures.hpp"
#include "operations.hpp"
#include "seam.hpp"

#include <tbb/task_arena.h>

#include <algorithm>
#include <ostream>
#include <set>
#include <string>

#ifndef ORVA_TEST_PART
#define ORVA_TEST_PART 1 // one point of so many where every step is watched (tests/sanitize)
#endif

namespace orva::test {

namespace {

// ---- what is called, and with what ----

struct Scene {
    Mesh a;
    std::vector<Mesh> others; ///< the first one alone for two meshes
};

Scene boxes() {
    return {unitCube(),
            {box({0.25, 0.25, 0.5}, {0.75, 0.75, 1.5}), box({-0.5, 0.1, 0.1}, {0.5, 0.4, 0.4}),
             box({0.6, -1, 0.2}, {0.8, 2, 0.3})}};
}

Scene spheres(int level) {
    return {icosphere(level, {0, 0, 0}, 1),
            {icosphere(level, {0.31, 0.17, 0.23}, 0.9), icosphere(0, {-0.9, 0.1, 0.2}, 0.5),
             icosphere(1, {0.2, -0.3, 0.8}, 0.6)}};
}

// One face of more than a thousand triangles: its node is clipped as a task of its own.
Scene heavyFace() {
    const auto withAHeavyFace = [](const Vec3& low, const Vec3& high) {
        Mesh mesh = griddedBox(low, high, 23);
        mesh.vertices.resize(std::size_t{23} * 23 * 6); // the first face
        const Mesh coarse = box(low, high);
        mesh.vertices.insert(mesh.vertices.end(), coarse.vertices.begin() + 6, coarse.vertices.end());
        return mesh;
    };
    return {withAHeavyFace({0, 0, 0}, {1, 1, 1}),
            {withAHeavyFace({0.25, 0.25, -0.5}, {0.75, 0.75, 0.5}), box({0.1, 0.1, -0.5}, {0.2, 0.2, 2})}};
}

struct Operation {
    const char* name;
    const TwoMeshOperation* twoMesh;
    const BatchOperation* batch;
};

const Operation operations[] = {
    {"Union", &unite, nullptr},
    {"Subtract", &subtract, nullptr},
    {"Intersect", &intersect, nullptr},
    {"SubtractInTurn", nullptr, &subtractInTurn},
    {"SubtractUnion", nullptr, &subtractUnion},
    {"SubtractUnionParallel", nullptr, &subtractUnionParallel},
};

struct Size {
    const char* name;
    Scene (*scene)();
    long points; ///< how many to try where not all are
};

const Size sizes[] = {
    {"Boxes", boxes, 400},
    {"Spheres", [] { return spheres(1); }, 100},
    {"LongLists", [] { return spheres(2); }, 24}, // divided as hierarchies
    {"HeavyFace", heavyFace, 48},
};

// ---- one call ----

struct Attempt {
    bool threw = false;
    std::string text;
    Mesh output;           ///< what is in it after the call
    bool kept = false;     ///< it is what it was before the call
    bool newCount = false; ///< a C record with the count of the result beside its old array
};

void call(const Operation& operation, const Scene& scene, Mesh& output) {
    if (operation.twoMesh != nullptr) return operation.twoMesh->cpp(output, scene.a, scene.others.front());
    operation.batch->cpp(output, scene.a, scene.others);
}

// Appends to one vertex that is there already: so memory for the output is taken twice, the second time when all but
// the last vertex have been appended.
Attempt attemptCpp(const Operation& operation, const Scene& scene, const Plan& plan) {
    const Mesh before{{at(1, 2, 3)}};
    Attempt attempt;
    Mesh output = before;
    {
        Armed armed(plan);
        try {
            call(operation, scene, output);
        } catch (const std::bad_alloc& exception) {
            armed.end();
            attempt.threw = true;
            attempt.text = exception.what();
        }
    }
    attempt.output = output; // a copy: this one's storage is not the library's
    attempt.kept = sameBits(output, before);
    return attempt;
}

Attempt attemptC(const Operation& operation, const Scene& scene, const Plan& plan, std::size_t fullCount) {
    const MeshD a = viewOf(scene.a);
    std::vector<MeshD> others;
    for (const Mesh& other : scene.others) others.push_back(viewOf(other));
    const std::vector<MeshD> othersBefore = others;
    VertexD old{};
    MeshD output{7, &old};
    Attempt attempt;
    {
        Armed armed(plan);
        try {
            if (operation.twoMesh != nullptr) {
                operation.twoMesh->c(&output, &a, others.data());
            } else {
                operation.batch->c(&output, &a, others.data(), static_cast<std::int32_t>(others.size()));
            }
        } catch (const std::bad_alloc& exception) {
            armed.end();
            attempt.threw = true;
            attempt.text = exception.what();
        }
    }
    EXPECT_EQ(a.vertices, viewOf(scene.a).vertices);
    EXPECT_EQ(a.count, viewOf(scene.a).count);
    for (std::size_t i = 0; i < others.size(); ++i) {
        EXPECT_EQ(others[i].vertices, othersBefore[i].vertices);
        EXPECT_EQ(others[i].count, othersBefore[i].count);
    }
    if (output.vertices == &old) {
        attempt.kept = output.count == 7;
        attempt.newCount = output.count == static_cast<std::int32_t>(fullCount);
    } else if (!attempt.threw) {
        attempt.output = meshOf(output);
        orva_meshd_free_vertices(output.vertices);
    }
    return attempt;
}

bool startsWith(const Mesh& whole, const Mesh& part) {
    if (part.vertices.size() > whole.vertices.size()) return false;
    for (std::size_t i = 0; i < part.vertices.size(); ++i) {
        if (!sameBits(whole.vertices[i], part.vertices[i])) return false;
    }
    return true;
}

std::uint64_t hashOf(const Scene& scene) {
    BitHash hash;
    hash.add(scene.a);
    for (const Mesh& other : scene.others) hash.add(other);
    return hash.value();
}

// ---- all points ----

// The points to try, of `count`: the first ones, the last ones, and some in between.
std::set<long> choose(long count, long atMost, std::uint64_t seed) {
    std::set<long> chosen;
    if (count <= atMost) {
        for (long point = 1; point <= count; ++point) chosen.insert(point);
        return chosen;
    }
    for (long i = 0; i < atMost / 4; ++i) chosen.insert({i + 1, count - i});
    Random random(seed);
    while (static_cast<long>(chosen.size()) < atMost) chosen.insert(random.integer(1, static_cast<int>(count)));
    return chosen;
}

struct Subject {
    Operation operation;
    Size size;
    bool c;
};

std::string nameOf(const Subject& subject) {
    return std::string(subject.operation.name) + (subject.c ? "C" : "Cpp") + subject.size.name;
}

void PrintTo(const Subject& subject, std::ostream* stream) {
    *stream << nameOf(subject);
}

class EveryAllocation : public testing::TestWithParam<Subject> {
protected:
    EveryAllocation() : scene_(GetParam().size.scene()) {}

    bool parallelUnion() const { return GetParam().operation.batch == &subtractUnionParallel; }

    Attempt attempt(const Plan& plan) {
        const Subject& subject = GetParam();
        if (!subject.c) return attemptCpp(subject.operation, scene_, plan);
        return attemptC(subject.operation, scene_, plan, full_.vertices.size());
    }

    // The parallel union merges its cutters on other threads: none of one cutter, in a fixed order those of two.
    void limitCutters(std::size_t count) {
        if (GetParam().operation.batch == &subtractUnionParallel) scene_.others.resize(count);
    }

    // Sets up the scheduler, the result to expect and the number of points.
    void measure(bool otherThreads) {
        inputs_ = hashOf(scene_);
        const long before = live();
        full_ = attempt({}).output;
        const Attempt counted = attempt({0, false, otherThreads});
        ASSERT_FALSE(counted.threw);
        ASSERT_TRUE(sameBits(counted.output, full_));
        ASSERT_GT(full_.vertices.size(), 1U);
        ASSERT_EQ(live(), before);
        count_ = points();
        ASSERT_GT(count_, 0);
    }

    // Fails the allocations of the plan, looks at everything that is promised, and calls again with nothing failing.
    // `certain`: the last point of a call is point count_, in every run.
    void fail(const Plan& plan, bool certain) {
        const long before = live();
        const Attempt failed = attempt(plan);
        const long refused = refusals();
        failures_ += static_cast<std::uint64_t>(refused > 0);
        ASSERT_EQ(live(), before) << "blocks lost";
        ASSERT_EQ(hashOf(scene_), inputs_) << "an input has changed";
        ASSERT_EQ(failed.threw, refused > 0);
        if (certain) {
            ASSERT_EQ(failed.threw, plan.first <= count_);
        }
        if (failed.threw) {
            ASSERT_EQ(failed.text, "bad allocation");
            expectOutputAsPromised(failed, plan, certain);
        } else {
            ASSERT_TRUE(sameBits(failed.output, full_));
        }
        const Attempt again = attempt({});
        ASSERT_FALSE(again.threw);
        ASSERT_TRUE(sameBits(again.output, full_));
        ASSERT_EQ(live(), before) << "blocks lost by the second call";
    }

    void expectOutputAsPromised(const Attempt& failed, const Plan& plan, bool certain) {
        const bool c = GetParam().c;
        if (!certain) {
            ASSERT_TRUE(failed.kept || (c ? failed.newCount : startsWith(full_, failed.output)));
        } else if (plan.first < (c ? count_ : count_ - 1)) {
            ASSERT_TRUE(failed.kept);
        } else if (c) { // the array itself: the record has the new count beside its old array
            ASSERT_TRUE(failed.newCount);
        } else { // its appending failed: at first with nothing appended, then with all but the last vertex
            ASSERT_EQ(failed.kept, plan.first < count_);
            ASSERT_TRUE(startsWith(full_, failed.output));
        }
    }

    void failAtMost(long atMost, bool otherThreads, bool certain) {
        constexpr std::uint64_t seed = 20;
        for (const long point : choose(count_, std::max(atMost / ORVA_TEST_PART, 2L), seed)) {
            for (const bool onwards : {false, true}) {
                SCOPED_TRACE("allocation " + std::to_string(point) + " of " + std::to_string(count_) +
                             (onwards ? " and all later ones" : "") + ", seed " + std::to_string(seed));
                fail({point, onwards, otherThreads}, certain);
                if (HasFatalFailure()) return;
            }
        }
    }

    void report(const std::string& how) {
        const std::string name = "allocation." + nameOf(GetParam()) + "." + how;
        figure(name + ".points", static_cast<std::uint64_t>(count_));
        figure(name + ".failures", failures_);
    }

    Scene scene_;
    std::uint64_t inputs_ = 0;
    Mesh full_;
    long count_ = 0;
    std::uint64_t failures_ = 0;
};

#if !defined(__SANITIZE_THREAD__) // one thread has no races to show

// All on the calling thread, where the allocations of a call are the same ones every time.
TEST_P(EveryAllocation, FailsInOneThread) {
    limitCutters(1);
    tbb::task_arena alone(1);
    alone.execute([&] {
        measure(true);
        if (HasFatalFailure()) return;
        failAtMost(longForm() ? count_ : GetParam().size.points, true, true);
        if (HasFatalFailure()) return;
        fail({count_ + 1, true, true}, true); // there are no more
    });
    report("one-thread");
}

#endif

TEST_P(EveryAllocation, FailsInTwoThreads) {
    limitCutters(2);
    withAWorker([&] {
        measure(!parallelUnion());
        if (HasFatalFailure()) return;
        // Most points are those of one thread once more, now with others at work that have to stop. New ones has the
        // parallel union of two.
        const long sample = GetParam().size.points;
        failAtMost(!longForm() ? sample / 4 : parallelUnion() ? count_ : 10 * sample, !parallelUnion(), false);
    });
    report("two-threads");
}

std::vector<Subject> subjects() {
    std::vector<Subject> all;
    for (const Operation& operation : operations) {
        for (const Size& size : sizes) {
            for (const bool c : {false, true}) all.push_back({operation, size, c});
        }
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(All, EveryAllocation, testing::ValuesIn(subjects()),
                         [](const testing::TestParamInfo<Subject>& each) { return nameOf(each.param); });

} // namespace

} // namespace orva::test
