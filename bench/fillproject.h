// A project as large as a benchmark needs it.
#pragma once

#include <functional>
#include <string>

inline constexpr int RecordsASection = 10;

// Into an empty project. Records have defects of eight kinds and all grades; `video` is the path text of
// every section's video, `picture` gives the one of a record, counted from 0, or an empty text.
void FillProject(const std::string& path, int sections, const std::string& video,
                 const std::function<std::string(int)>& picture);
