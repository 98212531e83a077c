// The desktop that the program's windows run on.
#pragma once

#include "shell/CDesktop.h"

class CQtDesktop : public CDesktop {
public:
    bool OpenFile(std::string_view path) override;
    bool ShowInFolder(std::string_view path) override;
    bool StartProcess(std::string_view program, const std::vector<std::string>& arguments,
                      std::string_view folder,
                      const std::function<void(const std::string&)>& failed) override;
    bool CopyToTrash(std::string_view path) override;
};
