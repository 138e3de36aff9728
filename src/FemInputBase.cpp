#include "FemInputBase.h"

FemInputBase::FemInputBase(const std::wstring& name, const std::wstring& inputPath) : inputPath_(inputPath), name_(name)
{}

FemInputBase::FemInputBase(const FemInputBase& other) = default;

FemInputBase& FemInputBase::operator=(const FemInputBase& other) = default;

FemInputBase::~FemInputBase() = default;

void FemInputBase::CreateFEMSets(const OnfGroupsFile& /*groups*/) {}
