// The places where the program touches its surroundings. `main` installs what fits its program before
// anything else runs, tests install their own. What isn't installed has a plain default: the system's
// clock, files with drives below the working folder, boxes as lines on standard error with every
// question answered by Cancel, no desktop, and silent progress.
#pragma once

class CClock;
class CDesktop;
class CHostFiles;
class CProgress;
class CPrompts;

CPrompts& Prompts();
CClock& Clock();
CHostFiles& HostFiles();
CDesktop& Desktop();
// Of operations that any opening of a file may bring along. Others take theirs as an argument.
CProgress& Progress();

// Not owned; they must live until the scope that installed them ends.
struct CSeams {
    CPrompts* Prompts = nullptr;
    CClock* Clock = nullptr;
    CHostFiles* Files = nullptr;
    CDesktop* Desktop = nullptr;
    CProgress* Progress = nullptr;
};

// Installs what is given, and puts back what was there when it ends.
class CSeamScope {
public:
    explicit CSeamScope(const CSeams& seams);
    ~CSeamScope();
    CSeamScope(const CSeamScope&) = delete;
    CSeamScope& operator=(const CSeamScope&) = delete;

private:
    CSeams m_former;
};
