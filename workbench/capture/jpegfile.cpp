#include "workbench/capture/jpegfile.h"

// jpeglib.h uses FILE and size_t without declaring them.
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include <jpeglib.h>

#include "shell/CHostFiles.h"
#include "shell/seams.h"

namespace {

struct Rows {
    const unsigned char* First;
    std::ptrdiff_t Stride;  // from one to the next below it
    int Width;
    int Height;
    int Components;
};

struct ErrorHandler {
    jpeg_error_mgr Manager;  // the library hands out its address, so it must come first
    std::jmp_buf Return;
};

void LeaveCompression(j_common_ptr info) {
    std::longjmp(reinterpret_cast<ErrorHandler*>(info->err)->Return, 1);
}

void DropMessage(j_common_ptr) {}

constexpr std::size_t HeaderRoom = 1 << 11;  // markers and tables before the picture
constexpr std::size_t PadToBlock(int size) {
    return (static_cast<std::size_t>(size) + 15) / 16 * 16;
}

// Nothing here may have a destructor: errors jump out. `bytes` must have room for any picture of this size,
// or the library would allocate and lose that on a jump. Gives the length, 0 after an error.
std::size_t Compress(const Rows& rows, int quality, std::string& bytes) {
    jpeg_compress_struct info{};
    ErrorHandler handler{};
    unsigned char* buffer = reinterpret_cast<unsigned char*>(bytes.data());
    unsigned long length = bytes.size();
    info.err = jpeg_std_error(&handler.Manager);
    handler.Manager.error_exit = LeaveCompression;
    handler.Manager.output_message = DropMessage;
    if (setjmp(handler.Return) != 0) {
        jpeg_destroy_compress(&info);
        return 0;
    }
    jpeg_create_compress(&info);
    jpeg_mem_dest(&info, &buffer, &length);
    info.image_width = static_cast<JDIMENSION>(rows.Width);
    info.image_height = static_cast<JDIMENSION>(rows.Height);
    info.input_components = rows.Components;
    info.in_color_space = rows.Components == 3 ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        const unsigned char* row = rows.First + rows.Stride * static_cast<std::ptrdiff_t>(info.next_scanline);
        JSAMPROW line = const_cast<JSAMPROW>(row);
        jpeg_write_scanlines(&info, &line, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    return length;
}

std::vector<unsigned char> MakeGrey(const Rows& rows) {
    std::vector<unsigned char> grey;
    grey.reserve(static_cast<std::size_t>(rows.Width) * static_cast<std::size_t>(rows.Height));
    for (int y = 0; y < rows.Height; ++y) {
        const unsigned char* pixel = rows.First + rows.Stride * y;
        for (int x = 0; x < rows.Width; ++x, pixel += 3) {
            grey.push_back(
                static_cast<unsigned char>((299 * pixel[0] + 587 * pixel[1] + 114 * pixel[2]) / 1000));
        }
    }
    return grey;
}

}  // namespace

bool RGBToJpegFile(std::string_view path, const unsigned char* data, int width, int height, bool colour,
                   int quality, bool flip, bool aligned) {
    if (data == nullptr || width <= 0 || height <= 0 || width > JPEG_MAX_DIMENSION ||
        height > JPEG_MAX_DIMENSION) {
        return false;
    }
    const std::ptrdiff_t tight = std::ptrdiff_t{3} * width;
    const std::ptrdiff_t stride = aligned ? (tight + 3) / 4 * 4 : tight;
    Rows rows{data, stride, width, height, 3};
    if (flip) {
        rows.First += stride * (height - 1);
        rows.Stride = -stride;
    }
    std::vector<unsigned char> grey;
    if (!colour) {
        grey = MakeGrey(rows);
        rows = {grey.data(), width, width, height, 1};
    }
    // No picture with colours at half resolution comes out longer than three bytes a pixel and a header.
    std::string bytes(PadToBlock(width) * PadToBlock(height) * 3 + HeaderRoom, '\0');
    const std::size_t length = Compress(rows, quality, bytes);
    return length > 0 && length <= bytes.size() &&
           HostFiles().WriteFile(path, std::string_view(bytes).substr(0, length));
}
