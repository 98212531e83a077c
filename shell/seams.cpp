#include "shell/seams.h"

#include <iostream>

#include "shell/CClock.h"
#include "shell/CDesktop.h"
#include "shell/CHostFiles.h"
#include "shell/CProgress.h"
#include "shell/CStreamPrompts.h"

namespace {

CSeams Defaults() {
    static CStreamPrompts prompts(std::cerr, false);
    static CSystemClock clock;
    static CHostFiles files(".");
    static CNoDesktop desktop;
    static CProgress progress;
    return {&prompts, &clock, &files, &desktop, &progress};
}

CSeams& Installed() {
    static CSeams seams = Defaults();
    return seams;
}

}  // namespace

CPrompts& Prompts() {
    return *Installed().Prompts;
}

CClock& Clock() {
    return *Installed().Clock;
}

CHostFiles& HostFiles() {
    return *Installed().Files;
}

CDesktop& Desktop() {
    return *Installed().Desktop;
}

CProgress& Progress() {
    return *Installed().Progress;
}

CSeamScope::CSeamScope(const CSeams& seams) : m_former(Installed()) {
    CSeams& now = Installed();
    now.Prompts = seams.Prompts != nullptr ? seams.Prompts : now.Prompts;
    now.Clock = seams.Clock != nullptr ? seams.Clock : now.Clock;
    now.Files = seams.Files != nullptr ? seams.Files : now.Files;
    now.Desktop = seams.Desktop != nullptr ? seams.Desktop : now.Desktop;
    now.Progress = seams.Progress != nullptr ? seams.Progress : now.Progress;
}

CSeamScope::~CSeamScope() {
    Installed() = m_former;
}
