// Where files went whose folder was moved or renamed, found by their names and sizes below the new one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct MovedFile {
    std::string From;  // path texts
    std::string To;
};

struct MovedFiles {
    std::vector<MovedFile> Found;
    std::vector<std::string> Several;  // more than one file fits, so none is taken
    std::vector<std::string> None;
};

// Looks below `folder` for `missing`. A file fits if its path from there on is the end of the missing one's
// ("new place\Street\1.jpg" for "D:\job\Street\1.jpg"); else if its own folder has the same name; else by its
// name alone, if no other of `all`, the paths of the whole project, is called so and it has the size of the
// copy that reports are made with. A file takes the place of one missing only. Letters' case doesn't count.
MovedFiles FindMovedFiles(const std::vector<std::string>& missing, const std::vector<std::string>& all,
                          std::string_view folder);
