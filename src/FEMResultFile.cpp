#include "FEMResultFile.h"

FEMResultFile::FEMResultFile(const std::string& file, int first, int second, FED_Database& database)
    : FEMResultFile(file, first, second, database, database)
{}

FEMResultFile::FEMResultFile(const std::string& file, int first, int second, FED_Database& database,
                             FED_Database& secondDatabase)
    : fileName_(file), firstNumber_(first), secondNumber_(second), database_(database), secondDatabase_(secondDatabase)
{}

FEMResultFile::FEMResultFile(const FEMResultFile& other) = default;

FEMResultFile::~FEMResultFile() = default;
