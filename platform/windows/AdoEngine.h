#pragma once

#include "platform/Database.h"

namespace mip {

/// Databases of the Jet engine, through ADO's automation objects. Error codes are the provider's HRESULTs.
class AdoEngine : public DatabaseEngine {
  public:
    std::unique_ptr<DatabaseConnection> Open(const std::wstring& path) override;
};

}  // namespace mip
