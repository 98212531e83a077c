// A whole file, sent as jetstream.h tells.
//
// The catalogue is read as the table that it is. The library would read the property block of each table with
// it, which nobody needs here and which a damaged file can make endless.
#pragma once

#include <memory>
#include <vector>

#include "store/jet/reader/CJetTable.h"

class CJetFile {
public:
    // The descriptor and the path are of one file. Throws CDamage.
    CJetFile(int descriptor, const char* hostPath);

    // Throws CDamage, when part of it has been sent.
    void Send(CStreamWriter& out);

private:
    void ReadCatalogue();
    void SendDefinition(const CJetTable& table, CStreamWriter& out) const;

    JetHeader m_header;
    CJetPages m_pages;
    std::vector<std::unique_ptr<CJetTable>> m_tables;
};
