// One picture of a map with pipes drawn as red lines, made by a map service. For reports: where there is no
// service or no network, the picture is missing and the report is made without it.
#pragma once

#include <string>
#include <vector>

class CStaticMap {
public:
    CStaticMap() = default;
    virtual ~CStaticMap() = default;

    // Degrees: longitude and latitude of the start, then of the end. True if the line is among those drawn
    // afterwards: at most 50 are, each once, and none with a coordinate of 0, which stands for an unknown
    // one.
    bool AddPath(double x1, double y1, double x2, double y2);
    // The picture, 640 by 480, into the file. A former one is deleted first, so none remains if this fails.
    // What the service answers is saved as it is, so a message of an error lies there as well. False if a
    // service was set up and gave no answer.
    bool GetImage(const std::string& targetPath) const;

private:
    std::vector<double> m_lines;  // four numbers a line
};
