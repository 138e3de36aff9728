#include "QuilonUtilities/FED_DoubleArray.h"

FED_DoubleArray::FED_DoubleArray() = default;

FED_DoubleArray::FED_DoubleArray(const std::vector<double>& values) : values_(values) {}

FED_DoubleArray::FED_DoubleArray(const FED_DoubleArray& other) = default;

FED_DoubleArray::FED_DoubleArray(FED_DoubleArray&& other) noexcept = default;

FED_DoubleArray& FED_DoubleArray::operator=(const FED_DoubleArray& other) = default;

FED_DoubleArray& FED_DoubleArray::operator=(FED_DoubleArray&& other) noexcept = default;

FED_DoubleArray::~FED_DoubleArray() = default;

double* FED_DoubleArray::GetData() noexcept { return values_.data(); }

const double* FED_DoubleArray::GetData() const noexcept { return values_.data(); }

std::size_t FED_DoubleArray::GetSize() const noexcept { return values_.size(); }

void FED_DoubleArray::Resize(std::size_t size) { values_.resize(size); }

bool FED_DoubleArray::operator==(const FED_DoubleArray& other) const noexcept { return values_ == other.values_; }
