#pragma once

/// @file
/// How calls from Python run.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/pybind11.h>

#include "progress/Interrupt.h"
#include "progress/Listener.h"

namespace quilon::python {

namespace py = pybind11;

/// @return whether this is the thread in which Python handles signals
bool HandlesSignals();

/// Raises what the handler of a signal raised, KeyboardInterrupt where it raised nothing.
[[noreturn]] void ThrowInterrupt();

/// Runs work that may take long: without the interpreter's lock, stopped by Ctrl-C.
template <typename Function>
auto Work(Function&& function)
{
  try {
    if (!HandlesSignals()) {
      const py::gil_scoped_release released;
      return function();
    }
    const InterruptWatch         watch;
    const py::gil_scoped_release released;
    return function();
  } catch (const Interrupted&) {
    ThrowInterrupt();
  }
}

/// The metaclass of our classes: type, as a stub says.
inline py::metaclass PlainType() { return py::metaclass(reinterpret_cast<PyObject*>(&PyType_Type)); }

/// Hands progress to a Python function and keeps notes until the call is over.
class CallListener final : public Listener
{
public:
  /// @param progress function(phase, done, total), or None
  explicit CallListener(py::object progress) : progress_(std::move(progress)) {}

  void Note(const std::string& message) override { notes_.push_back(message); }

  /// Called without the interpreter's lock. What the function raises stops the work.
  void Progress(const std::string& phase, std::uint64_t done, std::uint64_t total, const std::string& unit) override;

  const std::vector<std::string>& GetNotes() const noexcept { return notes_; }

private:
  py::object               progress_;
  std::vector<std::string> notes_;
};

}  // namespace quilon::python
