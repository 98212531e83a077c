// Plays the folder of an inspected section as the acquisition program that recorded it.
#pragma once

#include <string>

struct PlayOptions {
    std::string Folder;      // path text
    int Records = 0;         // 0: one for each defect of the description; more begin again, with later times
    int Interval = -1;       // milliseconds between two; below 0: as far apart as the pictures are
    int DieAfter = 0;        // dies without a word after so many; 0: never
    int Short = 0;           // this one is cut short, which ends its connection; 0: none
    int Burst = 1;           // so many at once, before any answer is waited for
    bool FullTexts = false;  // texts fill their fields
    int Senders = 1;         // so many connections, by turns
    bool Json = false;
};

// The exit code: 0 if all records were taken and answered, or the program went before.
int PlayFolder(const PlayOptions& options);
