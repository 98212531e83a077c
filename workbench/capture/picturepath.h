// Names of the pictures that are taken from a video.
#pragma once

#include <string>
#include <string_view>

// "picture\" beside the video, the video's title, and the local time: "D:\a\picture\v_092653.jpg" for
// "D:\a\v.avi". A name that is taken gives way to the next second's; one whose original is kept counts as
// taken, for that original would pass for the new picture's. The folder is made if it is missing. Empty if
// the path has no "\", and, after message 2202, if there can't be such a folder.
std::string BuildPicturePath(std::string_view video);
