// What would be changed, before it is: nothing happens unless the operator wants it.
#pragma once

#include <vector>

#include "check/mends.h"
#include "shell/dialogs/CSizeDlg.h"

class CDlgMends : public CSizeDlg {
public:
    static constexpr int IdList = 5081;
    static constexpr int IdSummary = 5082;

    // `moved` tells what became of files, if they were looked for.
    CDlgMends(const CCheckSnapshot& snapshot, const std::vector<Mend>& mends, const MovedFiles& moved,
              QWidget* parent);
};
