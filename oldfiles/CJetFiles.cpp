#include "oldfiles/CJetFiles.h"

#include "oldfiles/jetconversion.h"
#include "oldfiles/jetlisting.h"

bool CJetFiles::IsOld(std::string_view path) {
    return IsOldDatabase(path);
}

bool CJetFiles::PrepareToOpen(std::string_view path, std::string_view password) {
    return PrepareOldToOpen(path, password);
}

OldFileListing CJetFiles::List(std::string_view path, std::string_view password) {
    return ListOldDatabase(path, password);
}

bool CJetFiles::ConvertTo(std::string_view path, std::string_view target, std::string_view password) {
    return ::ConvertTo(path, target, password);
}

void CJetFiles::BeginListing() {
    BeginOldListing();
}

void CJetFiles::EndListing() {
    EndOldListing();
}
