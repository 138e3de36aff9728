#include "QuilonDbConnector/FED_Database.h"

FED_Database::~FED_Database() = default;

std::string FED_Database::GetUserKindName(FED_OnfId) const { return {}; }

void FED_Database::SetUserKindName(FED_OnfId, const std::string&) {}
