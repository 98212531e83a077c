// The page of the map. The program calls the functions in capitals, and reads nClickEvent: -2 while the page wants its
// data, -1 when nothing happened, else the number of the marker that was clicked. Markers are numbered in the order of
// the calls of AddMarker. SetDetails, MarkShown, PreparePrint and EndPrint are this program's own; a page without them
// works, too.
"use strict";

var nClickEvent = -2;
var nOpenEvent = -1;  // the marker whose link was clicked
var nPrintReady = 0;

(function () {
    var DEEPEST = 20, OWN_ZOOM = 19;
    var scene = { markers: [], lines: [] };
    var details = { tiles: {}, sections: [], markers: [], texts: {} };
    var map = L.map("map", {
        zoomAnimation: false, fadeAnimation: false, markerZoomAnimation: false, inertia: false,
        attributionControl: false, doubleClickZoom: false, minZoom: 2, maxZoom: DEEPEST, zoomControl: true, boxZoom: true
    }).setView([30, 110], 4);
    // At once: what is half way drawn can't be clicked.
    map.panBy = function (offset) { return L.Map.prototype.panBy.call(map, offset, { animate: false }); };
    var drawing = new Drawing(scene);
    var tiles = null, shown = -1, framed = false, later = 0, printing = null;

    drawing.addTo(map);
    L.control.scale({ imperial: false, position: "bottomleft" }).addTo(map);
    map.addControl(new (L.Control.extend({
        options: { position: "topright" },
        onAdd: function () {
            var box = L.DomUtil.create("div", "north");
            box.innerHTML = "<svg viewBox='0 0 30 44' width='30' height='44'><path d='M15 2 L25 38 L15 31 L5 38 Z' " +
                "fill='#33475b'/><text x='15' y='29' text-anchor='middle' font-size='12' font-weight='bold' " +
                "fill='#fff'>N</text></svg>";
            return box;
        }
    }))());

    function has(x, y) {
        return isFinite(x) && isFinite(y) && (x !== 0 || y !== 0) && Math.abs(y) <= 85 && Math.abs(x) <= 180;
    }

    function at(x, y) {
        var shifted = Shift.to(details.tiles.system, x, y);
        return L.latLng(shifted[1], shifted[0]);
    }

    // After all calls of one script.
    function soon() {
        if (!later) {
            later = setTimeout(function () {
                later = 0;
                if (!framed) {
                    framed = true;
                    fit();
                }
                drawing.redraw();
                showPanel();
            }, 0);
        }
    }

    function fit() {
        var bounds = L.latLngBounds([]);
        scene.markers.forEach(function (marker) { if (marker.latlng) { bounds.extend(marker.latlng); } });
        scene.lines.forEach(function (line) {
            if (line.a) { bounds.extend(line.a); }
            if (line.b) { bounds.extend(line.b); }
        });
        if (bounds.isValid()) {
            map.fitBounds(bounds, { padding: [50, 50], maxZoom: OWN_ZOOM });
        }
    }

    // Legend and switch

    var panel = L.DomUtil.create("div", "panel");
    map.addControl(new (L.Control.extend({
        options: { position: "bottomright" },
        onAdd: function () {
            L.DomEvent.disableClickPropagation(panel);
            return panel;
        }
    }))());

    function add(parent, tag, className, text) {
        var element = L.DomUtil.create(tag, className || "", parent);
        if (text !== undefined) {
            element.textContent = text;
        }
        return element;
    }

    function showPanel() {
        var texts = details.texts;
        panel.textContent = "";
        if (!texts.all) {
            panel.style.display = "none";
            return;
        }
        panel.style.display = "";
        [["structural", false], ["functional", true]].forEach(function (choice) {
            var label = add(panel, "label", "no-print");
            var input = add(label, "input");
            input.type = "radio";
            input.name = "condition";
            input.checked = drawing.functional === choice[1];
            input.id = choice[0];
            input.addEventListener("change", function () {
                drawing.functional = choice[1];
                drawing.redraw();
                showPanel();
            });
            add(label, "span", "", " " + texts[choice[0]]);
        });
        add(panel, "div", "caption", drawing.functional ? texts.functional : texts.structural);
        legendOfLevels(texts);
        var grades = Array.from(new Set(scene.markers.map(function (marker) { return marker.grade; }))).sort();
        if (grades.length) {
            add(panel, "div", "caption", texts.grade);
            var row = add(panel, "div");
            grades.slice(0, 6).forEach(function (grade) {
                add(row, "span", "dot", String(grade)).style.background = gradeColour(grade);
            });
        }
        var without = scene.markers.filter(function (marker) { return !marker.latlng; }).length +
            scene.lines.filter(function (line) { return !line.a || !line.b; }).length;
        if (without) {
            add(panel, "div", "without", texts.without.replace("%s", String(without))).id = "without";
        }
        var button = add(panel, "button", "no-print", texts.all);
        button.addEventListener("click", fit);
    }

    function legendOfLevels(texts) {
        var levels = new Map();
        scene.lines.forEach(function (line) {
            levels.set(drawing.rankOf(line), drawing.functional ? line.details.f : line.details.s);
        });
        Array.from(levels.keys()).sort().forEach(function (rank) {
            var row = add(panel, "div");
            add(row, "span", "key").style.background = levelColour(rank);
            add(row, "span", "", rank < 0 ? texts.norule : rank === 0 ? texts.none : texts.level + " " + levels.get(rank));
        });
    }

    function setTiles(deeper) {
        if (tiles) {
            tiles.remove();
            tiles = null;
        }
        var settings = details.tiles;
        drawing.hasTiles = !!settings.address;
        if (!settings.address) {
            return;
        }
        tiles = L.tileLayer(settings.address, {
            maxZoom: DEEPEST, maxNativeZoom: Math.max(0, settings.deepest - deeper), tileSize: 256 >> deeper,
            zoomOffset: deeper, keepBuffer: 1
        });
        tiles.on("load", function () { tiles.done = true; });
        tiles.addTo(map);
    }

    // Clicks

    map.on("click", function (event) {
        var marker = drawing.markerAt(event.containerPoint);
        if (marker < 0) {
            var line = drawing.lineAt(event.containerPoint);
            marker = line < 0 ? -1 : scene.lines[line].details.m;
        }
        if (marker >= 0) {
            nClickEvent = marker;
        }
    });
    map.on("mousemove", function (event) {
        var over = drawing.markerAt(event.containerPoint) >= 0 || drawing.lineAt(event.containerPoint) >= 0;
        map.getContainer().style.cursor = over ? "pointer" : "";
    });

    // What the program calls

    window.AddMarker = function (x, y) {
        var number = scene.markers.length;
        scene.markers.push({ x: x, y: y, latlng: has(x, y) ? at(x, y) : null, grade: details.markers[number] || 0 });
        soon();
    };

    window.Line = function (x1, y1, x2, y2) {
        var number = scene.lines.length;
        scene.lines.push({
            place: [x1, y1, x2, y2], a: has(x1, y1) ? at(x1, y1) : null, b: has(x2, y2) ? at(x2, y2) : null,
            details: details.sections[number] || { a: "", b: "", s: "", f: "", sr: -1, fr: -1, m: -1 }
        });
        soon();
    };

    window.ShowInfoWnd = function (x, y, html) {
        map.closePopup();
        var box = document.createElement("div");
        var text = add(box, "div");
        text.innerHTML = html;
        var link = add(box, "span", "open-link no-print", details.texts.open || "");
        link.addEventListener("click", function () { nOpenEvent = shown; });
        // What has no position is told of where the operator looks.
        L.popup({
            maxWidth: 560, autoPanPaddingTopLeft: [64, 20], autoPanPaddingBottomRight: [20, 20], closeOnClick: false,
            offset: [0, -4]
        })
            .setLatLng(has(x, y) ? at(x, y) : map.getCenter()).setContent(box).openOn(map);
    };

    window.ClearClickEvent = function () { nClickEvent = -1; };

    // Before the data: what they look like. Whatever was there goes.
    window.SetDetails = function (given) {
        details = given;
        scene.markers.length = 0;
        scene.lines.length = 0;
        framed = false;
        setTiles(0);
        if (details.tiles.attribution) {
            var control = L.control.attribution({ prefix: false });
            // Attributions are text here, whatever markup they bring.
            var plain = document.createElement("span");
            plain.textContent = details.tiles.attribution;
            control.addAttribution(plain.innerHTML).addTo(map);
        }
        soon();
    };

    window.MarkShown = function (number) {
        if (scene.markers[shown]) {
            scene.markers[shown].shown = false;
        }
        shown = number;
        if (scene.markers[shown]) {
            scene.markers[shown].shown = true;
        }
        drawing.redraw();
    };

    // The view in another size, as sharp as paper; the same place stays in it. nPrintReady becomes 1.
    window.PreparePrint = function (width, height) {
        nPrintReady = 0;
        printing = { centre: map.getCenter(), zoom: map.getZoom(), bounds: map.getBounds() };
        var box = map.getContainer();
        box.style.width = width + "px";
        box.style.height = height + "px";
        map.invalidateSize({ animate: false });
        map.fitBounds(printing.bounds, { animate: false });
        drawing.sharpness = 3;
        var deeper = details.tiles.address ? Math.max(0, Math.min(2, details.tiles.deepest - map.getZoom())) : 0;
        setTiles(deeper);
        drawing.draw();
        var begin = Date.now();
        (function wait() {
            if (!tiles || tiles.done || Date.now() - begin > 8000) {
                nPrintReady = 1;
            } else {
                setTimeout(wait, 50);
            }
        })();
    };

    window.EndPrint = function () {
        var box = map.getContainer();
        box.style.width = "";
        box.style.height = "";
        map.invalidateSize({ animate: false });
        drawing.sharpness = 0;
        setTiles(0);
        if (printing) {
            map.setView(printing.centre, printing.zoom, { animate: false });
        }
        drawing.redraw();
    };

    // Where marker and section stand in the window, for whoever drives the page.
    window.MarkerPoint = function (number) {
        var point = scene.markers[number] && scene.markers[number].point;
        return point ? [point.x, point.y] : null;
    };
    window.LinePoint = function (number) {
        var line = scene.lines[number];
        return line && line.from && line.to ? [line.from.x * 0.8 + line.to.x * 0.2, line.from.y * 0.8 + line.to.y * 0.2] : null;
    };
    window.Counted = function () {
        return [scene.markers.length, scene.lines.length, map.getZoom(), map.getCenter().lng, map.getCenter().lat, shown];
    };
})();
