// What the operator's office set up for the map, in "map.ini".
#pragma once

#include <string>

struct MapTiles {
    // Of a service, with {z}, {x}, {y} and possibly {s} in it; empty for none. Only http and https.
    std::string Address;
    std::string Attribution;
    std::string File;  // path text of an .mbtiles file, which comes before the address; empty for none
    int DeepestZoom = 18;
    // Of the tiles: "WGS-84", "GCJ-02" or "BD-09". What is something else counts as the first.
    std::string System = "WGS-84";
};

MapTiles ReadMapTiles();
