// What binds the coding line and the strip of the pipe to the review window: both follow its selection and
// its player, and act through its commands.
#pragma once

#include <QTimer>
#include <cstdint>
#include <string>

#include "workbench/coding/codingmeaning.h"
#include "workbench/coding/favourites.h"
#include "workbench/coding/sectionstrip.h"

class CCodingLine;
class CDlgProAtrrib;
class CPipeStrip;

class CCodingDesk {
public:
    CCodingDesk(CDlgProAtrrib& window, CCodingLine& line, CPipeStrip& strip);

    CCodingLine& Line() { return m_line; }
    CPipeStrip& Strip() { return m_strip; }

    // After the section, its records or the project have changed; and only the record.
    void Follow();
    void FollowRecord();

    // The commands. The line comes up with this in it.
    void Open(const std::string& begin);
    void OpenLast();
    void OpenFavourite(int place);
    // Stores what the line says, and closes it. If it doesn't say enough, or the section isn't the one that
    // the operator saw while he typed, it stays.
    void Store();
    void OpenForm();
    void GiveLength();
    void Walk(int step);

private:
    const _TESTING_DATA* Section() const;
    std::vector<_REC_DATA> SectionRuns() const;
    CodingMeaning Understand(const CodingLine& line) const;
    void Learn(const std::string& codeAndGrade);
    void ReadFavourites();
    void FixFavourite(int place);
    void ShowPlayHead();
    void CloseLine();

    CDlgProAtrrib& m_window;
    CCodingLine& m_line;
    CPipeStrip& m_strip;
    CVideoTrack m_track;
    CFavourites m_favourites;
    std::string m_favouritesOf;   // the standard
    std::string m_last;           // code and grade that were stored last
    std::int32_t m_section = -1;  // that the line's meaning was shown for
    QTimer m_playHead;
};
