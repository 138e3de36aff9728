#include "QuilonUtilities/FED_Failure.h"

FED_Failure::FED_Failure(const std::string& message, const std::string& tag) : FED_Exception(message, tag) {}

FED_Failure::FED_Failure(const FED_Failure& other) = default;

FED_Failure& FED_Failure::operator=(const FED_Failure& other) = default;

FED_Failure::~FED_Failure() = default;

FED_Failure* FED_Failure::Clone() const { return new FED_Failure(*this); }
