#include "QuilonOnfSpecification/FED_OnfMetaData.h"

#include <utility>

FED_OnfMetaData::FED_OnfMetaData(int entityKind, std::string name, std::string recordFormat, std::string description)
    : entityKind_(entityKind),
      name_(std::move(name)),
      recordFormat_(std::move(recordFormat)),
      description_(std::move(description))
{}

int FED_OnfMetaData::GetEntityKind() const noexcept { return entityKind_; }

const std::string& FED_OnfMetaData::GetName() const noexcept { return name_; }

const std::string& FED_OnfMetaData::GetRecordFormat() const noexcept { return recordFormat_; }

const std::string& FED_OnfMetaData::GetDescription() const noexcept { return description_; }
