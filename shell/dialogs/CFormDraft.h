// What is typed in a window and not yet stored, kept in a small file until the window ends: after a crash the
// next start offers it. One file a window, in "db\_draft", written anew whenever something has changed, at
// most once a second. A lock beside it tells that its window is still open somewhere.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "shell/CUnixFile.h"

class CSizeDlg;

struct FormDraft {
    std::string Kind;           // which window
    std::string Project;        // path text
    std::int32_t Section = -1;  // IDs; below 0 for none
    std::int32_t Record = -1;
    std::string Time;  // of the last change, local, "YYYY-MM-DD HH:MM:SS"
    // What the window kept, by names of its own; empty for a window that begins anew.
    std::map<std::string, std::string> Values;

    // Of one that was found: its file, and the lock that keeps other programs from finding it too.
    std::string Path;
    std::shared_ptr<CUnixFile> Lock;
};

// Of windows that are no more, oldest first.
std::vector<FormDraft> FindDrafts();
void DropDraft(const FormDraft& draft);

class CFormDraft : public QObject {
public:
    // `draft` tells where the window stands; with values they are put into the window by Begin.
    CFormDraft(CSizeDlg& window, FormDraft draft);
    // The window has ended: nothing is kept any more.
    ~CFormDraft() override;

    // In the order in which they are put back. Values are texts.
    void Keep(std::string name, std::function<std::string()> get,
              std::function<void(const std::string&)> set);
    // The text of a line, of an edit of several lines, or of a box that can be typed into; the row of another
    // box; the time of a time edit.
    void KeepControl(int id);
    // Once the window shows what it opens with.
    void Begin();
    // Writes what has changed since; the timer does so by itself.
    void Write();

private:
    struct Kept {
        std::string Name;
        std::function<std::string()> Get;
        std::function<void(const std::string&)> Set;
    };
    std::map<std::string, std::string> Collect() const;

    CSizeDlg& m_window;
    FormDraft m_draft;
    std::vector<Kept> m_kept;
    std::map<std::string, std::string> m_last;
};
