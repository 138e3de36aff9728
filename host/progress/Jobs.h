#pragma once

/// @file
/// Work that several threads share.

#include <cstddef>
#include <functional>

namespace quilon {

/// @return the number of processors that this process may use, at least 1
std::size_t CountCores() noexcept;

/// Does a part of the work, by its number.
using Worker = std::function<void(std::size_t part)>;

/// Does parts of work on threads of their own, each of which makes a worker first: workers share nothing that changes.
/// Parts are given out in ascending order, so whoever keeps their results by number has them in one order for any
/// number of jobs.
///
/// What a worker throws ends the work: parts behind it are not begun any more, those before it are finished, and the
/// failure of the lowest part is thrown here, the same for any number of jobs.
/// @param jobs       threads, this one included, which is the first; 0 counts as 1
/// @param parts      how many there are
/// @param makeWorker called once in each thread
/// @param onPart     called in this thread now and then with the number of parts that are done; may be empty
void ShareWork(std::size_t jobs, std::size_t parts, const std::function<Worker()>& makeWorker,
               const std::function<void(std::size_t done)>& onPart = {});

}  // namespace quilon
