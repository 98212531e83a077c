#include "store/COldFiles.h"

namespace {

class CNoOldFiles : public COldFiles {
public:
    bool IsOld(std::string_view) override { return false; }
    bool PrepareToOpen(std::string_view, std::string_view) override { return true; }
    OldFileListing List(std::string_view, std::string_view) override {
        OldFileListing none;
        none.OpenFailure = 2000;
        return none;
    }

    bool ConvertTo(std::string_view, std::string_view, std::string_view) override { return false; }
    void BeginListing() override {}
    void EndListing() override {}
};

COldFiles*& Installed() {
    static CNoOldFiles none;
    static COldFiles* installed = &none;
    return installed;
}

}  // namespace

COldFiles& OldFiles() {
    return *Installed();
}

COldFilesScope::COldFilesScope(COldFiles& files) : m_former(Installed()) {
    Installed() = &files;
}

COldFilesScope::~COldFilesScope() {
    Installed() = m_former;
}
