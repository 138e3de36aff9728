#include "Fields.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "Arrays.h"
#include "Database.h"
#include "FEM_AvgField.h"
#include "FEM_IforceData.h"
#include "QuilonDbConnector/FED_Database.h"
#include "text/Format.h"

namespace quilon::python {

namespace {

using FEM_AvgUtil::AvgData;
using FEM_AvgUtil::StatData;

/// Ids of a layer and a number for each of them and component.
struct LayerValues
{
  std::vector<int>    ids;
  std::vector<double> values;  // shape [ids, components]
};

/// An averaging field, whatever it keeps.
class Averages
{
public:
  virtual ~Averages() = default;

  /// @param values shape [ids, components]
  virtual void        Add(std::span<const int> ids, std::span<const double> values, int layer) = 0;
  virtual LayerValues Average(int layer) const                                                 = 0;
  virtual LayerValues Variance(int layer) const                                                = 0;
  virtual LayerValues Count(int layer) const                                                   = 0;
  virtual void        Reset()                                                                  = 0;
  virtual void Save(FED_Database& database, const FED_DataDescriptor& descriptor, FEM_AvgFieldDefs::LayerMode mode,
                    FEM_AvgFieldDefs::Operation operation) const                               = 0;
};

template <int N>
double MeanOf(const AvgData<N>& data, int k)
{
  return data.count > 0 ? data.sum[k] / data.count : 0.0;
}
template <int N>
double MeanOf(const StatData<N>& data, int k)
{
  return data.mean[k];
}
template <int N>
double VarianceOf(const AvgData<N>&, int)
{
  return 0.0;  // never asked for: see AverageField::Variance()
}
template <int N>
double VarianceOf(const StatData<N>& data, int k)
{
  return data.m2[k] / data.count;
}

template <typename Data, int N>
class AveragesOf final : public Averages
{
public:
  explicit AveragesOf(int numLayers) : field_(numLayers) {}

  void Add(std::span<const int> ids, std::span<const double> values, int layer) override
  {
    using Value                  = const double(&)[N];
    const double*         at     = values.data();
    constexpr std::size_t kBatch = std::size_t{1} << 16;
    for (std::size_t first = 0; first < ids.size(); first += kBatch) {
      ThrowIfInterrupted();
      for (const int id : ids.subspan(first, std::min(kBatch, ids.size() - first))) {
        field_.AddValue(id, layer, reinterpret_cast<Value>(*at));
        at += N;
      }
    }
  }

  LayerValues Average(int layer) const override
  {
    return Collect(layer, N, [](const Data& data, int k) { return MeanOf(data, k); });
  }
  LayerValues Variance(int layer) const override
  {
    return Collect(layer, N, [](const Data& data, int k) { return VarianceOf(data, k); });
  }
  LayerValues Count(int layer) const override
  {
    return Collect(layer, 1, [](const Data& data, int) { return static_cast<double>(data.count); });
  }

  void Reset() override { field_.ResetField(); }

  void Save(FED_Database& database, const FED_DataDescriptor& descriptor, FEM_AvgFieldDefs::LayerMode mode,
            FEM_AvgFieldDefs::Operation operation) const override
  {
    field_.SaveField(database, descriptor, mode, operation, true, nullptr);
  }

private:
  template <typename Compute>
  LayerValues Collect(int layer, int width, const Compute& compute) const
  {
    LayerValues       result;
    std::vector<Data> data;
    field_.DumpField(layer, result.ids, data);
    result.values.reserve(data.size() * static_cast<std::size_t>(width));
    for (const Data& entry : data)
      for (int k = 0; k < width; ++k) result.values.push_back(compute(entry, k));
    return result;
  }

  FEM_AvgField<int, Data, N> field_;
};

template <template <int> typename Data>
std::unique_ptr<Averages> MakeAverages(int components, int layers)
{
  switch (components) {
    case 1:
      return std::make_unique<AveragesOf<Data<1>, 1>>(layers);
    case 3:
      return std::make_unique<AveragesOf<Data<3>, 3>>(layers);
    case 6:
      return std::make_unique<AveragesOf<Data<6>, 6>>(layers);
    default:
      Fail("components is " + std::to_string(components) + ", expected 1, 3 or 6");
  }
}

/// What Python calls a field. Threads take turns.
class AverageField
{
  template <typename Function>
  auto Use(const Function& function) const
  {
    return Work([&] {
      const std::lock_guard lock(mutex_);
      return function();
    });
  }

public:
  AverageField(int components, bool statistics, int layers)
      : components_(components), layers_(layers), statistics_(statistics)
  {
    if (layers < 1) Fail("layers is " + std::to_string(layers) + ", expected 1 or more");
    averages_ = statistics ? MakeAverages<StatData>(components, layers) : MakeAverages<AvgData>(components, layers);
  }

  void Add(const Integers& ids, const Doubles& values, int layer)
  {
    RequireLayer(layer);
    const std::span<const int>    idSpan = SpanOf(ids);
    const std::span<const double> data   = SpanOf(values);
    if (data.size() != idSpan.size() * static_cast<std::size_t>(components_))
      Fail("values have " + Counted(data.size(), "number") + ", expected " +
           std::to_string(idSpan.size() * static_cast<std::size_t>(components_)));
    Use([&] { averages_->Add(idSpan, data, layer); });
  }

