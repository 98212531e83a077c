#include "workbench/capture/greyjpeg.h"

// jpeglib.h uses FILE and size_t without declaring them.
#include <csetjmp>
#include <cstddef>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

namespace {

constexpr unsigned LargestSide = 20000;  // pixels

struct Handler {
    jpeg_error_mgr Manager;  // the library hands out its address, so it must come first
    std::jmp_buf Return;
    bool Broken;
};

void Leave(j_common_ptr info) {
    std::longjmp(reinterpret_cast<Handler*>(info->err)->Return, 1);
}

// Stray bytes between markers come from some cameras and harm nothing; these lose a part of the picture.
void NoteWarning(j_common_ptr info, int level) {
    const int code = info->err->msg_code;
    if (level < 0 && (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER || code == JWRN_HUFF_BAD_CODE ||
                      code == JWRN_MUST_RESYNC)) {
        reinterpret_cast<Handler*>(info->err)->Broken = true;
    }
}

void DropMessage(j_common_ptr) {}

// Nothing here may have a destructor: errors jump out. First it is asked for the sizes, with no `pixels`;
// then for these.
bool Decompress(std::string_view bytes, GreyPicture& picture, unsigned char* pixels, bool& broken) {
    jpeg_decompress_struct info{};
    Handler handler{};
    info.err = jpeg_std_error(&handler.Manager);
    handler.Manager.error_exit = Leave;
    handler.Manager.emit_message = NoteWarning;
    handler.Manager.output_message = DropMessage;
    if (setjmp(handler.Return) != 0) {
        jpeg_destroy_decompress(&info);
        broken = pixels != nullptr;
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    (void)jpeg_read_header(&info, TRUE);
    const bool taken = info.image_width <= LargestSide && info.image_height <= LargestSide &&
                       (info.jpeg_color_space == JCS_YCbCr || info.jpeg_color_space == JCS_GRAYSCALE);
    if (taken) {
        info.out_color_space = JCS_GRAYSCALE;
        info.scale_num = 1;
        info.scale_denom = 2;
        info.dct_method = JDCT_IFAST;
        info.do_fancy_upsampling = FALSE;
        jpeg_calc_output_dimensions(&info);
        picture.FullWidth = static_cast<int>(info.image_width);
        picture.FullHeight = static_cast<int>(info.image_height);
        picture.Width = static_cast<int>(info.output_width);
        picture.Height = static_cast<int>(info.output_height);
        if (pixels != nullptr) {
            (void)jpeg_start_decompress(&info);
            while (info.output_scanline < info.output_height) {
                unsigned char* row =
                    pixels + static_cast<std::size_t>(info.output_scanline) * info.output_width;
                (void)jpeg_read_scanlines(&info, &row, 1);
            }
            (void)jpeg_finish_decompress(&info);
        }
    }
    jpeg_destroy_decompress(&info);
    broken = handler.Broken;
    return taken;
}

}  // namespace

std::optional<GreyPicture> ReadGreyJpeg(std::string_view bytes, bool& damaged) {
    damaged = false;
    GreyPicture picture;
    bool broken = false;
    if (!bytes.starts_with("\xFF\xD8\xFF") || !Decompress(bytes, picture, nullptr, broken)) {
        return std::nullopt;
    }
    picture.Pixels.resize(static_cast<std::size_t>(picture.Width) * static_cast<std::size_t>(picture.Height));
    const bool read = Decompress(bytes, picture, picture.Pixels.data(), broken);
    damaged = broken;
    return read ? std::optional(std::move(picture)) : std::nullopt;
}
