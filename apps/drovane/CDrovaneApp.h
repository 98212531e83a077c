// The program with windows: the order in which it comes up and goes down, and its two run modes.
//
//   review mode  projects are reviewed; any number of instances may run
//   live mode    beside an acquisition program, which hands in defects as the camera runs; one instance a
//   user
//
// There is no loop of the program's own: one window is run, and with it the program ends.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class CLiveChannel;
class CSizeDlg;

class CDrovaneApp {
public:
    // What makes the windows of the two modes.
    struct Windows {
        std::function<std::unique_ptr<CSizeDlg>(const std::string& projectPath)> Review;
        std::function<std::unique_ptr<CSizeDlg>(CLiveChannel& channel)> Live;
    };

    // The channel outlives the application.
    CDrovaneApp(CLiveChannel& channel, Windows windows);
    CDrovaneApp(const CDrovaneApp&) = delete;
    CDrovaneApp& operator=(const CDrovaneApp&) = delete;

    // `commandLine` is what stands behind the program's name, see CommandLine. `projectPath` is what review
    // mode opens at once, empty for nothing. Returns the exit code. The program folder is entered and the
    // seams are installed before.
    int Run(std::string_view commandLine, const std::string& projectPath = {});

    // What Run does at its end, for a process that is asked to end and can't wait for its windows.
    int ExitInstance();

    // Null unless it runs.
    CSizeDlg* GetMainWnd() const { return m_mainWnd; }

private:
    void InitInstance(std::string_view commandLine, const std::string& projectPath);
    // False if a live instance runs already; it has come to the front then.
    bool ActivateRunningInstance();
    void RunWindow(std::unique_ptr<CSizeDlg> window);

    CLiveChannel& m_channel;
    Windows m_windows;
    CSizeDlg* m_mainWnd = nullptr;
};

// As one text: the words with one blank between them.
std::string CommandLine(const std::vector<std::string>& words);

// The project that the program is called with: the path text of the one argument, if this is a file that ends
// in ".mdb". Empty for everything else. `startFolder` is where the user stood.
std::string ProjectArgument(const std::vector<std::string>& words, const std::string& startFolder);
