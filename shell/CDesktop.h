// What the program asks of the desktop that it runs on.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class CDesktop {
public:
    virtual ~CDesktop() = default;
    // All take path texts and tell whether the desktop took the request.
    virtual bool OpenFile(std::string_view path) = 0;      // with its default program
    virtual bool ShowInFolder(std::string_view path) = 0;  // in the file manager
    // Without a shell, in that working folder, and without waiting for its end. `failed` is called later,
    // from the event loop, if it ends with anything but 0 while this program still runs; it gets what the
    // process wrote to standard error.
    virtual bool StartProcess(std::string_view program, const std::vector<std::string>& arguments,
                              std::string_view folder,
                              const std::function<void(const std::string&)>& failed) = 0;
    // Puts a copy of the file into the trash; the file itself stays.
    virtual bool CopyToTrash(std::string_view path) = 0;
};

// Where there is no desktop: nothing is taken.
class CNoDesktop : public CDesktop {
public:
    bool OpenFile(std::string_view) override { return false; }
    bool ShowInFolder(std::string_view) override { return false; }
    bool StartProcess(std::string_view, const std::vector<std::string>&, std::string_view,
                      const std::function<void(const std::string&)>&) override {
        return false;
    }
    bool CopyToTrash(std::string_view) override { return false; }
};
