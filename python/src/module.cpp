#include <exception>

#include <pybind11/pybind11.h>

#include "Answers.h"
#include "Block.h"
#include "Database.h"
#include "Fields.h"
#include "QuilonUtilities/FED_Failure.h"
#include "Reports.h"
#include "Tensors.h"
#include "Text.h"
#include "Views.h"

namespace {

namespace py = pybind11;

/// A failed check becomes an exception of the package, which finds file and line in the message.
void Translate(std::exception_ptr exception)
{
  try {
    if (exception) std::rethrow_exception(exception);
  } catch (const FED_Exception& failure) {
    const py::object error =
        py::module_::import("quilon._errors").attr("from_message")(quilon::python::TextOf(failure.what()));
    PyErr_SetObject(py::type::of(error).ptr(), error.ptr());
  }
}

}  // namespace

PYBIND11_MODULE(_native, module)
{
  module.doc()           = "The functions behind the package; use the package.";
  module.attr("version") = QUILON_VERSION;
  py::register_exception_translator(&Translate);
  quilon::python::DefineDatabase(module);
  quilon::python::DefineBlock(module);
  quilon::python::DefineFields(module);
  quilon::python::DefineTensors(module);
  quilon::python::DefineImport(module);
  quilon::python::DefineDiff(module);
  quilon::python::DefineAnswers(module);
  quilon::python::DefineViews(module);
}