  py::tuple Average(int layer) const
  {
    return Get(layer, components_, [&] { return averages_->Average(layer); });
  }
  py::tuple Variance(int layer) const
  {
    RequireStatistics();
    return Get(layer, components_, [&] { return averages_->Variance(layer); });
  }
  py::tuple Count(int layer) const
  {
    return Get(layer, 1, [&] { return averages_->Count(layer); });
  }
  void Reset()
  {
    Use([&] { averages_->Reset(); });
  }

  void Save(const std::shared_ptr<Store>& store, const std::string& kind, const KeyValues& key, int operation) const
  {
    if (operation == FEM_AvgFieldDefs::Variance) RequireStatistics();
    Use([&] {
      store->Use([&] {
        FED_Database&            target     = store->Target();
        const FED_DataDescriptor descriptor = MakeDescriptor(*store, kind, key);
        const bool               isLayered  = layers_ > 1;
        for (int layer = 1; isLayered && layer <= layers_; ++layer) {
          FED_DataDescriptor ofLayer = descriptor;
          ofLayer.SetInteger(FED_DataDescriptor::Layer, layer);
          store->Drop(ofLayer);
        }
        if (!isLayered) store->Drop(descriptor);
        averages_->Save(target, descriptor,
                        isLayered ? FEM_AvgFieldDefs::SeparateLayers : FEM_AvgFieldDefs::LayerAsGiven,
                        static_cast<FEM_AvgFieldDefs::Operation>(operation));
      });
    });
  }

private:
  void RequireStatistics() const
  {
    if (!statistics_) Fail("the field keeps no variance, expected one that is made with statistics=True");
  }

  void RequireLayer(int layer) const
  {
    if (layer < 0 || layer >= layers_)
      Fail("layer is " + std::to_string(layer) + ", expected 0 to " + std::to_string(layers_ - 1));
  }

  template <typename Function>
  py::tuple Get(int layer, int width, const Function& function) const
  {
    RequireLayer(layer);
    LayerValues found = Use(function);
    const auto  rows  = static_cast<py::ssize_t>(found.ids.size());
    return py::make_tuple(ArrayOf(std::move(found.ids)), ArrayOf(std::move(found.values), {rows, py::ssize_t{width}}));
  }

  int                       components_;
  int                       layers_;
  bool                      statistics_;
  std::unique_ptr<Averages> averages_;
  mutable std::mutex        mutex_;
};

/// Forces and moments at the nodes of elements.
class ElementForces
{
public:
  void Add(const Integers& elements, const Integers& nodes, const Doubles& forces, const Doubles& moments)
  {
    const std::span<const int>    elementIds = SpanOf(elements);
    const std::span<const int>    nodeIds    = SpanOf(nodes);
    const std::span<const double> f          = SpanOf(forces);
    const std::span<const double> m          = SpanOf(moments);
    if (nodeIds.size() != elementIds.size() || f.size() != 3 * elementIds.size() ||
        (!m.empty() && m.size() != f.size()))
      Fail("elements, nodes, forces and moments differ in length, expected a node and three components for each");
    Use([&] {
      for (std::size_t i = 0; i < elementIds.size(); ++i) {
        if (i % 4096 == 0) ThrowIfInterrupted();
        if (m.empty())
          gathered_.InsertVector(elementIds[i], nodeIds[i], FEM_IforceData::Force, f.data() + 3 * i);
        else
          gathered_.InsertVectors(elementIds[i], nodeIds[i], f.data() + 3 * i, m.data() + 3 * i);
      }
    });
  }

  void Reset()
  {
    Use([&] { gathered_.NullifyVecData(); });
  }

  void Clear()
  {
    Use([&] { gathered_.Clear(); });
  }

  void Save(const std::shared_ptr<Store>& store, const KeyValues& key, int operation) const
  {
    Use([&] {
      store->Use([&] {
        FED_Database&            target  = store->Target();
        const FED_DataDescriptor forces  = MakeDescriptor(*store, "element-forces", key);
        const FED_DataDescriptor moments = MakeDescriptor(*store, "element-moments", key);
        store->Drop(forces);
        store->Drop(moments);
        gathered_.Save(target, forces, moments, static_cast<FEM_IforceData::MultiValueOperation>(operation));
      });
    });
  }

private:
  template <typename Function>
  void Use(const Function& function) const
  {
    Work([&] {
      const std::lock_guard lock(mutex_);
      function();
    });
  }

  FEM_IforceData     gathered_;
  mutable std::mutex mutex_;
};

}  // namespace

void DefineFields(py::module_& module)
{
  py::class_<AverageField>(module, "AverageField", PlainType())
      .def(py::init<int, bool, int>())
      .def("add", &AverageField::Add)
      .def("average", &AverageField::Average)
      .def("variance", &AverageField::Variance)
      .def("count", &AverageField::Count)
      .def("reset", &AverageField::Reset)
      .def("save", &AverageField::Save);
  py::class_<ElementForces>(module, "ElementForces", PlainType())
      .def(py::init<>())
      .def("add", &ElementForces::Add)
      .def("reset", &ElementForces::Reset)
      .def("clear", &ElementForces::Clear)
      .def("save", &ElementForces::Save);
}

}  // namespace quilon::python
