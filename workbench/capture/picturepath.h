// Names of the pictures that are taken from a video.
#pragma once

#include <string>
#include <string_view>

// "picture\" beside the video, the video's title, and the local time: "D:\a\picture\v_092653.jpg" for
// "D:\a\v.avi". A name that is taken gives way to the next second's; one whose original is kept counts as
// taken, for that original would pass for the new picture's. The folder is made if it is missing. Empty if
// the path has no "\", and, after message 2202, if there can't be such a folder.
std::string BuildPicturePath(std::string_view video);
// The same name, with nothing made: for a video that isn't there, beside which no folder may appear.
std::string NamePicture(std::string_view video);

// `beginning`, the local time in `format` (see FormatTime) and ".jpg", for the first second from now on, over
// midnight too, whose name neither a file nor the original of one has. Empty if a whole day is taken.
std::string FreePicturePath(std::string_view beginning, const char* format);
