#include "store/CChangeWatch.h"

#include "store/CDbBase.h"

namespace {

class CNoWatches : public CChangeWatches {
public:
    std::unique_ptr<CChangeWatch> Watch(CDbBase&) override { return nullptr; }
};

CChangeWatches*& Installed() {
    static CNoWatches none;
    static CChangeWatches* installed = &none;
    return installed;
}

}  // namespace

CChangeWatches& ChangeWatches() {
    return *Installed();
}

CChangeWatchesScope::CChangeWatchesScope(CChangeWatches& watches) : m_former(Installed()) {
    Installed() = &watches;
}

CChangeWatchesScope::~CChangeWatchesScope() {
    Installed() = m_former;
}

CDbStep::CDbStep(CDbBase& database, int name) : m_database(database) {
    if (CChangeWatch* const watch = m_database.Watch()) {
        watch->BeginStep(name);
        m_begun = true;
    }
}

// The database may have been closed, or another one opened, in between.
CDbStep::~CDbStep() {
    CChangeWatch* const watch = m_database.Watch();
    if (m_begun && watch != nullptr) {
        watch->EndStep();
    }
}
