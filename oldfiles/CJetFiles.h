// Files of the older engine, for whoever opens and lists databases.
#pragma once

#include "store/COldFiles.h"

class CJetFiles : public COldFiles {
public:
    bool IsOld(std::string_view path) override;
    bool PrepareToOpen(std::string_view path, std::string_view password) override;
    OldFileListing List(std::string_view path, std::string_view password) override;
    bool ConvertTo(std::string_view path, std::string_view target, std::string_view password) override;
    void BeginListing() override;
    void EndListing() override;
};
