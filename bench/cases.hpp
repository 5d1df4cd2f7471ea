// What is measured: series of jobs, each series one kind of work on inputs that grow.
#pragma once

#include "orva/types.hpp"

#include <functional>
#include <string>
#include <vector>

namespace orva::bench {

using Mesh = types::Mesh<double>;

enum class Operation { Union, Difference, Intersection, InTurn, AsUnion, ParallelUnion };

const char* nameOf(Operation operation);

struct Job {
    std::string series; ///< without a comma: the first column of the table
    std::string size;   ///< which of the series
    Operation operation;
    std::function<std::vector<Mesh>()> inputs; ///< a and b, or the base and its cutters; made when its turn comes

    std::string name() const { return series + "/" + size + "/" + nameOf(operation); }
};

/// In each series and operation the smaller come first. `meshes` is the folder with the OFF files.
std::vector<Job> allJobs(const std::string& meshes);

/// Throws std::runtime_error where there is none.
Job jobNamed(const std::string& name, const std::string& meshes);

} // namespace orva::bench
