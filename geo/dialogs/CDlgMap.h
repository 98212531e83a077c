// The defects of chosen sections on a map, beside their list. What is clicked on either side is selected on
// the other.
//
// The page is a file of its own, "map\\map.srp" in the program folder, which may be replaced: see
// docs/files.md for the calls that it has to offer. It is asked every 50 ms whether something was clicked;
// whatever fails there is told to nobody.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "geo/mapview/mapcontent.h"
#include "shell/dialogs/CSizeDlg.h"

class CDbRec;
class CDefectList;
class CTileFile;
class CWebBrowser2;
class QComboBox;
struct MapTiles;
struct WebReply;

class CDlgMap : public CSizeDlg {
public:
    // The project is open and outlives the window. `section` below 0: all of it.
    CDlgMap(CDbRec& database, std::int32_t section, QWidget* parent);
    ~CDlgMap() override;

    std::string Title;  // the window's; empty keeps that of the language
    // After IdOk: where the operator wants to go on. The record belongs to the section.
    std::int32_t ChosenSection = -1;
    std::int32_t ChosenRecord = -1;

    // Of the page; null if it can't be shown.
    CWebBrowser2* Browser() const { return m_browser; }

protected:
    void OnInitDialog() override;
    void OnOK() override;
    void OnTimer(int id) override;

private:
    bool ChooseSections();
    void MakeBrowser();
    WebReply Serve(const std::string& host, const std::string& path) const;
    void Poll();
    void TakeEvents(const std::string& events);
    void Draw();
    // `later`: the selection's timer shows the bubble.
    void SelectRow(int row, bool later);
    void ShowSelected();
    void ShowBubble(int row);
    void OpenRow(int row);

    // Of a printout: the page is made ready, printed, and put back.
    void Save(bool asPicture);
    void WaitForPrint(int tries);
    void Print();
    void FinishPrint(const std::string& bytes, const std::string& path);

    CDbRec& m_database;
    std::int32_t m_section;
    MapContent m_content;
    std::unique_ptr<MapTiles> m_tiles;
    std::unique_ptr<CTileFile> m_tileFile;
    std::set<std::string> m_pictures;  // those that the page may have
    CDefectList* m_list;
    QWidget* m_frame;
    QComboBox* m_paper;
    CWebBrowser2* m_browser = nullptr;
    int m_lastSelection = -1;  // row whose bubble is open
    bool m_polling = false;
    bool m_silent = false;  // the page has no variable: it was drawn once, for nothing
    bool m_printing = false;
    bool m_asPicture = false;
    std::string m_target;
};
