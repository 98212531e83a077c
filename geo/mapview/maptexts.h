// The texts by which window and page of the map talk: calls of the page's functions, as JavaScript. Numbers
// have up to 12 decimals.
#pragma once

#include <string>
#include <string_view>

#include "store/records/records.h"

// So that a text is nothing but a text in HTML, in an attribute with quotes of either kind, and inside a
// script string in double quotes, all at once. A line break becomes the two characters "\n", which the page
// shows as one.
std::string EncodeForPage(std::string_view text);

std::string AddMarkerCall(const _REC_DATA& record);
std::string LineCall(const _TESTING_DATA& section);
// `bubble` is BubbleText: encoded already.
std::string ShowInfoWndCall(const _REC_DATA& record, std::string_view bubble);
// HTML, as it stands between the quotes of the call. `sectionName` is empty for a record without a section.
std::string BubbleText(const _REC_DATA& record, std::string_view sectionName, std::string_view defectName);

// The address of a picture on the map's own scheme, and the way back: a path text, empty if it is none.
std::string PictureAddress(std::string_view path);
std::string PictureOfAddress(std::string_view addressPath);

// A call that fails, or that the page doesn't have, keeps none of the others from running.
std::string Guarded(std::string_view call);
