#include "Work.h"

namespace quilon::python {

bool HandlesSignals()
{
  const py::module_ threading = py::module_::import("threading");
  return threading.attr("get_ident")().equal(threading.attr("main_thread")().attr("ident"));
}

void ThrowInterrupt()
{
  if (PyErr_CheckSignals() == 0) PyErr_SetNone(PyExc_KeyboardInterrupt);
  throw py::error_already_set();
}

void CallListener::Progress(const std::string& phase, std::uint64_t done, std::uint64_t total, const std::string&)
{
  const py::gil_scoped_acquire acquired;
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  if (!progress_.is_none()) progress_(phase, done, total);
}

}  // namespace quilon::python
