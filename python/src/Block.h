#pragma once

/// @file
/// A block of a database as Python sees it.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arrays.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "Store.h"

namespace quilon::python {

/// A block of a store. It holds nothing of the block's values.
class Block
{
public:
  /// @param components of the selection; empty: those that are stored
  Block(std::shared_ptr<Store> store, const FED_DataDescriptor& descriptor, std::vector<std::string> components);

  const std::shared_ptr<Store>& GetStore() const noexcept { return store_; }
  const FED_DataDescriptor&     GetDescriptor() const noexcept { return descriptor_; }

  int                      GetOnf() const;
  std::string              GetKind() const;
  std::string              GetText() const;
  py::dict                 GetKey() const;
  py::dict                 GetStep() const;  ///< empty where the block belongs to no single one
  std::optional<double>    GetTime() const;
  std::size_t              CountRecords() const;
  std::vector<std::string> GetComponents() const;
  std::vector<std::string> GetAllComponents() const;
  Integers                 GetIds();
  Doubles                  GetValues();
  py::array                GetComponent(const std::string& name);
  py::tuple                GetPoints();  ///< of lists of vectors or tensors: ids, positions from 1, values
  py::list                 GetRows();

private:
  std::shared_ptr<const IdTable> FindIds(const Store::Place& place);
  Doubles                        Evaluate(const std::vector<std::string>& names, bool isFlat);

  std::shared_ptr<Store>         store_;
  FED_DataDescriptor             descriptor_;
  std::vector<std::string>       components_;
  std::shared_ptr<const IdTable> ids_;  // of a stored block, once they were asked for
};

/// @return the key of a block or a step as Python has it: {"it": 0, "lc": 1}
py::dict KeyOf(const FED_DataDescriptor& descriptor);

void DefineBlock(py::module_& module);

}  // namespace quilon::python
