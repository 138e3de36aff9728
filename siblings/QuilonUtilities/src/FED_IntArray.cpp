#include "QuilonUtilities/FED_IntArray.h"

FED_IntArray::FED_IntArray() = default;

FED_IntArray::FED_IntArray(const std::vector<int>& values) : values_(values) {}

FED_IntArray::FED_IntArray(const FED_IntArray& other) = default;

FED_IntArray::FED_IntArray(FED_IntArray&& other) noexcept = default;

FED_IntArray& FED_IntArray::operator=(const FED_IntArray& other) = default;

FED_IntArray& FED_IntArray::operator=(FED_IntArray&& other) noexcept = default;

FED_IntArray::~FED_IntArray() = default;

int* FED_IntArray::GetData() noexcept { return values_.data(); }

const int* FED_IntArray::GetData() const noexcept { return values_.data(); }

std::size_t FED_IntArray::GetSize() const noexcept { return values_.size(); }

void FED_IntArray::Resize(std::size_t size) { values_.resize(size); }

bool FED_IntArray::operator==(const FED_IntArray& other) const noexcept { return values_ == other.values_; }
