// Places the records of a section on the line from its start manhole to its end manhole.
#pragma once

#include "store/records/records.h"

class CGpsCalc {
public:
    // Degrees; longitude is x, latitude is y, west and south are negative.
    CGpsCalc(double startX, double startY, double endX, double endY);
    virtual ~CGpsCalc() = default;

    // Sets GpsX and GpsY of each record from its DistanceStart alone: one beyond the end manhole lies
    // beyond it on the same line. A section with only one known manhole (the other at 0, 0) puts all on
    // its start. Start and end in different hemispheres give wrong positions, as magnitudes are used.
    void CalcRecords(CRecDataArray& records) const;

    double GpsXStart;
    double GpsYStart;
    double GpsXEnd;
    double GpsYEnd;
};
