#include "Tensors.h"

#include <string>
#include <vector>

#include <bundled/OnfKinds.h>
#include <pybind11/stl.h>

#include "Arrays.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "Work.h"

namespace quilon::python {

namespace {

constexpr std::size_t kBatch = 4096;  // tensors between two looks for an interrupt

/// @param tensors shape [n, 6]
/// @return values [n, 3] and directions [n, 3, 3]; the latter without anything where they are not wanted
py::tuple PrincipalsOf(const Doubles& tensors, bool withDirections)
{
  const std::span<const double> data  = SpanOf(tensors);
  const std::size_t             count = data.size() / 6;
  std::vector<double>           values, directions;
  Work([&] {
    values.reserve(3 * count);
    if (withDirections) directions.reserve(9 * count);
    for (std::size_t i = 0; i < count; ++i) {
      if (i % kBatch == 0) ThrowIfInterrupted();
      const PrincipalAxes axes = PrincipalAxesOf(data.subspan(6 * i).first<6>());
      values.insert(values.end(), axes.values.begin(), axes.values.end());
      if (!withDirections) continue;
      for (const auto& direction : axes.directions)
        directions.insert(directions.end(), direction.begin(), direction.end());
    }
  });
  const auto rows = static_cast<py::ssize_t>(count);
  return py::make_tuple(ArrayOf(std::move(values), {rows, 3}),
                        ArrayOf(std::move(directions), {withDirections ? rows : 0, 3, 3}));
}

/// @param kind of the values; empty: a kind with so many components and no known quantity
int KindOf(const std::string& kind, std::size_t width)
{
  if (!kind.empty()) return KindTable().Resolve(kind);
  return width == 6 ? OnfKind::NodalStress : width == 3 ? OnfKind::Displacement : OnfKind::Temperature;
}

/// @param values shape [n, 1, 3 or 6]
Doubles ComponentOf(const Doubles& values, const std::string& name, const std::string& kind)
{
  const auto                    width = static_cast<std::size_t>(values.shape(1));
  const Component               component(name, KindOf(kind, width));
  const std::span<const double> data  = SpanOf(values);
  const auto                    count = static_cast<std::size_t>(values.shape(0));
  if (component.NumValues() != width)
    Fail("component '" + name + "' of " + kind + " is of " + std::to_string(component.NumValues()) +
         " numbers a row, found " + std::to_string(width));
  std::vector<double> result(count);
  Work([&] {
    for (std::size_t i = 0; i < count; ++i) {
      if (i % kBatch == 0) ThrowIfInterrupted();
      result[i] = component.Evaluate(data.subspan(i * width, width));
    }
  });
  return ArrayOf(std::move(result));
}

}  // namespace

void DefineTensors(py::module_& module)
{
  module.def("principal_values", &PrincipalsOf);
  module.def("component", &ComponentOf);
  module.def("component_names", [](const std::string& kind) { return ComponentNamesOf(KindTable().Resolve(kind)); });
}

}  // namespace quilon::python
