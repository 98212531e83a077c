// Positions are stored in WGS-84; tiles of Chinese services are in GCJ-02, which shifts them by some hundred metres,
// or in BD-09, which shifts these once more.
"use strict";

var Shift = (function () {
    var PI = Math.PI, AXIS = 6378245.0, ECCENTRICITY = 0.00669342162296594323;

    function north(x, y) {
        return -100 + 2 * x + 3 * y + 0.2 * y * y + 0.1 * x * y + 0.2 * Math.sqrt(Math.abs(x)) +
            (20 * Math.sin(6 * x * PI) + 20 * Math.sin(2 * x * PI)) * 2 / 3 +
            (20 * Math.sin(y * PI) + 40 * Math.sin(y / 3 * PI)) * 2 / 3 +
            (160 * Math.sin(y / 12 * PI) + 320 * Math.sin(y * PI / 30)) * 2 / 3;
    }

    function east(x, y) {
        return 300 + x + 2 * y + 0.1 * x * x + 0.1 * x * y + 0.1 * Math.sqrt(Math.abs(x)) +
            (20 * Math.sin(6 * x * PI) + 20 * Math.sin(2 * x * PI)) * 2 / 3 +
            (20 * Math.sin(x * PI) + 40 * Math.sin(x / 3 * PI)) * 2 / 3 +
            (150 * Math.sin(x / 12 * PI) + 300 * Math.sin(x / 30 * PI)) * 2 / 3;
    }

    // Longitude and latitude as they are drawn over tiles of that system.
    function to(system, x, y) {
        if ((system !== "GCJ-02" && system !== "BD-09") || x < 72.004 || x > 137.8347 || y < 0.8293 || y > 55.8271) {
            return [x, y];
        }
        var sine = Math.sin(y / 180 * PI), magic = 1 - ECCENTRICITY * sine * sine, root = Math.sqrt(magic);
        var gx = x + east(x - 105, y - 35) * 180 / (AXIS / root * Math.cos(y / 180 * PI) * PI);
        var gy = y + north(x - 105, y - 35) * 180 / (AXIS * (1 - ECCENTRICITY) / (magic * root) * PI);
        if (system === "GCJ-02") {
            return [gx, gy];
        }
        var turn = PI * 3000 / 180;
        var distance = Math.sqrt(gx * gx + gy * gy) + 0.00002 * Math.sin(gy * turn);
        var angle = Math.atan2(gy, gx) + 0.000003 * Math.cos(gx * turn);
        return [distance * Math.cos(angle) + 0.0065, distance * Math.sin(angle) + 0.006];
    }

    return { to: to };
})();
