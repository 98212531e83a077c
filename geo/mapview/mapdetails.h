// What the page is told beyond the four calls: how bad sections and defects are, names of manholes, tiles,
// texts.
#pragma once

#include <string>
#include <string_view>

#include "geo/mapview/mapcontent.h"
#include "geo/mapview/mapsettings.h"

class CDbRec;

// A call of the page's function SetDetails with a JSON object:
//
//   tiles     address, attribution, deepest zoom, system of their positions; no address: none
//   sections  parallel to Line: wells, levels "s" and "f" (structural, functional) as written by the standard
//   with
//             their rank 1 (best) to 5, 0 for nothing found, -1 where the standard has no rule; the first
//             marker "m", -1 if there is none
//   markers   parallel to AddMarker: the grade
//   texts     by name, in the operator's language
//
// Sections are scored with the preselected parameters of region and soil.
std::string DetailsCall(CDbRec& database, std::string_view criterionName, const MapContent& content,
                        const MapTiles& tiles);
