// What lies on the map, drawn on one canvas over the tiles: thousands of elements of their own would take seconds.
"use strict";

// Told apart by the colour-blind, and by their brightness alone; the level is written beside.
var LevelColours = ["#8c9bab", "#2c7bb6", "#6db3d8", "#f0a33c", "#d7301f", "#7f0000"];
var NoRuleColour = "#5a6673";
var GradeColours = ["#5a6673", "#2c7bb6", "#3d9db3", "#e08214", "#b2182b"];

function levelColour(rank) {
    return rank < 0 ? NoRuleColour : LevelColours[Math.min(rank, LevelColours.length - 1)];
}

function gradeColour(grade) {
    return GradeColours[Math.min(grade, GradeColours.length - 1)];
}

var Drawing = L.Layer.extend({
    RADIUS: 8,
    WELLS_FROM: 17,  // zoom

    // `scene`: markers {latlng, grade}, lines {a, b, details}; those without a position have no latlng.
    initialize: function (scene) {
        this.scene = scene;
        this.functional = false;
        this.sharpness = 0;
        this.hasTiles = false;
    },

    onAdd: function (map) {
        this.canvas = L.DomUtil.create("canvas", "leaflet-zoom-hide", map.getPanes().overlayPane);
        map.on("moveend zoomend resize viewreset", this.redraw, this);
        this.draw();
    },

    onRemove: function (map) {
        map.off("moveend zoomend resize viewreset", this.redraw, this);
        this.canvas.remove();
    },

    // However often it is asked for, once for all that a script did.
    redraw: function () {
        var self = this;
        this.move();
        if (!this.later) {
            this.later = setTimeout(function () {
                self.later = 0;
                if (self._map) {
                    self.draw();
                }
            }, 0);
        }
    },

    // Until it is drawn anew, the canvas stays with the map.
    move: function () {
        if (this.origin) {
            L.DomUtil.setPosition(this.canvas, this.origin);
        }
    },

    draw: function () {
        var map = this._map, size = map.getSize(), sharp = this.sharpness || window.devicePixelRatio || 1;
        this.origin = map.containerPointToLayerPoint([0, 0]);
        L.DomUtil.setPosition(this.canvas, this.origin);
        this.canvas.width = size.x * sharp;
        this.canvas.height = size.y * sharp;
        this.canvas.style.width = size.x + "px";
        this.canvas.style.height = size.y + "px";
        var pen = this.canvas.getContext("2d");
        pen.scale(sharp, sharp);
        if (!this.hasTiles) {
            this.drawGraticule(pen, size);
        }
        this.place();
        this.drawLines(pen, size);
        this.drawMarkers(pen, size);
        this.drawWells(pen, size);
    },

    // Degrees in steps of 1, 2 or 5, about 120 pixels apart.
    drawGraticule: function (pen, size) {
        var map = this._map, bounds = map.getBounds();
        var wanted = (bounds.getEast() - bounds.getWest()) * 120 / size.x;
        var power = Math.pow(10, Math.floor(Math.log(wanted) / Math.LN10));
        var step = [1, 2, 5, 10].map(function (n) { return n * power; }).find(function (n) { return n >= wanted; });
        var digits = Math.max(0, -Math.floor(Math.log(step) / Math.LN10 + 1e-9));
        pen.strokeStyle = "#dde3ea";
        pen.fillStyle = "#9aa7b5";
        pen.font = "11px sans-serif";
        pen.lineWidth = 1;
        pen.beginPath();
        var i, at;
        for (i = Math.ceil(bounds.getWest() / step); i * step <= bounds.getEast(); i++) {
            at = Math.round(map.latLngToContainerPoint([bounds.getSouth(), i * step]).x) + 0.5;
            pen.moveTo(at, 0);
            pen.lineTo(at, size.y);
            pen.fillText((i * step).toFixed(digits) + "°", at + 3, size.y - 34);
        }
        for (i = Math.ceil(bounds.getSouth() / step); i * step <= bounds.getNorth(); i++) {
            at = Math.round(map.latLngToContainerPoint([i * step, bounds.getWest()]).y) + 0.5;
            pen.moveTo(0, at);
            pen.lineTo(size.x, at);
            pen.fillText((i * step).toFixed(digits) + "°", 52, at - 4);
        }
        pen.stroke();
    },

    // Where everything lies in the window now. Markers on one spot stand around it, so that each can be reached.
    place: function () {
        var map = this._map, spots = new Map(), radius = this.RADIUS;
        this.scene.lines.forEach(function (line) {
            line.from = line.a && map.latLngToContainerPoint(line.a);
            line.to = line.b && map.latLngToContainerPoint(line.b);
        });
        this.scene.markers.forEach(function (marker) {
            marker.point = marker.latlng && map.latLngToContainerPoint(marker.latlng);
            marker.spot = null;
            if (marker.point) {
                var key = Math.round(marker.point.x / 3) + "," + Math.round(marker.point.y / 3);
                if (!spots.has(key)) {
                    spots.set(key, []);
                }
                spots.get(key).push(marker);
            }
        });
        spots.forEach(function (markers) {
            if (markers.length < 2) {
                return;
            }
            var centre = markers[0].point;
            var placed = 0, ring = 1;
            while (placed < markers.length) {
                var reach = ring * radius * 2.3, room = Math.floor(2 * Math.PI * reach / (radius * 2.2));
                var count = Math.min(room, markers.length - placed);
                for (var i = 0; i < count; i++) {
                    var angle = 2 * Math.PI * i / count - Math.PI / 2;
                    markers[placed + i].spot = centre;
                    markers[placed + i].point =
                        L.point(centre.x + reach * Math.cos(angle), centre.y + reach * Math.sin(angle));
                }
                placed += count;
                ring++;
            }
        });
    },

    rankOf: function (line) {
        return this.functional ? line.details.fr : line.details.sr;
    },

    drawLines: function (pen, size) {
        var self = this, written = new Map();
        pen.lineCap = "round";
        this.scene.lines.forEach(function (line) {
            if (!line.from || !line.to || !isNear(line.from, line.to, size)) {
                return;
            }
            var colour = levelColour(self.rankOf(line));
            pen.strokeStyle = colour;
            pen.lineWidth = 4;
            pen.beginPath();
            pen.moveTo(line.from.x, line.from.y);
            pen.lineTo(line.to.x, line.to.y);
            pen.stroke();
            self.drawFlow(pen, line, colour);
            self.drawLevel(pen, line, colour, written);
        });
    },

    // An arrow head two thirds of the way.
    drawFlow: function (pen, line, colour) {
        var dx = line.to.x - line.from.x, dy = line.to.y - line.from.y, length = Math.hypot(dx, dy);
        if (length < 36) {
            return;
        }
        dx /= length;
        dy /= length;
        var x = line.from.x + dx * length * 0.68, y = line.from.y + dy * length * 0.68;
        pen.fillStyle = colour;
        pen.strokeStyle = "#ffffff";
        pen.lineWidth = 1;
        pen.beginPath();
        pen.moveTo(x + dx * 9, y + dy * 9);
        pen.lineTo(x - dx * 6 - dy * 7, y - dy * 6 + dx * 7);
        pen.lineTo(x - dx * 6 + dy * 7, y - dy * 6 - dx * 7);
        pen.closePath();
        pen.fill();
        pen.stroke();
    },

    drawLevel: function (pen, line, colour, written) {
        var text = this.functional ? line.details.f : line.details.s;
        if (!text || Math.hypot(line.to.x - line.from.x, line.to.y - line.from.y) < 50) {
            return;
        }
        var x = (line.from.x * 2 + line.to.x) / 3, y = (line.from.y * 2 + line.to.y) / 3;
        var key = Math.round(x / 20) + "," + Math.round(y / 20);
        if (written.has(key)) {
            return;
        }
        written.set(key, true);
        pen.font = "bold 12px sans-serif";
        var width = pen.measureText(text).width + 8;
        pen.fillStyle = "#ffffff";
        pen.strokeStyle = colour;
        pen.lineWidth = 1.5;
        pen.fillRect(x - width / 2, y - 9, width, 18);
        pen.strokeRect(x - width / 2, y - 9, width, 18);
        pen.fillStyle = "#1d2b38";
        pen.textAlign = "center";
        pen.textBaseline = "middle";
        pen.fillText(text, x, y + 0.5);
        pen.textAlign = "start";
        pen.textBaseline = "alphabetic";
    },

    drawMarkers: function (pen, size) {
        var radius = this.RADIUS;
        pen.font = "bold 11px sans-serif";
        pen.textAlign = "center";
        pen.textBaseline = "middle";
        var visible = this.scene.markers.filter(function (marker) {
            var at = marker.point;
            return at && at.x >= -radius && at.y >= -radius && at.x <= size.x + radius && at.y <= size.y + radius;
        });
        // Where thousands lie over each other, nobody reads a number.
        var numbered = visible.length <= 1000;
        visible.forEach(function (marker) {
            var at = marker.point;
            if (marker.spot) {
                pen.strokeStyle = "#5a6673";
                pen.lineWidth = 1;
                pen.beginPath();
                pen.moveTo(marker.spot.x, marker.spot.y);
                pen.lineTo(at.x, at.y);
                pen.stroke();
            }
            pen.beginPath();
            pen.arc(at.x, at.y, radius, 0, 2 * Math.PI);
            pen.fillStyle = gradeColour(marker.grade);
            pen.fill();
            pen.lineWidth = marker.shown ? 3 : 1.5;
            pen.strokeStyle = marker.shown ? "#111820" : "#ffffff";
            pen.stroke();
            if (numbered || marker.shown) {
                pen.fillStyle = "#ffffff";
                pen.fillText(String(marker.grade), at.x, at.y + 0.5);
            }
        });
        pen.textAlign = "start";
        pen.textBaseline = "alphabetic";
    },

    // Each manhole once, where there is room for its number.
    drawWells: function (pen, size) {
        if (this._map.getZoom() < this.WELLS_FROM) {
            return;
        }
        var drawn = new Map();
        pen.font = "12px 'Noto Sans CJK SC', sans-serif";
        this.scene.lines.forEach(function (line) {
            [[line.from, line.details.a], [line.to, line.details.b]].forEach(function (well) {
                var at = well[0];
                if (!at || at.x < 0 || at.y < 0 || at.x > size.x || at.y > size.y) {
                    return;
                }
                var key = Math.round(at.x / 24) + "," + Math.round(at.y / 12);
                if (drawn.has(key)) {
                    return;
                }
                drawn.set(key, true);
                pen.fillStyle = "#ffffff";
                pen.strokeStyle = "#33475b";
                pen.lineWidth = 1.5;
                pen.beginPath();
                pen.arc(at.x, at.y, 4, 0, 2 * Math.PI);
                pen.fill();
                pen.stroke();
                pen.lineWidth = 3;
                pen.strokeStyle = "rgba(255,255,255,0.9)";
                pen.strokeText(well[1], at.x + 7, at.y - 7);
                pen.fillStyle = "#1d2b38";
                pen.fillText(well[1], at.x + 7, at.y - 7);
            });
        });
    },

    // The number of the marker under the point; -1 if there is none. What is drawn last lies on top.
    markerAt: function (point) {
        for (var i = this.scene.markers.length - 1; i >= 0; i--) {
            var at = this.scene.markers[i].point;
            if (at && at.distanceTo(point) <= this.RADIUS + 1) {
                return i;
            }
        }
        return -1;
    },

    lineAt: function (point) {
        var best = -1, least = 6;
        this.scene.lines.forEach(function (line, i) {
            if (line.from && line.to) {
                var distance = L.LineUtil.pointToSegmentDistance(point, line.from, line.to);
                if (distance <= least) {
                    least = distance;
                    best = i;
                }
            }
        });
        return best;
    }
});

function isNear(a, b, size) {
    return Math.max(a.x, b.x) >= 0 && Math.max(a.y, b.y) >= 0 && Math.min(a.x, b.x) <= size.x &&
        Math.min(a.y, b.y) <= size.y;
}
